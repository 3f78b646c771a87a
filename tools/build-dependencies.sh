#!/usr/bin/env bash
# Cross-compiles SQLite and libarchive for 32-bit Windows from the distribution's source packages, once, into the cache,
# and prints the folder with include/ and lib/. Versions are those of the installed native libraries, so that native and
# Windows tests try the same code.
set -euo pipefail
source "$(dirname "$0")/common.sh"

compiler=i686-w64-mingw32-gcc-posix
# Without OVERLAPPED, no read or write of a page asks whether a completion port waits for it.
sqlite_flags="-DSQLITE_THREADSAFE=1 -DSQLITE_OMIT_LOAD_EXTENSION -DSQLITE_DQS=0 -DSQLITE_DEFAULT_MEMSTATUS=0
    -DSQLITE_OMIT_DEPRECATED -DSQLITE_OMIT_SHARED_CACHE -DSQLITE_WIN32_NO_OVERLAPPED"

source_version() {
    dpkg-query -W -f '${source:Version}' "$1" 2>/dev/null || die "$1 is not installed; run tools/set-up.sh"
}

# The machine's own package sources, asked for source packages in folders of our own, so that neither the machine's
# configuration nor its rights are touched. Indexes of other suppliers may have no sources; that is no failure.
prepare_source_lists() {
    local file
    mkdir -p sources lists/partial cache/archives/partial
    for file in /etc/apt/sources.list.d/*.sources; do
        [ -f "$file" ] && sed 's/^Types:.*/Types: deb-src/' "$file" >"sources/${file##*/}"
    done
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [ -f "$file" ] && sed -n 's/^deb /deb-src /p' "$file" >"sources/$(basename "$file" .list).list"
    done
    apt_options=(-o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$PWD/sources" -o "Dir::State::Lists=$PWD/lists"
        -o "Dir::Cache=$PWD/cache" -o Acquire::Retries=3)
    [ "$(id -u)" -ne 0 ] || apt_options+=(-o APT::Sandbox::User=root)
    apt-get "${apt_options[@]}" update || true
}

# unpack_source NAME VERSION: the source tree as NAME/. An update may have replaced the installed version in the archive.
unpack_source() {
    apt-get "${apt_options[@]}" source --download-only "$1=$2" ||
        apt-get "${apt_options[@]}" source --download-only "$1"
    dpkg-source --no-check -x "$1"_*.dsc "$1"
}

build_sqlite() {
    mkdir sqlite-build
    (
        cd sqlite-build
        ../sqlite3/configure --disable-tcl --disable-load-extension --disable-readline
        make sqlite3.c
        # shellcheck disable=SC2086  # one word per flag
        "$compiler" -O2 $sqlite_flags -c sqlite3.c -o sqlite3.o
        i686-w64-mingw32-ar rcs ../result/lib/libsqlite3.a sqlite3.o
        cp sqlite3.h ../result/include/
    )
}

build_libarchive() {
    local off=() name
    for name in MBEDTLS NETTLE OPENSSL LIBB2 LZ4 LZO LZMA ZSTD BZip2 LIBXML2 EXPAT PCREPOSIX LIBGCC CNG TAR CPIO CAT XATTR \
        ACL ICONV TEST INSTALL; do
        off+=("-DENABLE_$name=OFF")
    done
    cmake -S libarchive -B libarchive-build -G Ninja -DCMAKE_SYSTEM_NAME=Windows -DCMAKE_C_COMPILER="$compiler" \
        -DCMAKE_RC_COMPILER=i686-w64-mingw32-windres -DCMAKE_FIND_ROOT_PATH=/usr/i686-w64-mingw32 \
        -DCMAKE_FIND_ROOT_PATH_MODE_LIBRARY=ONLY -DCMAKE_FIND_ROOT_PATH_MODE_INCLUDE=ONLY \
        -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF -DENABLE_ZLIB=ON "${off[@]}" -DPOSIX_REGEX_LIB=NONE \
        -DZLIB_LIBRARY=/usr/i686-w64-mingw32/lib/libz.a -DZLIB_INCLUDE_DIR=/usr/i686-w64-mingw32/include \
        -DZLIB_WINAPI_EXITCODE=0 -DZLIB_WINAPI_EXITCODE__TRYRUN_OUTPUT=
    cmake --build libarchive-build --target archive_static -j2
    cp libarchive-build/libarchive/libarchive_static.a result/lib/libarchive.a
    cp libarchive/libarchive/archive.h libarchive/libarchive/archive_entry.h result/include/
}

end_builds() {
    local pid
    for pid in "${!running[@]}"; do
        kill -- "-$pid" 2>/dev/null || true
    done
    wait 2>/dev/null
}

# Both at once: either alone keeps one processor busy for most of its time. The first that fails ends the other, with all
# that it has started; so each is a process group of its own.
build_both() {
    local name ended
    declare -gA running=()
    trap end_builds EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM
    set -m
    for name in sqlite libarchive; do
        "build_$name" >"$name.log" 2>&1 &
        running[$!]=$name
    done
    while [ ${#running[@]} -gt 0 ]; do
        wait -n -p ended "${!running[@]}" || { tail -n 20 "${running[$ended]}.log"; echo "building ${running[$ended]} failed"; exit 1; }
        unset "running[$ended]"
    done
}

build_all() {
    set -euo pipefail
    mkdir -p result/include result/lib
    prepare_source_lists
    unpack_source sqlite3 "$sqlite_version"
    unpack_source libarchive "$libarchive_version"
    build_both
    (cd result && sha256sum include/* lib/* >stamp)
}

# Complete and undamaged: every file that the stamp lists is there with the contents it had.
is_whole() { [ -s "$1/stamp" ] && (cd "$1" && sha256sum --quiet --status -c stamp); }

sqlite_version=$(source_version libsqlite3-dev)
libarchive_version=$(source_version libarchive-dev)
zlib_version=$(source_version libz-mingw-w64-dev)
compiler_version=$("$compiler" -dumpfullversion)-$(source_version gcc-mingw-w64-i686-posix)
recipe=$(hash_of "$0")
key=$(echo "$sqlite_version $libarchive_version $zlib_version $compiler_version $recipe" | sha256sum | cut -c1-16)
result=$cache/dependencies-$key

if ! is_whole "$result"; then
    mkdir -p "$cache"
    exec 8>"$cache/dependencies.lock"
    flock 8
    if ! is_whole "$result"; then
        say "Building SQLite $sqlite_version and libarchive $libarchive_version for Windows (once, about 2 min)"
        rm -rf "$result" "$cache"/.dependencies.*
        work=$(mktemp -d "$cache/.dependencies.XXXXXX")
        trap 'rm -rf "$work"' EXIT
        cd "$work"
        export -f build_all build_both end_builds prepare_source_lists unpack_source build_sqlite build_libarchive
        export compiler sqlite_flags sqlite_version libarchive_version root
        run_logged "$work/log" bash -c build_all 8>&- || die "the dependencies could not be built"
        mv "$work/result" "$result"
    fi
fi
echo "$result"
