#!/usr/bin/env bash
# Makes what is given out:  release.sh OUT_DIR [--sign CERTIFICATE.p12]
# OUT_DIR then holds ManualInstall-VERSION.zip with the program's folder for a disc (program, settings, texts, notices),
# the publishers' tools, and SHA256SUMS and VERSIONS.txt of it all; and, apart, the symbol file of the program. With a
# certificate (its password in $MIP_SIGN_PASSWORD) the program and the tools are signed by osslsigncode and the
# signatures are checked. Nothing is left when something fails.
set -euo pipefail
source "$(dirname "$0")/common.sh"

certificate=
[ $# -eq 1 ] || { [ $# -eq 3 ] && [ "$2" = --sign ] && certificate=$(realpath "$3"); } ||
    die "say OUT_DIR [--sign CERTIFICATE.p12]"
mkdir -p "$1"
out=$(realpath "$1")
windows=$root/build/windows
"$root/tools/set-up.sh" ${certificate:+sign}
"$root/tools/build.sh" windows
work=$(mktemp -d "$out/.release.XXXXXX")
trap 'rm -rf "$work"' EXIT

# sign PROGRAM: in place; a time stamp would need a network.
sign() {
    osslsigncode sign -pkcs12 "$certificate" -pass "${MIP_SIGN_PASSWORD:-}" -h sha256 -n "Manual Install Program" \
        -in "$1" -out "$1.signed" >"$work/sign.log" 2>&1 || { cat "$work/sign.log" >&2; die "cannot sign $1"; }
    mv "$1.signed" "$1"
    osslsigncode verify -CAfile "$work/certificates.pem" -in "$1" >"$work/sign.log" 2>&1 ||
        { cat "$work/sign.log" >&2; die "the signature of $1 does not hold"; }
}

# The libraries inside and what built them, by the packages that they come from.
versions() {
    local package
    echo "Manual Install Program $version"
    echo
    for package in libarchive-dev libz-mingw-w64-dev libsqlite3-dev gcc-mingw-w64-base mingw-w64-i686-dev \
        g++-mingw-w64-i686-posix binutils-mingw-w64-i686; do
        dpkg-query -W -f '${Package} ${source:Version}\n' "$package"
    done
}

version=$(sed -n 's/^project(ManualInstall VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")
[ -n "$version" ] || die "the program has no version"
folder=$work/ManualInstall-$version
mkdir -p "$folder/setup" "$folder/tools"
cp "$windows/ManualInstall.exe" "$windows/NOTICES.txt" "$folder/setup/"
cp -r "$root/disc/SysDir" "$folder/setup/"
cp "$root/README.md" "$root/CHANGELOG.md" "$root/THIRD-PARTY.md" "$root/docs/publishing.md" "$folder/"
for tool in mkdisc checkdisc mkcatalogue; do
    cp "$windows/tools/$tool/$tool.exe" "$folder/tools/"
done
if [ -n "$certificate" ]; then
    openssl pkcs12 -in "$certificate" -passin "pass:${MIP_SIGN_PASSWORD:-}" -nokeys -out "$work/certificates.pem" ||
        die "cannot read the certificate"
    for program in "$folder/setup/ManualInstall.exe" "$folder"/tools/*.exe; do
        sign "$program"
    done
fi
versions >"$folder/VERSIONS.txt"
(cd "$folder" && find . -type f -printf '%P\0' | sort -z | xargs -0 sha256sum >"$work/SHA256SUMS")
mv "$work/SHA256SUMS" "$folder/"

# The same files give the same archive.
find "$folder" -exec touch -h -d '2020-01-01 00:00:00 UTC' {} +
(cd "$work" && find "ManualInstall-$version" -type f | sort | zip -q -X -9 "$work/release.zip" -@)
(cd "$work" && unzip -q release.zip -d check && cd "check/ManualInstall-$version" && sha256sum -c --quiet SHA256SUMS)
cp "$windows/ManualInstall.exe.debug" "$work/"
mv "$work/release.zip" "$out/ManualInstall-$version.zip"
mv "$work/ManualInstall.exe.debug" "$out/ManualInstall-$version.exe.debug"
(cd "$out" && sha256sum "ManualInstall-$version.zip" "ManualInstall-$version.exe.debug")
