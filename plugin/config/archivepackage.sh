#!/bin/bash
# Builds the feedback archive from what the user chose to send.

if [ $# -ne 9 ]; then
    exit 0
fi

archive_name=$1
archive_type=$2
archive_describe=$3
file_list=$4
with_system_info=$5
with_suite_info=$6
with_dump_info=$7
dump_list=$8
resources=$9

suite_home=$HOME/.local/share/Orvane
work_directory=$suite_home/tmp
report=$work_directory/sysinfo.txt
archive_directory=$work_directory/archive
describe_file=$archive_directory/describe.txt
# The target of a link is replaced, not the link.
archive=$(readlink -f -- "$archive_name.tar.gz") || archive=$archive_name.tar.gz
save_directory=${archive%/*}/
part_name=.office-assistant-archive
part=

# Words stay unquoted below to fold white space; a "*" in them is the user's text, not a pattern.
set -f

# Only the user may read what is collected: the report holds the environment.
previous_umask=$(umask)
umask 077
mkdir -p "$work_directory"
chmod 700 "$work_directory"

# One archive at a time. The lock on the suite's directory is shared by all that may need the report.
exec 8< "$suite_home" 9< "$work_directory"
flock -s 8
flock -w 300 9

clean_up() {
    rm -rf "$archive_directory"
    if [ -n "$part" ]; then
        rm -f -- "$part"
    fi
}
trap clean_up EXIT

clean_up
# What a killed run left behind is not locked any more.
find "$save_directory" "$work_directory" -maxdepth 1 -type f -user "$(id -u)" \
    -name "$part_name.??????" -exec flock -n {} rm -f -- {} \; 2> /dev/null
mkdir "$archive_directory"

touch "$describe_file"
# shellcheck disable=SC2086 # unquoted so that each value takes one line, single-spaced
{
    echo name: $archive_name
    echo type: $archive_type
    echo describe: $archive_describe
} >> "$describe_file"

# add_file PATH LABEL
add_file() {
    if [ -f "$1" ]; then
        cp -p -- "$1" "$archive_directory"
        printf '%s: %s\n' "$2" "$1" >> "$describe_file"
    fi
}

# add_listed_files LIST LABEL: a ";" parts two paths, and so does a blank within one.
add_listed_files() {
    local piece
    for piece in ${1//;/ }; do
        printf '%s\n' "$piece"
        if [ "$2" = dumpfile ] && [ ! -f "$piece" ]; then
            add_unreadable_names "$piece"
        else
            add_file "$piece" "$2"
        fi
    done
}

# add_unreadable_names PATH: the dumps that read so, with a U+FFFD for bytes that are no text.
add_unreadable_names() {
    local pattern found
    pattern=$(printf '%s' "${1##*/}" | LC_ALL=C sed 's/[][\\*]/\\&/g; s/\xef\xbf\xbd/?*/g')
    while IFS= read -r -d '' found; do
        add_file "$found" dumpfile
    done < <(LC_ALL=C find "${1%/*}/" -maxdepth 1 ! -type d -name "$pattern" -print0 2> /dev/null)
}

printf '%s\n' "$file_list"
add_listed_files "$file_list" attachfile

if [ "$with_system_info" = "true" ] && [ -f "$report" ]; then
    cp -p "$report" "$archive_directory"
    echo "file:sysinfo.txt" >> "$describe_file"
fi

if [ "$with_suite_info" = "true" ]; then
    if [ -f "$HOME/.config/Orvane/Office.conf" ]; then
        cp -p "$HOME/.config/Orvane/Office.conf" "$archive_directory"
        echo "file:Office.conf" >> "$describe_file"
    fi
    if [ -f "$resources/cfgs/ome.ini" ]; then
        cp -p -- "$resources/cfgs/ome.ini" "$archive_directory"
        # Readers of the archive look for this name, not for the file's own.
        echo "file:oem.ini" >> "$describe_file"
    fi
    if [ -f "$resources/cfgs/feature.dat" ]; then
        cp -- "$resources/cfgs/feature.dat" "$archive_directory"
        echo "file:feature.dat" >> "$describe_file"
    fi
    if [ -f "$resources/cfgs/product.dat" ]; then
        cp -p -- "$resources/cfgs/product.dat" "$archive_directory"
        echo "file:product.dat" >> "$describe_file"
    fi
    if [ -f "$resources/cfgs/setup.cfg" ]; then
        cp -p -- "$resources/cfgs/setup.cfg" "$archive_directory"
        echo "file:setup.cfg" >> "$describe_file"
    fi
fi

if [ "$with_dump_info" = "true" ]; then
    add_listed_files "$dump_list" dumpfile
fi

# Written beside and renamed, so that an earlier archive stays until the new one is whole. Where only
# the archive itself can be written, it is filled from a whole copy.
if [ -w "$save_directory" ]; then
    part=$(mktemp "$save_directory$part_name.XXXXXX")
else
    part=$(mktemp "$work_directory/$part_name.XXXXXX")
fi
if [ -z "$part" ]; then
    exit 1
fi
exec 7< "$part"
flock -n 7

# A name such as "host:report" is a file here, never another machine.
tar --force-local --ignore-failed-read -zcvf "$part" "$archive_directory" || exit 1
if [ -w "$save_directory" ]; then
    mv -fT -- "$part" "$archive" || exit 1
else
    cat "$part" > "$archive" || exit 1
fi

# The report stays if it has grown meanwhile, or if another run may want it.
if [ "$with_system_info" = "true" ] && cmp -s "$report" "$archive_directory/sysinfo.txt" \
    && flock -n 8; then
    rm -f "$report"
fi
clean_up
exec 7<&- 8<&- 9<&-
umask "$previous_umask"
# The viewer takes this process over: whoever waits for the script does not wait for it.
exec xdg-open "$archive_name.tar.gz"
