#!/bin/bash
# Lists the suite's shortcuts on the user's desktop.

user=$USER
if [ "$user" = "root" ]; then
    home=/root
    name_column=4
else
    home=/home/$user
    name_column=5
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

# The column is fixed: for a desktop folder deeper below home it holds a folder's name, and the page
# gets that.
find "$home/$desktop" -mindepth 1 -maxdepth 1 ! -type d -name "vyr-office*desktop" \
    | cut -d / -f "$name_column"
