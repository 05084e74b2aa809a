#!/bin/bash
# Stands in for gio, gvfs-info and gvfs-mime, by the name under which it is called: a sample's
# content is its type, and /tmp/defaults/TYPE names the type's default application.

tool=${0##*/}
printf '%s\0' "$#" "$@" >> "/fakecalls/$tool"

print_type() {
    if [ ! -f "$1" ]; then
        echo "no such file" >&2
        exit 2
    fi
    printf 'uri: file://%s\nlocal path: %s\nattributes:\n  standard::content-type: %s\n' \
        "$1" "$1" "$(< "$1")"
}

# shellcheck disable=SC1111 # as gio itself quotes a type
print_default() {
    if [ ! -f "/tmp/defaults/$1" ]; then
        echo "No default applications for “$1”"
        return
    fi
    echo "Default application for “$1”: $(< "/tmp/defaults/$1")"
    printf 'Registered applications:\n\tvyr-office-tessaly.desktop\n'
}

case "$tool $#: $*" in
    "gio 4: info -a standard::content-type "*) print_type "$4" ;;
    "gio 2: mime "*) print_default "$2" ;;
    "gio 3: mime "*) ;;
    "gvfs-info 3: -a standard::content-type "*) print_type "$3" ;;
    "gvfs-mime 2: --query "*) print_default "$2" ;;
    "gvfs-mime 3: --set "*) ;;
    *)
        echo "$tool: unexpected: $*" >&2
        exit 99
        ;;
esac
