# Sets user, home and desktop, the desktop folder below home, which is made if it is missing.
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
