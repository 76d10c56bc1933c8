#!/usr/bin/env bash
# The bar started in headless Wayland sessions, as a user's desktop starts it (no QT_QPA_PLATFORM):
# - GNOME's compositor (mutter, with Xwayland): the bar docks at the right edge, a maximized
#   window keeps out of its strip, and after the bar ends the strip is free again;
# - sway (wlroots; it refuses to run as root, so a root run holds the session as "nobody"): no
#   strip is kept, and the bar floats, as tall as the screen and as wide as the bar, as the README
#   says.
# A compositor that cannot start here is said and skipped, never passed. Leaves screenshots in the
# artifacts folder. Exit status 77 when both were skipped.
# Usage: wayland.sh TOLVANE_EXECUTABLE ARTIFACTS_FOLDER
set -uo pipefail
exe=$(readlink -f "$1")
artifacts=$2
mkdir -p "$artifacts"
passed=0
failed=0
skipped=0
source "$(dirname "$0")/../support/scratch.sh"
chmod 755 "$work" # the sway session's user reads the test's files in it
skip() { echo "SKIP $1: $2"; skipped=$((skipped + 1)); }
fail() { echo "FAIL $1: $2"; failed=$((failed + 1)); }

# A quiet start for the bar, as in the X11 tests: a browser that only answers its version, set as
# the default; fresh user folders under $1, owned by the user who runs the bar.
prepare_home() {
  local home=$1
  mkdir -p "$home/bin" "$home/config" "$home/share/applications" "$home/data" "$home/tmp" "$home/run"
  printf '#!/bin/sh\necho "Chromium 156.0.1.1 built for the test"\n' > "$home/bin/chromium"
  chmod +x "$home/bin/chromium"
  printf '[Desktop Entry]\nExec=%s %%U\n' "$home/bin/chromium" > "$home/share/applications/chromium.desktop"
  printf '[Default Applications]\ntext/html=chromium.desktop\n' > "$home/config/mimeapps.list"
  chmod 700 "$home/run"
}
bar_environment() {
  local home=$1
  echo HOME="$home" TOLVANE_BROWSER="$home/bin/chromium" XDG_CONFIG_HOME="$home/config" \
    XDG_DATA_DIRS="$home/share:/usr/share" XDG_DATA_HOME="$home/data" XDG_RUNTIME_DIR="$home/run" \
    TMPDIR="$home/tmp" XDG_SESSION_TYPE=wayland ASAN_OPTIONS=detect_leaks=0
}

gnome() {
  local name=GNOME home=$work/gnome
  command -v mutter >/dev/null && command -v Xwayland >/dev/null &&
    command -v dbus-run-session >/dev/null || { skip $name "mutter, Xwayland or dbus is not installed"; return; }
  prepare_home "$home"
  env -u DISPLAY -u WAYLAND_DISPLAY XDG_RUNTIME_DIR="$home/run" dbus-run-session -- \
    mutter --headless --wayland --virtual-monitor 1280x800 --wayland-display=wayland-tolvane \
    > "$work/mutter.log" 2>&1 &
  pids+=($!)
  # Its Xwayland names the display and the authority file X clients need.
  local xwayland=""
  wait_for 'xwayland=$(pgrep -a -f "Xwayland.*$home/run" | head -1); [ -n "$xwayland" ]' ||
    { skip $name "mutter did not start headless: $(tail -3 "$work/mutter.log" | tr '\n' ' ')"; return; }
  export DISPLAY XAUTHORITY
  DISPLAY=$(sed -n 's/.*Xwayland \(:[0-9]*\).*/\1/p' <<< "$xwayland")
  XAUTHORITY=$(sed -n 's/.*-auth \([^ ]*\).*/\1/p' <<< "$xwayland")
  local area
  area() { xprop -root _NET_WORKAREA 2>/dev/null | sed -n 's/.*= \([0-9]*\), \([0-9]*\), \([0-9]*\), \([0-9]*\).*/\3/p'; }
  wait_for '[ "$(area)" = 1280 ]' || { fail $name "no work area on $DISPLAY: $(area)"; return; }

  env -u QT_QPA_PLATFORM $(bar_environment "$home") WAYLAND_DISPLAY=wayland-tolvane "$exe" \
    > "$work/gnome-bar.log" 2>&1 &
  local bar=$!
  pids+=($bar)
  wait_for '[ "$(area)" = 1105 ]' || { fail $name "the work area stayed $(area)"; cat "$work/gnome-bar.log"; return; }
  xterm -maximized -T "A maximized window" -e sleep 30 2>/dev/null &
  pids+=($!)
  wait_for 'xwininfo -root -tree | grep "A maximized window" >/dev/null'
  sleep 1
  local width
  width=$(xwininfo -root -tree | sed -n 's/.*"A maximized window".* \([0-9]*\)x[0-9]*+.*/\1/p' | head -1)
  [ "$width" = 1105 ] || { fail $name "the maximized window is $width wide, not 1105"; return; }
  local window
  window=$(xwininfo -root -tree | sed -n 's/^ *\(0x[0-9a-f]*\) "Tolvane v.*/\1/p' | head -1)
  import -window "$window" "$artifacts/gnome-bar.png" && echo "screenshot: $artifacts/gnome-bar.png"
  kill -TERM "$bar"
  wait_for '! kill -0 '"$bar"' 2>/dev/null' || { fail $name "the bar did not end"; return; }
  wait_for '[ "$(area)" = 1280 ]' || { fail $name "the strip stayed taken: $(area)"; return; }
  # A crash gives it back too: the window goes with the process, and its strut with it.
  env -u QT_QPA_PLATFORM $(bar_environment "$home") WAYLAND_DISPLAY=wayland-tolvane "$exe" \
    > "$work/gnome-bar.log" 2>&1 &
  bar=$!
  pids+=($bar)
  wait_for '[ "$(area)" = 1105 ]' || { fail $name "no strip at the second start: $(area)"; return; }
  kill -KILL "$bar"
  wait "$bar" 2>/dev/null
  wait_for '[ "$(area)" = 1280 ]' || { fail $name "a killed bar kept the strip: $(area)"; return; }
  echo "PASS $name: docked through Xwayland, a maximized window kept out, the strip given back"
  passed=$((passed + 1))
}

sway_session() {
  local name=sway home=$work/sway
  command -v sway >/dev/null && command -v swaymsg >/dev/null ||
    { skip $name "sway is not installed"; return; }
  prepare_home "$home"
  printf 'xwayland enable\n' > "$work/sway.config"
  chmod 644 "$work/sway.config"
  # sway will not run as root: the session (and the bar in it) is another user's.
  local as=()
  if [ "$(id -u)" = 0 ]; then
    chown -R 65534:65534 "$home"
    as=(setpriv --reuid=65534 --regid=65534 --clear-groups)
  fi
  local session=(env -i PATH=/usr/bin:/bin HOME="$home" XDG_RUNTIME_DIR="$home/run")
  "${as[@]}" "${session[@]}" WLR_BACKENDS=headless WLR_LIBINPUT_NO_DEVICES=1 WLR_RENDERER=pixman \
    sway -c "$work/sway.config" > "$work/sway.log" 2>&1 &
  pids+=($!)
  local wayland="" socket=""
  wait_for 'socket=$(ls "$home"/run/sway-ipc.*.sock 2>/dev/null | head -1); [ -n "$socket" ]' ||
    { skip $name "sway did not start headless: $(tail -3 "$work/sway.log" | tr '\n' ' ')"; return; }
  wayland=$(cd "$home/run" && ls wayland-* | grep -v lock | head -1)
  # The session's user may not reach the build tree: a copy of the program in its home then.
  local program=$exe
  if ! "${as[@]}" test -x "$exe"; then
    program=$home/tolvane
    cp "$exe" "$program"
    chmod 755 "$program"
  fi
  # Started by sway, as a user's session starts it: with sway's own WAYLAND_DISPLAY and DISPLAY.
  "${as[@]}" "${session[@]}" SWAYSOCK="$socket" swaymsg exec \
    "env -u QT_QPA_PLATFORM $(bar_environment "$home") $program > $home/tmp/bar.log 2>&1" >/dev/null
  local tree=""
  shown() { # the bar's window in sway's tree: kind, width, height
    "${as[@]}" "${session[@]}" SWAYSOCK="$socket" swaymsg -t get_tree | python3 -c '
import json, sys
def walk(node):
    if (node.get("name") or "").startswith("Tolvane v"):
        print(node["type"], node.get("shell"), node["rect"]["width"], node["rect"]["height"])
    for child in node.get("nodes", []) + node.get("floating_nodes", []):
        walk(child)
walk(json.load(sys.stdin))'
  }
  wait_for 'tree=$(shown); [ -n "$tree" ]' || { fail $name "the bar never showed: $(cat "$home/tmp/bar.log")"; return; }
  sleep 1
  tree=$(shown)
  read -r kind shell width height <<< "$tree"
  # 720 is the headless output's height; sway draws a border round a floating window.
  if [ "$kind $shell" != "floating_con xwayland" ] || [ "$width" -gt 185 ] || [ "$height" -lt 720 ]; then
    fail $name "the bar is \"$tree\", not a floating xwayland window 175 wide and as tall as the screen"
    return
  fi
  if command -v grim >/dev/null; then
    "${as[@]}" "${session[@]}" WAYLAND_DISPLAY="$wayland" grim "$home/tmp/sway.png" &&
      cp "$home/tmp/sway.png" "$artifacts/sway.png" && echo "screenshot: $artifacts/sway.png"
  fi
  "${as[@]}" pkill -f "$program" || true
  echo "PASS $name: no strip kept; the bar floats, $width x $height"
  passed=$((passed + 1))
}

gnome
sway_session
echo "$passed passed, $failed failed, $skipped skipped"
[ "$failed" = 0 ] || exit 1
[ "$passed" -gt 0 ] || exit 77
exit 0
