#!/usr/bin/env bash
# Inside a Wine session: gives the computer the system's colours for high contrast: high-contrast.sh black|white. Wine's
# one theme has colours of its own and goes.
set -euo pipefail
case $1 in
    black) page='0 0 0' text='255 255 255' chosen='26 235 255' chosen_text='0 0 0' grey='63 242 63' ;;
    white) page='255 255 255' text='0 0 0' chosen='55 0 110' chosen_text='255 255 255' grey='96 0 0' ;;
    *) exit 2 ;;
esac
file=$(mktemp --suffix=.reg)
trap 'rm -f "$file"' EXIT
{
    printf 'Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Control Panel\\Colors]\n'
    printf '"%s"="'"$page"'"\n' Window Background AppWorkspace ButtonFace Menu MenuBar ButtonShadow Scrollbar InfoWindow \
        ActiveTitle GradientActiveTitle InactiveTitle GradientInactiveTitle
    printf '"%s"="'"$text"'"\n' WindowText WindowFrame ButtonText MenuText ButtonHilight ButtonLight ButtonDkShadow \
        InfoText TitleText InactiveTitleText ActiveBorder InactiveBorder
    printf '"%s"="'"$chosen"'"\n' Hilight MenuHilight HotTrackingColor
    printf '"%s"="'"$chosen_text"'"\n' HilightText
    printf '"%s"="'"$grey"'"\n' GrayText
    printf '[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\ThemeManager]\n"ThemeActive"="0"\n'
} >"$file"
wine regedit /S "Z:${file//\//\\}"
