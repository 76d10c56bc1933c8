#!/usr/bin/env bash
# End to end on a real X server with a window manager that honours struts (openbox): the bar
# takes a strip at the right edge, a maximized window stays out of it, and after the bar ends
# the work area is whole again; the link by the visits opens "Remembered values". Leaves
# screenshots in the artifacts folder.
# Usage: docking.sh TOLVANE_EXECUTABLE ARTIFACTS_FOLDER
set -euo pipefail
exe=$1
artifacts=$2
mkdir -p "$artifacts"
for tool in Xvfb openbox xprop xwininfo xterm import xdotool; do
  command -v "$tool" >/dev/null || { echo "missing $tool"; exit 1; }
done

source "$(dirname "$0")/../support/x-session.sh"
read -r _ _ fullWidth fullHeight <<< "$(workarea)"
# Something remembered, for the window to show.
data="$work/data/Tolvane Data"
mkdir -p "$data"
printf '\xef\xbb\xbf[Any]\r\nfname=Zoë\r\ncity=Kraków\r\n[Meaning]\r\ngiven-name=Zoë\r\n' > "$data/zAny.ini"
printf '[http://prizes.example/enter.html]\r\nfname=Zoe\r\n[URL]\r\nLastVisit=2026-11-24 15:14:00\r\nVisits=4\r\n' \
  > "$data/zPRIZES.EXAMPLE!ENTER.HTML.ini"

env "${bar_environment[@]}" "$exe" > "$work/tolvane.log" 2>&1 &
bar=$!
pids+=($bar)

expected=$((fullWidth - 175))
if ! wait_for '[ "$(workarea | cut -d" " -f3)" = "$expected" ]'; then
  echo "FAIL: the work area did not shrink to $expected: $(workarea)"; cat "$work/tolvane.log"; exit 1
fi
geometry=$(xwininfo -root -tree | sed -n 's/.*"Tolvane v[0-9.]*".* \([0-9]*x[0-9]*\)+[-0-9]*+[-0-9]*  +\([0-9]*\)+\([0-9]*\).*/\1+\2+\3/p')
if [ "$geometry" != "175x${fullHeight}+${expected}+0" ]; then
  echo "FAIL: the bar is at $geometry, not 175x${fullHeight}+${expected}+0"; exit 1
fi
echo "docked: work area $(workarea), bar $geometry"

xterm -maximized -T "A maximized window" -e sleep 30 &
pids+=($!)
wait_for 'xwininfo -root -tree | grep "A maximized window" >/dev/null'
sleep 1
maximized=$(xwininfo -root -tree | sed -n 's/.*"A maximized window".*  +\([0-9]*\)+\([0-9]*\)$/\1/p' | head -1)
width=$(xwininfo -root -tree | sed -n 's/.*"A maximized window".* \([0-9]*\)x[0-9]*+.*/\1/p' | head -1)
if [ -n "$width" ] && [ $((maximized + width)) -gt "$expected" ]; then
  echo "FAIL: the maximized window reaches into the strip ($maximized+$width > $expected)"; exit 1
fi
import -window root "$artifacts/docked-bar.png"
echo "screenshot: $artifacts/docked-bar.png"

# The link sits in the bottom panel (88 px above the 20 px status line), 94 px in, 16 px down.
xdotool mousemove $((expected + 110)) $((fullHeight - 20 - 88 + 22)) click 1
if ! wait_for 'xwininfo -root -tree | grep "Remembered values - " >/dev/null'; then
  echo "FAIL: the link did not open Remembered values"; exit 1
fi
sleep 1
import -window root "$artifacts/remembered-values.png"
echo "screenshot: $artifacts/remembered-values.png"

# Ending the bar gives the strip back and saves its settings.
kill -TERM "$bar"
wait_for '! kill -0 '"$bar"' 2>/dev/null' || { echo "FAIL: the bar did not end"; exit 1; }
if ! wait_for '[ "$(workarea | cut -d" " -f3)" = "$fullWidth" ]'; then
  echo "FAIL: the work area stayed $(workarea) after exit"; exit 1
fi
grep -q 'Autojump=1' "$work/config/Tolvane/Tolvane.conf" || { echo "FAIL: settings not saved"; exit 1; }
echo "undocked: work area $(workarea)"
echo "1 passed, 0 failed"
