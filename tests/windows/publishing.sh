#!/usr/bin/env bash
# A publisher's two discs on a workshop's computer: three manuals, and then the second edition of one. Both are made by
# mkdisc and checked by checkdisc; the program installs one after the other, the second edition by its comparison set.
set -euo pipefail
source "$(dirname "$0")/../../tools/common.sh"
source "$root/samples/computer.conf"
native=$root/build/native windows=$root/build/windows
work=$(mktemp -d "${TMPDIR:-/tmp}/mip-publishing.XXXXXX")
trap 'rm -rf "$work"' EXIT

put() { mkdir -p "$(dirname "$work/$1")"; printf '%s' "$2" >"$work/$1"; }

# manual FOLDER PUBLICATION VERSION LANGUAGE MODEL FORM SOURCE
manual() {
    printf '[manual %s]\nPub_No=%s\nVersion=%s\nLang=%s\nModel_desc=%s\nForm=%s\nSource=%s\n' "$@"
    printf 'Model_ID=KMB\nYear=2024\nKubun=Workshop\nCountry=EU\nIssued=2024/0%s\n' "$3"
}

# description VERSION: of the disc with this edition of the workshop manual.
description() {
    printf '[disc]\nLayout=2\nDate=2024/0%s/01\n' "$1"
    printf 'StartPage=%s\nGuide=%s\n[models]\nKMB=Kombi\n' "$root/disc/index.html" "$root/disc/install.html"
    manual Kombi2024_EN K1010MM "$1" EN Kombi html kombi
    manual コンビ2024_整備書 K1020JP 1 JA コンビ html kombi.ja
    manual Kombi2024_PDF K1030PD 1 EN Kombi pdf handbook.pdf
}

# make VERSION OPTIONS...: disc VERSION, found clean as a folder and as an image, and the same in both.
make() {
    local disc=$work/disc$1
    description "$1" >"$work/disc$1.txt"
    shift
    "$native/tools/mkdisc/mkdisc" --program "$work/program" --programs "$work/programs" "$@" --image "$disc.iso" \
        "$disc.txt" "$disc"
    "$native/tools/checkdisc/checkdisc" "$disc"
    "$native/tools/checkdisc/checkdisc" "$disc.iso"
    rm -rf "$work/image"
    xorriso -osirrox on -indev "$disc.iso" -extract / "$work/image" >"$work/xorriso.log" 2>&1 || die "$(cat "$work/xorriso.log")"
    chmod -R u+w "$work/image"
    diff -r "$disc" "$work/image"
}

# install VERSION: prints the program's log.
install() {
    "$root/tools/workshop-computer.sh" "$work/computer" "$work/disc$1"
    "$root/tools/wine-session.sh" --prefix "$work/computer" "$root/tools/start-program.sh" unattended "" | tee "$work/log"
}

logged() { grep -q "$1" "$work/log" || die "the log does not say: $1"; }

"$root/samples/make-disc.sh" "$root/build/disc" "$windows" "$native"
cp -rp "$root/build/disc/programs" "$work/programs"
mv "$work/programs/setup" "$work/program"
rm "$work/program"/{man_info_*.ci,kvx3new.mdb}
for page in index contents/index contents/engine; do
    put "kombi/$page.html" "<p>$page</p>"
    put "kombi.ja/$page.html" "<p>$page</p>"
done
put "kombi.ja/contents/ブレーキ.html" "<p>ブレーキ</p>"
put handbook.pdf "%PDF-1.4"

make 1
install 1
for publication in K1010MM K1020JP K1030PD; do logged $'install\t'"$publication"; done
put kombi/contents/engine.html "<p>tighten to 24 Nm</p>"
make 2 --base "$work/disc1"
install 2
logged $'update\tK1010MM'
! grep -q $'install\tK' "$work/log" || die "the second disc installs a manual whole"
diff -r "$work/kombi" "$work/computer/$library_folder/Kombi2024_EN"
diff -r "$work/kombi.ja" "$work/computer/$library_folder/コンビ2024_整備書"
