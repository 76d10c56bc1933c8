# Sourced by the tests that run the real bar on a real X server: a scratch folder, an X server of
# its own with a window manager that honours struts (openbox), and a quiet start for Tolvane (a
# browser that only answers its version, set as the default; fresh user folders).
# After sourcing: $work, DISPLAY, wait_for CONDITION, workarea (x y width height), and a cleanup
# that ends every process in pids and removes $work once they have ended.

source "$(dirname "${BASH_SOURCE[0]}")/scratch.sh"
workarea() { xprop -root _NET_WORKAREA 2>/dev/null | sed -n 's/.*= \([0-9]*\), \([0-9]*\), \([0-9]*\), \([0-9]*\).*/\1 \2 \3 \4/p'; }

exec 5> "$work/display"
Xvfb -displayfd 5 -screen 0 1280x800x24 -nolisten tcp >/dev/null 2>&1 &
pids+=($!)
for _ in $(seq 100); do [ -s "$work/display" ] && break; sleep 0.1; done
export DISPLAY=":$(cat "$work/display")"
wait_for 'xprop -root >/dev/null 2>&1' || { echo "the X server on $DISPLAY did not answer"; exit 1; }
# Now and then the window manager cannot open a display that has only just come up: it is
# started again, up to three times.
for attempt in 1 2 3; do
  openbox > "$work/openbox.log" 2>&1 &
  manager=$!
  pids+=($manager)
  wait_for '[ -n "$(workarea)" ] || ! kill -0 '"$manager"' 2>/dev/null'
  [ -n "$(workarea)" ] && break
  sleep 0.5
done
if [ -z "$(workarea)" ]; then
  echo "the window manager published no work area on $DISPLAY"; cat "$work/openbox.log"; exit 1
fi

mkdir -p "$work/bin" "$work/config" "$work/share/applications" "$work/data" "$work/tmp" "$work/runtime"
chmod 700 "$work/runtime"
printf '#!/bin/sh\necho "Chromium 156.0.1.1 built for the test"\n' > "$work/bin/chromium"
chmod +x "$work/bin/chromium"
printf '[Desktop Entry]\nExec=%s %%U\n' "$work/bin/chromium" > "$work/share/applications/chromium.desktop"
printf '[Default Applications]\ntext/html=chromium.desktop\n' > "$work/config/mimeapps.list"
# The environment the bar runs in: put before its command.
bar_environment=(QT_QPA_PLATFORM=xcb TOLVANE_BROWSER="$work/bin/chromium" XDG_CONFIG_HOME="$work/config"
                 XDG_DATA_DIRS="$work/share:/usr/share" XDG_DATA_HOME="$work/data" XDG_RUNTIME_DIR="$work/runtime"
                 TMPDIR="$work/tmp" ASAN_OPTIONS=detect_leaks=0)
