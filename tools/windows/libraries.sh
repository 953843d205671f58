#!/usr/bin/env bash
# Builds the libraries that the project needs for 64-bit Windows, on a machine with Debian:
#
#     libraries.sh PREFIX [STEP...]
#
# PREFIX gets include/ and lib/, and Qt below qt/; cmake/windows.cmake finds them there. The sources are Debian's own
# packages, from wherever the machine gets its packages. It takes most of an hour, once: a step that has been done is
# not done again (its mark is PREFIX/.work/STEP.done), and a compilation that was interrupted goes on where it was.
# STEP names some of the steps, in the order of the list at the end, instead of all.
#
# JOBS  compilations at a time; default the number of processors
#
# Everything but Qt is static. The compiler's own libraries stay shared, since Qt's need them as well.
set -euo pipefail

[ $# -gt 0 ] || { sed -n '2,/^set /{/^set /d;s/^# \{0,1\}//;p}' "$0" >&2; exit 2; }
mkdir -p "$1/.work/src"
prefix=$(cd "$1" && pwd)
shift
work=$prefix/.work
jobs=${JOBS:-$(nproc)}
project=$(cd "$(dirname "$0")/../.." && pwd)
triplet=x86_64-w64-mingw32
export VELK_WINDOWS_PREFIX=$prefix

# --- Source packages -------------------------------------------------------------------------------

# apt as this machine has it, but for source packages and with a memory of its own: nothing of the machine changes.
apt_for_sources() {
    local own=$work/apt file
    local options=(-o "Dir::Etc::SourceList=$own/sources.list" -o "Dir::Etc::SourceParts=$own/parts"
        -o "Dir::State::Lists=$own/lists" -o "Dir::Cache=$own/cache" -o "APT::Sandbox::User=$(id -un)")
    if [ ! -e "$own/ready" ]; then
        mkdir -p "$own/parts" "$own/lists/partial" "$own/cache/archives/partial"
        find /etc/apt/sources.list /etc/apt/sources.list.d -name '*.list' -exec sed -n 's/^deb /deb-src /p' {} + \
            >"$own/sources.list" 2>/dev/null || true
        for file in /etc/apt/sources.list.d/*.sources; do
            [ ! -e "$file" ] || sed 's/^Types:.*/Types: deb-src/' "$file" >"$own/parts/${file##*/}"
        done
        apt-get "${options[@]}" -qq update
        touch "$own/ready"
    fi
    apt-get "${options[@]}" "$@"
}

# The source of a package with Debian's patches, afresh, in src/PACKAGE. Where there is no description of the package,
# which holds the patches, its author's own archive has to do: apt has checked that as well.
unpack() {  # PACKAGE
    local package=$1 description archive
    cd "$work/src"
    compgen -G "${package}_*.orig.tar.*" >/dev/null || apt_for_sources -qq source --download-only "$package" ||
        compgen -G "${package}_*.orig.tar.*" >/dev/null
    rm -rf "$package"
    description=$(compgen -G "${package}_*.dsc" | sort -V | tail -n 1 || true)
    if [ -n "$description" ]; then
        dpkg-source --no-check -x "$description" "$package"
    else
        archive=$(compgen -G "${package}_*.orig.tar.*" | grep -v '\.asc$' | sort -V | tail -n 1)
        mkdir "$package"
        tar -xf "$archive" --strip-components=1 -C "$package"
    fi
    cd "$work"
}

# --- Building --------------------------------------------------------------------------------------

with_cmake() {  # NAME SOURCE [OPTION...]
    local name=$1 source=$2
    rm -rf "build-$name"
    cmake -S "$source" -B "build-$name" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF \
        -DCMAKE_TOOLCHAIN_FILE="$project/cmake/windows.cmake" -DCMAKE_INSTALL_PREFIX="$prefix" "${@:3}"
    cmake --build "build-$name" -j "$jobs"
    cmake --install "build-$name"
}

libdeflate() {
    unpack libdeflate
    make -C src/libdeflate -j "$jobs" CC=$triplet-gcc-posix AR=$triplet-ar libdeflatestatic.lib
    install -D -m 644 src/libdeflate/libdeflatestatic.lib "$prefix/lib/libdeflate.a"
    install -D -m 644 src/libdeflate/libdeflate.h "$prefix/include/libdeflate.h"
}

# All of SQLite as one source, which Qt's driver wants, too.
sqlite_source() {
    unpack sqlite3
    rm -rf build-sqlite
    mkdir build-sqlite
    (cd build-sqlite && ../src/sqlite3/configure --disable-tcl --disable-readline && make sqlite3.c)
}

sqlite() {
    (cd build-sqlite && $triplet-gcc-posix -O2 -c sqlite3.c -o sqlite3.o -DSQLITE_THREADSAFE=1 \
        -DSQLITE_ENABLE_COLUMN_METADATA)
    mkdir -p "$prefix/lib"
    rm -f "$prefix/lib/libsqlite3.a"
    $triplet-ar rcs "$prefix/lib/libsqlite3.a" build-sqlite/sqlite3.o
    install -D -m 644 -t "$prefix/include" build-sqlite/sqlite3.h src/sqlite3/src/sqlite3ext.h
}

# Without what compresses in other ways: packed libraries have none of it.
libzip() {
    unpack libzip
    with_cmake libzip src/libzip -DENABLE_WINDOWS_CRYPTO=ON -DENABLE_OPENSSL=OFF -DENABLE_GNUTLS=OFF \
        -DENABLE_MBEDTLS=OFF -DENABLE_COMMONCRYPTO=OFF -DENABLE_BZIP2=OFF -DENABLE_LZMA=OFF -DENABLE_ZSTD=OFF \
        -DBUILD_TOOLS=OFF -DBUILD_REGRESS=OFF -DBUILD_EXAMPLES=OFF -DBUILD_DOC=OFF
}

# With Windows' own TLS and certificates.
curl() {
    unpack curl
    with_cmake curl src/curl -DHTTP_ONLY=ON -DCURL_USE_SCHANNEL=ON -DENABLE_UNICODE=ON -DCURL_USE_LIBSSH2=OFF \
        -DCURL_BROTLI=OFF -DCURL_ZSTD=OFF -DUSE_NGHTTP2=OFF -DUSE_LIBIDN2=OFF -DENABLE_MANUAL=OFF \
        -DBUILD_CURL_EXE=OFF -DBUILD_TESTING=OFF
}

openssl() {
    unpack openssl
    rm -rf build-openssl
    mkdir build-openssl
    cd build-openssl
    ../src/openssl/Configure mingw64 CC=$triplet-gcc-posix AR=$triplet-ar RANLIB=$triplet-ranlib RC=$triplet-windres \
        --prefix="$prefix" --libdir=lib --openssldir=/openssl no-shared no-tests no-dso no-module no-engine no-legacy \
        no-comp
    make -j "$jobs" build_libs
    make install_dev
}

httplib() {
    unpack cpp-httplib
    install -D -m 644 src/cpp-httplib/httplib.h "$prefix/include/httplib.h"
}

googletest() {
    with_cmake googletest /usr/src/googletest
}

# What Debian takes out of Qt's source is SQLite, which it gets back here, and the header for drawing tablets.
qt_source() {
    unpack qtbase-opensource-src
    install -D -m 644 -t src/qtbase-opensource-src/src/3rdparty/sqlite build-sqlite/sqlite3.c build-sqlite/sqlite3.h
    rm -rf build-qt
    mkdir build-qt
    cd build-qt
    ../src/qtbase-opensource-src/configure -opensource -confirm-license -release -shared -prefix "$prefix/qt" \
        -xplatform win32-g++ -device-option CROSS_COMPILE=$triplet- -nomake examples -nomake tests -nomake tools \
        -no-opengl -no-feature-vulkan -no-direct2d -no-feature-tabletevent -no-icu -no-openssl -no-dbus -no-sql-odbc \
        -qt-zlib -qt-libpng -qt-libjpeg -qt-pcre -qt-freetype -qt-harfbuzz -qt-sqlite
}

# Not all of it, which would take hours: what a program with widgets and their tests need.
qt_parts=(sub-bootstrap sub-moc sub-rcc sub-uic sub-corelib sub-gui sub-platformsupport sub-widgets sub-sql sub-testlib
    sub-winmain sub-3rdparty-libjpeg)
qt_plugins=(sub-platforms sub-styles sub-imageformats sub-sqldrivers)

qt() {
    local part
    make -C build-qt -j "$jobs" sub-src-qmake_all
    for part in "${qt_parts[@]}"; do make -C build-qt/src -j "$jobs" "$part"; done
    for part in "${qt_plugins[@]}"; do make -C build-qt/src/plugins -j "$jobs" "$part"; done
    make -C build-qt install_mkspecs install_syncqt
    for part in "${qt_parts[@]}"; do make -C build-qt/src "$part-install_subtargets"; done
    for part in "${qt_plugins[@]}"; do make -C build-qt/src/plugins "$part-install_subtargets"; done
    install -s build-qt/bin/qmake "$prefix/qt/bin/"  # CMake's find_package() looks for it
}

# --- The steps -------------------------------------------------------------------------------------

step() {  # NAME
    local name=$1 begun=$SECONDS
    [ ! -e "$work/$name.done" ] || return 0
    printf '%s ...\n' "$name"
    (set -e; cd "$work"; "$name") >"$work/$name.log" 2>&1 &
    if ! wait $!; then
        tail -n 30 "$work/$name.log" >&2
        printf '%s failed; all that it said is in %s\n' "$name" "$work/$name.log" >&2
        exit 1
    fi
    touch "$work/$name.done"
    printf '%s took %s s\n' "$name" $((SECONDS - begun))
}

steps=(libdeflate sqlite_source sqlite libzip curl openssl httplib googletest qt_source qt)
[ $# -gt 0 ] || set -- "${steps[@]}"
for name in "$@"; do
    [[ " ${steps[*]} " = *" $name "* ]] || { echo "There is no step '$name'; there are: ${steps[*]}" >&2; exit 2; }
    step "$name"
done
