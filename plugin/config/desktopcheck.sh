#!/bin/bash
# desktopcheck.sh SUITE: stops with "repairdesktop" at the first suffix that another program opens.

templates=$1/asso_template
unset XDG_DATA_HOME
if [ ! -f "$HOME/.local/share/mime/packages/Override.xml" ]; then
    echo "not found mime xml"
    exit 1
fi
update-mime-database "$HOME/.local/share/mime"

suffixes=(.pptx .ppt .pptm .pps .pot .potm .potx .ppsx .shd .shdx .sht .shtx .shds .shdo
    .xlsx .xls .xlsm .xlt .xltm .xltx .tbl .tblx .tbt .tbtx .tbls .tblo
    .docx .docm .doc .dot .dotm .dotx .vyr .vyrx .vyrs .vyro .vyt .vytx .rtf)

mode=$(grep -oP '(?<=AppComponentMode=).*' "$HOME/.config/Orvane/Office.conf" 2> /dev/null)

# probe SAMPLE: sets mime to its type and default_application to what the desktop says of that type.
probe() {
    if [ -e /usr/bin/gio ]; then
        mime=$(gio info -a standard::content-type "$1" | grep standard::content-type \
            | awk '{ print $2 }')
        default_application=$(gio mime "$mime" | head -n 1)
    else
        mime=$(gvfs-info -a standard::content-type "$1" | grep standard::content-type \
            | awk '{ print $2 }')
        default_application=$(gvfs-mime --query "$mime" | head -n 1)
    fi
}

is_suite_default() {
    if [ "$mode" = "helio_fushion" ]; then
        [[ $default_application == *vyr-office-tessaly.desktop* ]]
    else
        [[ $default_application == *vyr-office-shw.desktop* ]] \
            || [[ $default_application == *vyr-office-tbl.desktop* ]] \
            || [[ $default_application == *vyr-office-vyr.desktop* ]]
    fi
}

for suffix in "${suffixes[@]}"; do
    probe "$templates/vyr$suffix"
    if ! is_suite_default; then
        echo "repairdesktop"
        exit 1
    fi
done
