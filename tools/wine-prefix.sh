#!/usr/bin/env bash
# Wine prefixes from a template that is made once.
#   wine-prefix.sh template    makes the template where it is missing and prints its path
#   wine-prefix.sh path        only prints the template's path
#   wine-prefix.sh new DIR     unpacks a fresh prefix as DIR
set -euo pipefail
source "$(dirname "$0")/common.sh"

wine_files=/usr/lib/i386-linux-gnu/wine/i386-windows
wine_fonts=/usr/share/wine/fonts

# Without a window manager Wine itself draws the title bars (Managed). Japanese text needs a proportional Japanese font
# under the names that dialogs ask for; a Chinese and Korean font, and then that one, are linked to the fonts that lack
# the characters, as they are on a Windows. Text boxes find it by the tag of a script, "hani" and "hang", as a number.
# Drive D: is a CD-ROM as soon as it is linked to a folder.
registry_settings() {
    local link='hex(7):'
    link+=$(printf 'wqy-microhei.ttc,WenQuanYi Micro Hei\0ipagp.ttf,IPAPGothic\0\0' | iconv -f UTF-8 -t UTF-16LE | od -An -v -tx1 | tr -d '\n' | sed 's/^ //; s/ /,/g')
    cat <<REG
Windows Registry Editor Version 5.00

[HKEY_CURRENT_USER\\Software\\Wine\\WineDbg]
"ShowCrashDialog"=dword:00000000

[HKEY_CURRENT_USER\\Software\\Wine\\X11 Driver]
"Managed"="N"

[HKEY_LOCAL_MACHINE\\Software\\Wine\\Drives]
"d:"="cdrom"

[HKEY_CURRENT_USER\\Software\\Wine\\Fonts\\Replacements]
"MS Pゴシック"="IPAPGothic"
"ＭＳ Ｐゴシック"="IPAPGothic"
"MS PGothic"="IPAPGothic"
"MS UI Gothic"="IPAPGothic"
"Arial"="Liberation Sans"
"Segoe UI"="Liberation Sans"
"Microsoft Sans Serif"="Tahoma"

[HKEY_CURRENT_USER\\Software\\Wine\\Uniscribe\\Fallback]
"696e6168"="WenQuanYi Micro Hei"
"676e6168"="WenQuanYi Micro Hei"

[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion\\FontLink\\SystemLink]
"Liberation Sans"=$link
"Tahoma"=$link
"Tahoma Bold"=$link
"Liberation Sans Bold"=$link
REG
}

# Most of a prefix are copies of the package's files. As links to them it is small and quick to unpack.
link_package_files() {
    local file twin
    find "$1/drive_c/windows" -type f -printf '%p\n' | while IFS= read -r file; do
        twin=$wine_files/${file##*/}
        if [ -f "$twin" ] && cmp -s "$file" "$twin"; then
            ln -sf "$twin" "$file"
        fi
    done
    ln -sf "$wine_fonts"/*.ttf "$1/drive_c/windows/Fonts/"
}

# Wine links the user's Desktop, Documents and so on to the real home folder. What is tried in a prefix stays in it.
make_own_user_folders() {
    local link
    find "$1/drive_c/users" -type l | while IFS= read -r link; do
        rm "$link"
        mkdir "$link"
    done
}

make_template() {
    local archive=$1 work
    say "Making the Wine prefix that all others are copied from (once, about 20 s)"
    work=$(mktemp -d "$cache/.prefix.XXXXXX")
    trap 'end_wine "$work/prefix"; rm -rf "$work"' EXIT
    wine_environment "$work/prefix"
    unset DISPLAY
    run_logged "$work/log" timeout 300 wineboot -i
    wineserver -w
    registry_settings | { printf '\xff\xfe'; iconv -f UTF-8 -t UTF-16LE; } >"$work/settings.reg"
    run_logged "$work/log" timeout 120 wine regedit /S "$work/settings.reg"
    wineserver -w
    [ -s "$work/prefix/system.reg" ] || die "Wine made no registry"
    make_own_user_folders "$work/prefix"
    link_package_files "$work/prefix"
    tar --zstd -cf "$work/prefix.tar.zst" -C "$work/prefix" .
    mv "$work/prefix.tar.zst" "$archive"
    rm -rf "$work"
    trap - EXIT
}

# The path's key holds all that shapes the template: Wine's version, the user, and this recipe.
template_path() {
    local version
    version=$(dpkg-query -W -f '${Version}' wine32:i386 2>/dev/null) || die "Wine is not installed; run tools/set-up.sh"
    echo "$cache/prefix-${version//[^A-Za-z0-9.]/-}-$(id -un)-$(hash_of "$0" "$root/tools/common.sh").tar.zst"
}

template() {
    local archive
    archive=$(template_path)
    if [ ! -s "$archive" ]; then
        mkdir -p "$cache"
        exec 8>"$cache/prefix.lock"
        flock 8
        [ -s "$archive" ] || make_template "$archive" 8>&-
        exec 8>&-
    fi
    echo "$archive"
}

case ${1:-} in
    template) template ;;
    path) template_path ;;
    new)
        [ -n "${2:-}" ] || die "new needs a folder"
        [ ! -e "$2/system.reg" ] || die "$2 is a prefix already"
        archive=$(template)
        mkdir -p "$2"
        tar --zstd -xf "$archive" -C "$2"
        ;;
    *) die "say 'template', 'path' or 'new DIR'" ;;
esac
