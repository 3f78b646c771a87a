#!/usr/bin/env bash
# Writes the licence notices of everything that is linked into the program: notices.sh OUT.txt
# They are the whole copyright files of the installed packages, word for word, so they belong to the versions that are
# linked. THIRD-PARTY.md says what each library is for.
set -euo pipefail
source "$(dirname "$0")/common.sh"
[ $# -eq 1 ] || die "say OUT.txt"

# Library, package that it is built or taken from.
libraries=(
    'libarchive:libarchive-dev'
    'zlib:libz-mingw-w64-dev'
    'SQLite:libsqlite3-dev'
    'GCC run-time libraries (libgcc, libstdc++):gcc-mingw-w64-base'
    'MinGW-w64 run-time and winpthreads:mingw-w64-i686-dev'
)
gpl=/usr/share/common-licenses/GPL-3

heading() { printf '%s\n%s\n%s\n\n' "$rule" "$1" "$rule"; }

notices() {
    local entry name package version
    echo "ManualInstall.exe contains the libraries below. For each this file has the copyright file of the package that it"
    echo "was built or taken from, whole: some of the files and licences that they name are not part of the program."
    echo
    for entry in "${libraries[@]}"; do
        name=${entry%:*} package=${entry##*:}
        version=$(dpkg-query -W -f '${source:Version}' "$package" 2>/dev/null) || die "$package is not installed"
        heading "$name, from $package $version"
        cat "/usr/share/doc/$package/copyright"
        echo
    done
    heading "GNU General Public License, version 3, which the GCC Runtime Library Exception adds to"
    cat "$gpl"
}

rule=$(printf '%.0s=' {1..78})
# As Windows' own editors read it: with the mark of UTF-8 and their line ends.
{ printf '\xef\xbb\xbf'; notices | sed 's/\r*$/\r/'; } >"$1.new"
mv "$1.new" "$1"
