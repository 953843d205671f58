#!/usr/bin/env bash
# Installs the packages in a bare system of their own, with what they ask for and nothing else, and uses them there: the
# command, its tour, the window without a display, and the project in tests/consumer compiled against them. At the end
# all is removed again, and nothing may be left.
#   try.sh PACKAGES FOLDER    as root; FOLDER holds the bare system, which is made once, and the one for the trial
#   try.sh --archive          tells which archive a bare system comes from; nothing where there is none
set -euo pipefail
cd "$(dirname "$0")/../.."

codename=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")

# The archive that this machine installs from.
archive() {
    apt-get indextargets --format '$(REPO_URI)' \
        "Created-By: Packages" "Origin: Debian" "Codename: $codename" "Component: main" 2>/dev/null | sed -n 1p
}

if [ "$1" = --archive ]; then
    archive
    exit
fi
packages=$(realpath "$1")
mkdir -p "$2"
folder=$(realpath "$2")
bare=$folder/bare
system=$folder/system
log=$folder/trial.log
export LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive

say() { printf -- '-- %s\n' "$*"; }

# Shows what a command has said only where it fails.
quietly() { "$@" >"$log" 2>&1 || { tail -n 30 "$log"; return 1; }; }

inside() { chroot "$system" "$@"; }
as_nobody() { chroot --userspec=65534:65534 "$system" env HOME=/tmp/home QT_QPA_PLATFORM=offscreen "$@"; }
install() { quietly inside apt-get install -y -qq --no-install-recommends "$@"; }

make_bare() {
    say "A bare system ($codename), once"
    quietly debootstrap --variant=minbase "$codename" "$bare.new" "$(archive)"
    # How this machine reaches the archive.
    apt-config dump | grep -iE '^Acquire::(https?|ftp)::' >"$bare.new/etc/apt/apt.conf.d/90machine" || true
    mv "$bare.new" "$bare"
}

prepare() {
    rm -rf "$system" "$bare.new"
    [ -d "$bare" ] || make_bare
    cp -a --reflink=auto "$bare" "$system"
    mkdir "$system/packages"
    mkdir -m 777 "$system/tmp/home"
    cp "$packages"/libvelk[0-9]*.deb "$system/packages/library.deb"
    cp "$packages"/libvelk-dev_*.deb "$system/packages/development.deb"
    cp "$packages"/velk_*.deb "$system/packages/programs.deb"
    quietly inside apt-get update -qq
}

try_programs() {
    say "The programs, with what their packages ask for"
    install /packages/library.deb /packages/programs.deb
    as_nobody velk --version
    as_nobody velk-browser --version
    quietly as_nobody velk tour --sample -o /tmp/home/tour
}

try_window() {
    say "The window, without a display"
    local code=0
    as_nobody timeout 5 velk-browser --home /tmp/home/tour/earlier --site /tmp/home/tour/site >"$log" 2>&1 || code=$?
    [ $code = 124 ] || { echo "it did not stay open: exit code $code"; tail -n 30 "$log"; return 1; }
}

try_development() {
    say "A project that uses the libraries"
    install /packages/development.deb cmake g++ ninja-build pkg-config
    cp -r tests/consumer "$system/tmp/consumer"
    quietly inside cmake -S /tmp/consumer -B /tmp/consumer/build -G Ninja -DCMAKE_BUILD_TYPE=Release
    quietly inside cmake --build /tmp/consumer/build
    inside env QT_QPA_PLATFORM=offscreen ctest --test-dir /tmp/consumer/build --output-on-failure --no-tests=error
}

remove_all() {
    say "Removed again"
    local library
    library=$(dpkg-deb -f "$system/packages/library.deb" Package)
    quietly inside dpkg --purge velk libvelk-dev "$library"
    ! find "$system/usr" "$system/etc" "$system/var/lib" -iname '*velk*' | grep . || { echo "this is left"; return 1; }
}

prepare
try_programs
try_window
try_development
remove_all
rm -rf "$system"
