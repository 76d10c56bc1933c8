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

source "$(dirname "$0")/../support/x-session.sh"

prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >/dev/null
id=org.tolvane.Tolvane
for file in bin/tolvane share/tolvane/Tolvane.hlp "share/applications/$id.desktop" "share/metainfo/$id.metainfo.xml" \
            "share/icons/hicolor/scalable/apps/$id.svg" "share/icons/hicolor/16x16/apps/$id.png" \
            "share/icons/hicolor/48x48/apps/$id.png" "share/icons/hicolor/256x256/apps/$id.png" \
            share/man/man1/tolvane.1.gz share/doc/tolvane/copyright share/doc/tolvane/changelog.gz \
            libexec/tolvane/tolvane-host share/chromium/extensions/tolvane/manifest.json \
            etc/chromium/native-messaging-hosts/org.tolvane.bar.json \
            lib/mozilla/native-messaging-hosts/org.tolvane.bar.json; do
  [ -f "$prefix/$file" ] || { echo "FAIL: $file was not installed"; exit 1; }
done
[ -x "$prefix/bin/tolvane" ] || { echo "FAIL: the program is not executable"; exit 1; }
desktop-file-validate "$prefix/share/applications/$id.desktop"
appstreamcli validate --no-net --explain "$prefix/share/metainfo/$id.metainfo.xml"
echo "installed and valid: $(cd "$prefix" && find . -type f | wc -l) files"

read -r _ _ full _ <<< "$(workarea)"

# The menu entry's command, field codes dropped, found on the PATH as the desktop finds it.
command=$(sed -n 's/^Exec=//p' "$prefix/share/applications/$id.desktop" | sed 's/ %[a-zA-Z]//g')
mkdir -p "$work/elsewhere"
(cd "$work/elsewhere" && exec env PATH="$prefix/bin:$PATH" "${bar_environment[@]}" $command > "$work/tolvane.log" 2>&1) &
pids+=($!)

if ! wait_for '[ "$(workarea | cut -d" " -f3)" = "$((full - 175))" ]'; then
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
