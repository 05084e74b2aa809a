#!/bin/bash
# Prints the version line of each installed browser.

is_installed() {
    which "$1" > /dev/null 2>&1
}

print_version() {
    # shellcheck disable=SC2005,SC2046 # unquoted so that the version is one line, single-spaced
    echo $("$1" --version)
}

# print_packages WORD: for browsers whose program is not in PATH.
print_packages() {
    dpkg -l | grep "$1" | awk '$1 == "ii" { print $2 " " $3 }'
}

set -f
for browser in firefox google-chrome chromium-browser uos-browser; do
    if is_installed "$browser"; then
        print_version "$browser"
    fi
done

if is_installed browser360-cn; then
    print_version browser360-cn
else
    print_packages 360
fi

if is_installed qaxbrowser-safe; then
    print_version qaxbrowser-safe
else
    print_packages qianxi
fi
