#!/usr/bin/env bash
# Compares what the libraries export with what programs were built against: the descriptions in packaging/interface. They
# hold functions, variables and the layout of types, as libabigail reads them from the debug information of the preset
# "package". What has come is fine; whatever has gone, or is laid out in another way, breaks programs, and needs
# another name for the loader, which is another minor version (VelkCommon/Version.h).
#   interface.sh BUILD           fails when programs would break
#   interface.sh BUILD --keep    the libraries of BUILD are what later ones are compared with
set -euo pipefail
cd "$(dirname "$0")/../.."

build=$1
keep=${2:-}
kept=packaging/interface
made=$build/interface
headers=$made/headers
mkdir -p "$made"
rm -rf "$headers"
DESTDIR=$headers cmake --install "$build" --component development >"$made/install.log"

soname() { grep -om1 "soname='[^']*'" "$1"; }

describe() {  # LIBRARY ROOM
    abidw --suppressions $kept/ignored.ini --headers-dir "$headers/usr/include/$2" --drop-private-types \
        --exported-interfaces-only --type-id-style hash --no-corpus-path --no-comp-dir-path --no-show-locs \
        --no-elf-needed --no-parameter-names --no-write-default-sizes \
        --out-file "$made/$1.abi" "$build/lib/lib$1.so"
}

compare() {  # LIBRARY
    local new=$made/$1.abi old=$kept/$1.abi
    if [ "$keep" = --keep ]; then
        cp "$new" "$old"
    elif [ "$(soname "$new")" != "$(soname "$old")" ]; then
        echo "lib$1 has another name for the loader. Keep its interface: tools/packages/interface.sh $build --keep"
        return 1
    elif abidiff --suppressions $kept/ignored.ini --no-added-syms "$old" "$new"; then
        echo "lib$1: programs that were built against it go on working"
    else
        echo "lib$1: programs that were built against it may break"
        return 1
    fi
}

failed=0
for library in VelkCommon VelkLibrary VelkLibraryCore; do
    room=VelkLibrary
    [ $library != VelkCommon ] || room=VelkCommon
    describe $library $room
    compare $library || failed=1
done
exit $failed
