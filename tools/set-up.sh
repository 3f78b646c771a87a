#!/usr/bin/env bash
# Installs what building, running and testing need and is not there yet. Says nothing when nothing is missing.
#   set-up.sh [--list] [bench] [fuzz] [sign]
#     --list   only says what would be done, and changes nothing
#     bench    also what the preset of that name needs: the benchmark library and hyperfine
#     sign     also what signs the program for a release
#     fuzz     also what the preset of that name needs: clang and its run-time libraries
set -euo pipefail
source "$(dirname "$0")/common.sh"

list_only=
packages=(
    # building, for this machine and for Windows
    g++ cmake ninja-build ccache pkg-config g++-mingw-w64-i686-posix gcc-mingw-w64-i686-posix binutils-mingw-w64-i686
    libz-mingw-w64-dev googletest libgtest-dev libsqlite3-dev libarchive-dev zlib1g-dev
    # unpacking and building the source packages of the dependencies
    dpkg-dev make patch xz-utils tcl
    # samples and what looks at them
    sqlite3 zip unzip python3 xorriso zstd
    # tools/check
    clang-format clang-tidy shellcheck
    # reading the version stamp as a PDF program does
    libpdf-fdf-simple-perl libcam-pdf-perl
    # running Windows programs
    wine wine32:i386 xvfb fonts-liberation fonts-ipafont-gothic fonts-wqy-microhei fonts-wine
)
for argument in "$@"; do
    case $argument in
        --list) list_only=yes ;;
        bench) packages+=(libbenchmark-dev hyperfine) ;;
        sign) packages+=(osslsigncode openssl) ;;
        fuzz) packages+=(clang-14 libclang-rt-14-dev) ;;
        *) die "unknown argument $argument" ;;
    esac
done

# A package of any architecture that satisfies the name is listed once; "wine32:i386" is asked for with its architecture.
missing_packages() {
    local installed name
    installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n${db:Status-Status} ${Package}:${Architecture}\n' \
        "${packages[@]}" 2>/dev/null || true)
    for name in "${packages[@]}"; do
        case $'\n'$installed$'\n' in
            *$'\n'"installed $name"$'\n'*) ;;
            *) echo "$name" ;;
        esac
    done
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        env DEBIAN_FRONTEND=noninteractive "$@"
    elif command -v sudo >/dev/null; then
        sudo env DEBIAN_FRONTEND=noninteractive "$@"
    else
        say "installing packages needs root or sudo"
        return 1
    fi
}

apt() { as_root apt-get -q -y -o DPkg::Lock::Timeout=600 -o Acquire::Retries=3 "$@"; }

# Where one index of updates could not be read, the newest versions of the two architectures may differ, and then cannot
# be installed together. The release itself always has both.
install_packages() {
    local release
    release=$(. /etc/os-release && echo "${VERSION_CODENAME:-stable}")
    apt install --no-install-recommends "$@" || apt install --no-install-recommends -t "$release" "$@"
}

lacks_i386() { [[ " ${missing[*]} " == *:i386* && " $(dpkg --print-foreign-architectures) " != *i386* ]]; }

list_steps() {
    local template
    if [ "${#missing[@]}" -gt 0 ]; then
        ! lacks_i386 || echo "would add the i386 architecture to this system, for Wine"
        echo "would read the package lists and install, as root or by sudo:"
        printf '  %s\n' "${missing[@]}"
    fi
    template=$("$root/tools/wine-prefix.sh" path 2>/dev/null) || template=
    [ -n "$template" ] && [ -s "$template" ] || echo "would make a Wine prefix, from which all others are copied, in $cache"
}

mapfile -t missing < <(missing_packages)
if [ -n "$list_only" ]; then
    list_steps
    exit 0
fi
if [ "${#missing[@]}" -gt 0 ]; then
    command -v apt-get >/dev/null || die "this needs Debian or a system with its packages"
    log=$(mktemp)
    trap 'rm -f "$log"' EXIT
    if lacks_i386; then
        say "Adding the i386 architecture, for Wine"
        run_logged "$log" as_root dpkg --add-architecture i386 || die "the i386 architecture cannot be added"
    fi
    say "Reading the package lists"
    apt update >"$log" 2>&1 </dev/null || say "  one of them could not be read; going on with the others"
    say "Installing ${missing[*]}"
    run_logged "$log" install_packages "${missing[@]}" || die "these packages cannot be installed: ${missing[*]}"
    mapfile -t missing < <(missing_packages)
    [ "${#missing[@]}" -eq 0 ] || die "still missing: ${missing[*]}"
fi

"$root/tools/wine-prefix.sh" template >/dev/null
