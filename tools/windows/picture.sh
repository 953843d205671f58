#!/usr/bin/env bash
# Takes a picture of the screen with a program that was compiled for Windows on it, and ends the program:
#
#     picture.sh PICTURE.png PROGRAM.exe [ARGUMENT...]
#
# The screen is an X server of its own. Fails when no window comes.
set -euo pipefail

picture=$1
shift
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
seconds=60
fewest_colours=50  # an empty desktop has a few, a window with its texts hundreds

"$here/under-wine.sh" --end
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$work/display" >"$work/xvfb.log" 2>&1 &
xvfb=$!
finish() {
    "$here/under-wine.sh" --end
    kill "$xvfb" 2>/dev/null || true
    rm -rf "$work"
}
trap finish EXIT
for _ in $(seq 100); do [ ! -s "$work/display" ] || break; sleep 0.1; done
DISPLAY=:$(cat "$work/display")
export DISPLAY

# Wine's text drawing gets lines of the wrong height; Qt's own does not.
QT_QPA_PLATFORM=windows:fontengine=freetype "$here/under-wine.sh" "$@" &
program=$!

# The window is there when the picture has colours and stays the same for a second.
before=""
for _ in $(seq $seconds); do
    sleep 1
    kill -0 "$program" 2>/dev/null || { echo "The program ended before its window came." >&2; exit 1; }
    import -window root "$work/now.png"
    now=$(identify -format '%k %#' "$work/now.png")
    if [ "$now" = "$before" ] && [ "${now%% *}" -ge $fewest_colours ]; then
        mv "$work/now.png" "$picture"
        exit 0
    fi
    before=$now
done
echo "No window came within $seconds s." >&2
exit 1
