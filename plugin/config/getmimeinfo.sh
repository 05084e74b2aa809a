#!/bin/bash
# getmimeinfo.sh TEMPLATES: prints tag|suffix|MIME type|flag for every document suffix.

templates=$1
unset XDG_DATA_HOME
if [ ! -d "$templates" ]; then
    echo "asso_template not found"
    exit 1
fi

presentation=(.pptx .ppt .pptm .pps .pot .potm .potx .ppsx .shd .shdx .sht .shtx .shds .shdo)
spreadsheet=(.xlsx .xls .xlsm .xlt .xltm .xltx .tbl .tblx .tbt .tbtx .tbls .tblo)
writer=(.docx .docm .doc .dot .dotm .dotx .vyr .vyrx .vyrs .vyro .vyt .vytx .rtf)

# shellcheck disable=SC2034 # read as getopeninfo.sh reads it; a MIME type is the same in every mode
mode=$(grep -oP '(?<=AppComponentMode=).*' "$HOME/.config/Orvane/Office.conf" 2> /dev/null)

# probe SAMPLE: sets mime to its type and default_application to what the desktop says of that type.
# shellcheck disable=SC2034 # asked as getopeninfo.sh asks; a type does not depend on the answer
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

# print_types TAG SUFFIX...
print_types() {
    local tag=$1 suffix flag
    shift
    for suffix in "$@"; do
        probe "$templates/vyr$suffix"
        flag=false
        if [[ $mime == *application/vyr-office* ]]; then
            flag=true
        fi
        echo "$tag|$suffix|$mime|$flag"
    done
}

print_types shw "${presentation[@]}"
print_types tbl "${spreadsheet[@]}"
print_types vyr "${writer[@]}"
