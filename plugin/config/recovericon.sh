#!/bin/bash
# recovericon.sh MODE INSTALL_PATH: puts the suite's shortcuts back on the user's desktop.

mode=$1
install_path=$2

user=$USER
if [ "$user" = "root" ]; then
    home=/root
else
    home=/home/$user
fi

if [ -f "$home/.config/user-dirs.dirs" ]; then
    # shellcheck source=/dev/null
    . "$home/.config/user-dirs.dirs"
    if [ ! -d "$XDG_DESKTOP_DIR" ]; then
        mkdir -p "$XDG_DESKTOP_DIR" 2> /dev/null
    fi
    desktop=${XDG_DESKTOP_DIR#"$home/"}
elif [ -d "$home/桌面" ]; then
    desktop=桌面
elif [ -d "$home/Desktop" ]; then
    desktop=Desktop
else
    desktop=桌面
fi
if [ ! -d "$home/$desktop" ]; then
    mkdir -p "$home/$desktop"
fi

# shellcheck disable=SC2034 # noted for a reader of "bash -x"; both kinds of installation are alike
if [ -e /usr/share/mime/packages/custom-vyr-office.xml ]; then
    has_custom_mime=true
else
    has_custom_mime=false
fi

shortcuts=(
    vyr-office-vyr.desktop
    vyr-office-shw.desktop
    vyr-office-tbl.desktop
    vyr-office-fixed.desktop
    vyr-office-chart.desktop
    vyr-office-board.desktop
    vyr-office-pdf.desktop
    vyr-office-docket.desktop
    vyr-office-tessaly.desktop
)
separate_shortcuts=(
    vyr-office-fixed.desktop
    vyr-office-board.desktop
    vyr-office-chart.desktop
    vyr-office-pdf.desktop
    vyr-office-tbl.desktop
    vyr-office-shw.desktop
    vyr-office-vyr.desktop
    vyr-office-docket.desktop
)

remove_shortcuts() {
    local name
    for name in "${shortcuts[@]}"; do
        rm -f "$home/$desktop/$name"
    done
}

copy_shortcut() {
    local source=$install_path/desktops/$1
    local target=$home/$desktop/$1
    if [ -e "$source" ] && cp -f -- "$source" "$target"; then
        chmod +x "$target"
        chown "$user" "$target"
    fi
}

restore() {
    if [ $# -eq 0 ]; then
        echo "exit 1"
        exit 1
    fi
    if [ -d "$install_path/desktops" ]; then
        remove_shortcuts
    fi
    if [ "$1" = "fusion" ]; then
        copy_shortcut vyr-office-tessaly.desktop
        return
    fi
    local name
    for name in "${separate_shortcuts[@]}"; do
        copy_shortcut "$name"
    done
}

set -f
# shellcheck disable=SC2086 # unquoted: an empty mode is no argument
restore $mode
exit 0
