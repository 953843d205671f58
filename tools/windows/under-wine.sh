#!/usr/bin/env bash
# Runs a program that was compiled for Windows, as an ordinary user, and has its exit code:
#
#     under-wine.sh PROGRAM.exe [ARGUMENT...]
#     under-wine.sh --end
#
# --end ends all that runs. Wine's server, which outlives the programs by a minute, shows windows on the display that
# the first of them had, so it ends before windows are looked at.
#
# QT_QPA_PLATFORM      what shows windows; default offscreen
# VELK_WINDOWS_PREFIX  the libraries; see cmake/windows.cmake
# VELK_WINE_BARE       if not empty, programs find nothing but Windows' own libraries and what lies beside them
# VELK_WINE_FOLDER     Wine's folder; default build/windows/wine. A user of its own owns it where root runs this
# VELK_WINE_USER       the number of that user; default 65534, "nobody"
# WINEDEBUG            what Wine says about itself; default nothing
#
# Runs side by side do no harm to each other.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)

export VELK_WINE_FOLDER=${VELK_WINE_FOLDER:-$root/build/windows/wine}
export VELK_WINDOWS_PREFIX=${VELK_WINDOWS_PREFIX:-$root/build/windows/prefix}

# For root no file is read-only and no folder closed, so tests would see what users do not.
if [ "$(id -u)" = 0 ]; then
    user=${VELK_WINE_USER:-65534}
    [ -d "$VELK_WINE_FOLDER" ] || install -d -o "$user" -g "$user" "$VELK_WINE_FOLDER"
    as_user=(setpriv --reuid="$user" --regid="$user" --clear-groups --)
    "${as_user[@]}" test -w "$VELK_WINE_FOLDER" -a -r "$0" || {
        echo "User $user cannot get at $VELK_WINE_FOLDER; VELK_WINE_FOLDER can name a folder elsewhere." >&2
        exit 1
    }
    exec env HOME="$VELK_WINE_FOLDER" XDG_CACHE_HOME="$VELK_WINE_FOLDER" TMPDIR=/tmp "${as_user[@]}" "$0" "$@"
fi

triplet=x86_64-w64-mingw32
export WINEPREFIX=$VELK_WINE_FOLDER/system
export WINEARCH=win64
export WINEDEBUG=${WINEDEBUG:--all}
# What would be downloaded at the first start stays out. So does the debugger: with it, a program whose stack has
# run out ends with 0.
export WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe=;winedbg.exe="
# Without UTF-8 Wine has no files whose names are not ASCII.
export LC_ALL=C.UTF-8

on_windows() {  # PATH
    local path
    path=$(realpath -m -- "$1")
    printf 'Z:%s' "${path//\//\\}"
}

# Where Windows looks for libraries beside a program's own folder.
libraries=""
compiler=$(command -v $triplet-g++-posix || command -v $triplet-g++)
for folder in "$(dirname "$("$compiler" -print-file-name=libstdc++-6.dll)")" "/usr/$triplet/lib" \
    "$VELK_WINDOWS_PREFIX/bin" "$VELK_WINDOWS_PREFIX/qt/bin"; do
    [ ! -d "$folder" ] || libraries+="$(on_windows "$folder");"
done
[ -z "${VELK_WINE_BARE:-}" ] || libraries=""
export WINEPATH=$libraries

# Wine takes Qt's variables away from programs, unless "WINE" stands before their names.
: "${QT_QPA_PLATFORM:=offscreen}" "${QT_QPA_FONTDIR:=$(on_windows /usr/share/fonts/truetype/liberation)}"
if [ -z "${VELK_WINE_BARE:-}" ]; then
    export QT_PLUGIN_PATH
    QT_PLUGIN_PATH=$(on_windows "$VELK_WINDOWS_PREFIX/qt/plugins")
fi
export QT_FORCE_STDERR_LOGGING=1
for name in ${!QT_*}; do export "WINE$name=${!name}"; done

server=/usr/lib/wine/wineserver64
[ -x "$server" ] || server=$(command -v wineserver)

if [ "${1:-}" = --end ]; then
    "$server" -k || true
    exit 0
fi

# One makes the folder, the others wait for it. Wine is done with it only when its server has ended.
mkdir -p "$VELK_WINE_FOLDER"
exec 9>"$VELK_WINE_FOLDER/lock"
flock 9
if [ ! -e "$VELK_WINE_FOLDER/ready" ]; then
    DISPLAY="" wine wineboot --init >"$VELK_WINE_FOLDER/boot.log" 2>&1 9>&-
    "$server" -w 9>&-
    touch "$VELK_WINE_FOLDER/ready"
fi
# Where no server runs yet, one is started that stays for a minute, and Wine's services with it: they keep the output
# of whoever starts them open, and who reads a test's output to its end would wait for them.
if "$server" -p60 >/dev/null 2>&1 9>&-; then
    wine cmd /c rem </dev/null >/dev/null 2>&1 9>&- || true
fi
exec 9>&-

# Wine starts services of its own when it needs them, and they keep a program's output open for as long as the server
# runs. Who reads it to its end, as ctest does, must get it from somebody else.
output=$(mktemp)
trap 'rm -f "$output"' EXIT
wine "$@" >"$output" 2>&1 &
program=$!
trap 'kill "$program" 2>/dev/null' TERM INT
tail -c +1 -s 0.1 --pid="$program" -f "$output"
status=0
wait "$program" || status=$?
exit "$status"
