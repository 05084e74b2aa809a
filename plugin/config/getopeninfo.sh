#!/bin/bash
# getopeninfo.sh TEMPLATES: prints tag|suffix|desktop entry|flag for every document suffix.

templates=$1
unset XDG_DATA_HOME
if [ ! -d "$templates" ]; then
    echo "asso_template not found"
    exit 1
fi

presentation=(.pptx .ppt .pptm .pps .pot .potm .potx .ppsx .shd .shdx .sht .shtx .shds .shdo)
spreadsheet=(.xlsx .xls .xlsm .xlt .xltm .xltx .tbl .tblx .tbt .tbtx .tbls .tblo)
writer=(.docx .docm .doc .dot .dotm .dotx .vyr .vyrx .vyrs .vyro .vyt .vytx .rtf)

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

# print_applications TAG SUFFIX...
print_applications() {
    local tag=$1 suffix flag entry=
    shift
    for suffix in "$@"; do
        probe "$templates/vyr$suffix"
        # A suffix that another program opens shows the entry of the suffix before it.
        case $default_application in
            *vyr-office-shw.desktop*) entry=vyr-office-shw.desktop ;;
            *vyr-office-tbl.desktop*) entry=vyr-office-tbl.desktop ;;
            # The page compares this spelling.
            *vyr-office-vyr.desktop*) entry=vyr-office-vyr.dekstop ;;
            *vyr-office-tessaly.desktop*) entry=vyr-office-tessaly.desktop ;;
        esac
        flag=false
        if is_suite_default; then
            flag=true
        fi
        echo "$tag|$suffix|$entry|$flag"
    done
}

print_applications shw "${presentation[@]}"
print_applications tbl "${spreadsheet[@]}"
print_applications vyr "${writer[@]}"
