#!/usr/bin/env bash
# Tries what cpack has made for Windows under Wine, as its users do:
#
#     try-packages.sh PACKAGES WORK
#
# PACKAGES is the folder with the installer and the archive, WORK a folder for a Windows on which nothing has run yet. An
# ordinary user installs without a word, both programs start, the tour runs, the window comes; then everything is
# removed, and nothing is left. The archive runs from wherever it is unpacked. Nothing of this machine helps
# the programs to find their libraries.
set -euo pipefail

packages=$(realpath "$1")
work=$(realpath -m "$2")
here=$(cd "$(dirname "$0")" && pwd)
version=$(sed -n 's/.*VELK_VERSION_STRING "\(.*\)".*/\1/p' "$here/../../VelkCommon/Version.h")

export VELK_WINE_FOLDER=$work/wine VELK_WINE_BARE=1
drive=$VELK_WINE_FOLDER/system/drive_c
seconds=60

die() { printf '%s\n' "$*" >&2; exit 1; }
under_wine() { timeout 300 "$here/under-wine.sh" "$@"; }
on_windows() { printf 'Z:%s' "${1//\//\\}"; }
registry() { under_wine reg query "$1" /s 2>/dev/null | tr -d '\r'; }

# What a program says. Windows' platform of Qt is what is installed; without a display it makes no windows.
says() {  # PROGRAM TEXT ARGUMENT...
    local said
    said=$(QT_QPA_PLATFORM=windows under_wine "$1" "${@:3}") || die "$1 ${*:3} failed: $said"
    [[ $said = *"$2"* ]] || die "$1 ${*:3} does not say $2, but: $said"
}

try_programs() {  # FOLDER
    says "$1/bin/velk.exe" "$version" --version
    says "$1/bin/velk-browser.exe" "$version" --version
}

# Files and keys that tell of the installation.
traces() {
    find "$drive" \( -ipath '*/programs/velk*' -o -iname '*velk*.lnk' \) -print
    registry 'HKCU\Software\Classes' | grep -iE 'velk|\.calib' || true
    registry 'HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall' | grep -i velk || true
}

expect_command() {  # TYPE: the type's files are opened by the browser
    registry "HKCU\\Software\\Classes\\$1\\shell\\open\\command" | grep -qF 'velk-browser.exe" "%1"' ||
        die "nothing opens files of the type $1"
}

if [ "$(id -u)" = 0 ]; then
    mkdir -p "$work"
    chmod a+rx "$work"
fi
"$here/under-wine.sh" --end || true
rm -rf "$work/wine" "$work/unpacked"
says cmd "" /c rem  # makes the folder, and Wine's own files and keys with it
before=$(traces)
[ -z "$before" ] || die "there is something before the installation: $before"

echo "Installing"
installer=$(find "$packages" -maxdepth 1 -name 'velk-*.exe')
under_wine "$installer" /S || die "the installer failed"
installed=$(find "$drive/users" -type d -ipath '*/AppData/Local/Programs/Velk')
[ -n "$installed" ] || die "nothing is installed in the user's folder for programs"
[ -n "$(find "$drive" -iname 'Velk Library Browser.lnk' -ipath '*start menu*')" ] || die "the Start menu has no entry"
for type in Velk.Calib Velk.Calibz; do expect_command $type; done
for extension in calib calibz; do
    registry "HKCU\\Software\\Classes\\.$extension" | grep -qiE "REG_SZ +Velk\.${extension^}\$" ||
        die ".$extension has no type"
done

echo "Starting"
try_programs "$installed"
timeout 600 "$here/under-wine.sh" "$installed/bin/velk.exe" tour --sample -o "$(on_windows "$VELK_WINE_FOLDER/tour")" |
    tail -n 3
"$here/picture.sh" "$work/installed.png" "$installed/bin/velk-browser.exe" \
    --home "$(on_windows "$VELK_WINE_FOLDER/tour/earlier")" --site "$(on_windows "$VELK_WINE_FOLDER/tour/site")"

echo "Installing over it"
touch "$installed/bin/of the user.txt" 2>/dev/null && chmod a+rw "$installed/bin/of the user.txt"
under_wine "$installer" /S || die "the installer failed where an installation is"
try_programs "$installed"

echo "Removing"
[ -e "$installed/bin/of the user.txt" ] || die "what the user has added is gone"
rm "$installed/bin/of the user.txt"
under_wine "$installed/uninstall.exe" /S || die "the uninstaller failed"
# It goes on in a copy of itself.
for _ in $(seq $seconds); do [ -e "$installed" ] || break; sleep 1; done
left=$(traces)
[ -z "$left" ] || die "this is left: $left"

echo "The archive"
mkdir "$work/unpacked"
unzip -q "$packages"/velk-*.zip -d "$work/unpacked"
chmod -R a+rX "$work/unpacked"
try_programs "$(dirname "$(dirname "$(find "$work/unpacked" -name velk.exe)")")"
"$here/under-wine.sh" --end
echo "Installer and archive work, and removal leaves nothing."
