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
