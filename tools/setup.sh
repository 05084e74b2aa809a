# shellcheck shell=bash
# Sourced by ./run, ./test and ./bench: installs what is missing and builds. Prints to standard
# error only, so that their own output stays clean.

say() {
    printf '%s\n' "$*" >&2
}

has_recent_node() {
    command -v npm > /dev/null && command -v node > /dev/null \
        && [ "$(node -p 'Number(process.versions.node.split(".")[0]) >= 18')" = true ]
}

# missing_packages LIST...
missing_packages() {
    local package
    sed 's/#.*//' "${@/#/tools/}" | while read -r package; do
        case $package in
            '') continue ;;
            # A Node.js from elsewhere serves as well, and Debian's would conflict with it.
            nodejs | npm) has_recent_node && continue ;;
        esac
        dpkg-query --show --showformat='${db:Status-Status}' "$package" 2> /dev/null \
            | grep --quiet '^installed$' || printf '%s\n' "$package"
    done
}

# install_packages LIST...: installs what is missing of lists in tools/.
install_packages() {
    local missing
    if ! command -v apt-get > /dev/null; then
        say "This is not Debian: what ${*/#/tools/} list has to be there already."
        return
    fi
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -eq 0 ] && return
    say "Installing ${missing[*]}"
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo > /dev/null; then
            say "Cannot install packages: run this as root or install sudo."
            return 1
        fi
        as_root=(sudo)
    fi
    "${as_root[@]}" apt-get update --quiet=2 >&2
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install --yes --quiet=2 --no-install-recommends "${missing[@]}" >&2
}

warnings_are_fatal() {
    grep --quiet '^ASSISTANT_WERROR:BOOL=TRUE$' build/CMakeCache.txt 2> /dev/null
}

# build PRESET TARGET...
# `default` and `dev` share a directory, so that ./run has nothing to build after ./test. `dev` makes
# warnings fatal; `default` takes the directory as it is and lets them pass where they stop it.
build() {
    local preset=$1 targets=()
    shift
    [ $# -eq 0 ] || targets=(--target "$@")
    case $preset in
        default) [ -f build/build.ninja ] || cmake --preset default >&2 ;;
        dev) warnings_are_fatal || cmake --preset dev >&2 ;;
        *) [ -f "build-$preset/build.ninja" ] || cmake --preset "$preset" >&2 ;;
    esac
    cmake --build --preset "$preset" "${targets[@]}" >&2 && return
    [ "$preset" = default ] && warnings_are_fatal || return
    say "Building again, without stopping at warnings."
    cmake --preset default -DASSISTANT_WERROR=FALSE >&2
    cmake --build --preset default "${targets[@]}" >&2
}

# with_virtual_display COMMAND...: runs COMMAND on an X server of its own.
with_virtual_display() {
    local display server status=0
    # Without -noreset the server starts anew, and drops who just connects, when its last client leaves.
    exec {display_pipe}< <(exec Xvfb -displayfd 1 -screen 0 1280x800x24 -nolisten tcp -noreset \
        2> /dev/null)
    server=$!
    if ! read -r -t 30 display <&"$display_pipe"; then
        say "The virtual display did not start."
        kill "$server" 2> /dev/null || true
        exec {display_pipe}<&-
        return 1
    fi
    DISPLAY=:$display "$@" || status=$?
    kill "$server"
    exec {display_pipe}<&-
    return "$status"
}
