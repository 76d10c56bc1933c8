#!/usr/bin/env bash
# Installs the built program into a scratch prefix as `cmake --install` does for a user, checks
# the installed files, validates the menu entry and the AppStream metadata, then starts the program
# from the menu entry's command line, from another folder, on a real X server: the bar docks and F1
# opens its help.
# Usage: install.sh BUILD_FOLDER
set -euo pipefail
build=$1
for tool in Xvfb openbox xprop xwininfo xdotool desktop-file-validate appstreamcli; do
  command -v "$tool" >/dev/null || { echo "missing $tool"; exit 1; }
done

work=$(mktemp -d)
pids=()
cleanup() {
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
  rm -rf "$work"
}
trap cleanup EXIT

prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >/dev/null
id=org.tolvane.Tolvane
for file in bin/tolvane share/tolvane/Tolvane.hlp "share/applications/$id.desktop" "share/metainfo/$id.metainfo.xml" \
            "share/icons/hicolor/scalable/apps/$id.svg" "share/icons/hicolor/16x16/apps/$id.png" \
            "share/icons/hicolor/48x48/apps/$id.png" "share/icons/hicolor/256x256/apps/$id.png" \
            share/man/man1/tolvane.1.gz share/doc/tolvane/copyright share/doc/tolvane/changelog.gz; do
  [ -f "$prefix/$file" ] || { echo "FAIL: $file was not installed"; exit 1; }
done
[ -x "$prefix/bin/tolvane" ] || { echo "FAIL: the program is not executable"; exit 1; }
desktop-file-validate "$prefix/share/applications/$id.desktop"
appstreamcli validate --no-net --explain "$prefix/share/metainfo/$id.metainfo.xml"
echo "installed and valid: $(cd "$prefix" && find . -type f | wc -l) files"

# A display of our own with a window manager that honours struts.
exec 5> "$work/display"
Xvfb -displayfd 5 -screen 0 1280x800x24 -nolisten tcp >/dev/null 2>&1 &
pids+=($!)
for _ in $(seq 100); do [ -s "$work/display" ] && break; sleep 0.1; done
export DISPLAY=":$(cat "$work/display")"
wait_for() { # wait_for CONDITION-COMMAND: up to 30 s
  for _ in $(seq 300); do eval "$1" && return 0; sleep 0.1; done
  return 1
}
wait_for 'xprop -root >/dev/null 2>&1' || { echo "the X server on $DISPLAY did not answer"; exit 1; }
openbox > "$work/openbox.log" 2>&1 &
pids+=($!)
workarea() { xprop -root _NET_WORKAREA 2>/dev/null | sed -n 's/.*= \([0-9]*\), \([0-9]*\), \([0-9]*\),.*/\3/p'; }
if ! wait_for '[ -n "$(workarea)" ]'; then
  echo "the window manager published no work area on $DISPLAY"; cat "$work/openbox.log"; xprop -root | head -20; exit 1
fi
full=$(workarea)

# A quiet start: a browser that answers its version, set as the default, fresh user folders.
mkdir -p "$work/bin" "$work/config" "$work/share/applications" "$work/data" "$work/tmp" "$work/runtime" "$work/elsewhere"
chmod 700 "$work/runtime"
printf '#!/bin/sh\necho "Chromium 156.0.1.1 built for the test"\n' > "$work/bin/chromium"
chmod +x "$work/bin/chromium"
printf '[Desktop Entry]\nExec=%s %%U\n' "$work/bin/chromium" > "$work/share/applications/chromium.desktop"
printf '[Default Applications]\ntext/html=chromium.desktop\n' > "$work/config/mimeapps.list"

# The menu entry's command, field codes dropped, found on the PATH as the desktop finds it.
command=$(sed -n 's/^Exec=//p' "$prefix/share/applications/$id.desktop" | sed 's/ %[a-zA-Z]//g')
(cd "$work/elsewhere" && PATH="$prefix/bin:$PATH" QT_QPA_PLATFORM=xcb TOLVANE_BROWSER="$work/bin/chromium" \
  XDG_CONFIG_HOME="$work/config" XDG_DATA_DIRS="$work/share:/usr/share" XDG_DATA_HOME="$work/data" \
  XDG_RUNTIME_DIR="$work/runtime" TMPDIR="$work/tmp" ASAN_OPTIONS=detect_leaks=0 \
  exec $command > "$work/tolvane.log" 2>&1) &
pids+=($!)

if ! wait_for '[ "$(workarea)" = "$((full - 175))" ]'; then
  echo "FAIL: the installed program did not dock: work area $(workarea) of $full"; cat "$work/tolvane.log"; exit 1
fi
# The user clicks the bar (a dock window takes the focus when clicked) and presses F1.
bar=$(xdotool search --name '^Tolvane v' | head -1)
eval "$(xdotool getwindowgeometry --shell "$bar")"
xdotool mousemove $((X + 40)) $((Y + 60)) click 1
sleep 0.3
xdotool key F1
if ! wait_for 'xdotool search --name "^Tolvane Help$" >/dev/null'; then
  echo "FAIL: F1 opened no help: $(xwininfo -root -tree | grep -o '"Tolvane[^"]*"' | tr '\n' ' ')"; exit 1
fi
echo "the installed program docked from its menu entry's command; F1 opened its help"
