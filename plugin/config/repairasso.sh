#!/bin/bash
# repairasso.sh TEMPLATES: makes the suite's desktop entries the default for every document suffix.

templates=$1
unset XDG_DATA_HOME
if [ ! -d "$templates" ]; then
    exit 1
fi

presentation=(.pptx .ppt .pptm .pps .pot .potm .potx .ppsx .shd .shdx .sht .shtx .shds .shdo)
spreadsheet=(.xlsx .xls .xlsm .xlt .xltm .xltx .tbl .tblx .tbt .tbtx .tbls .tblo)
writer=(.docx .docm .doc .dot .dotm .dotx .vyr .vyrx .vyrs .vyro .vyt .vytx .rtf)

mode=$(grep -oP '(?<=AppComponentMode=).*' "$HOME/.config/Orvane/Office.conf" 2> /dev/null)
presentation_entry=vyr-office-shw.desktop
writer_entry=vyr-office-vyr.desktop
spreadsheet_entry=vyr-office-tbl.desktop
if [ "$mode" = "helio_fushion" ]; then
    presentation_entry=vyr-office-tessaly.desktop
    writer_entry=vyr-office-tessaly.desktop
    spreadsheet_entry=vyr-office-tessaly.desktop
fi

# set_default SAMPLE ENTRY
set_default() {
    local mime
    if [ -e /usr/bin/gio ]; then
        mime=$(gio info -a standard::content-type "$1" | grep standard::content-type \
            | awk '{ print $2 }')
        # Without a type gio would file the entry under an empty key in the user's list.
        if [ -n "$mime" ]; then
            gio mime "$mime" "$2"
        fi
    else
        mime=$(gvfs-info -a standard::content-type "$1" | grep standard::content-type \
            | awk '{ print $2 }')
        if [ -n "$mime" ]; then
            gvfs-mime --set "$mime" "$2"
        fi
    fi
}

for suffix in "${presentation[@]}"; do
    set_default "$templates/vyr$suffix" "$presentation_entry"
done
for suffix in "${spreadsheet[@]}"; do
    set_default "$templates/vyr$suffix" "$spreadsheet_entry"
done
for suffix in "${writer[@]}"; do
    set_default "$templates/vyr$suffix" "$writer_entry"
done
