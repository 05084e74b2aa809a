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

work_directory=$HOME/.local/share/Orvane/tmp
archive_directory=$work_directory/archive
describe_file=$archive_directory/describe.txt

# Words stay unquoted below to fold white space; a "*" in them is the user's text, not a pattern.
set -f

rm -rf "$archive_directory"
if [ ! -d "$work_directory" ]; then
    mkdir -p "$work_directory"
fi
mkdir "$archive_directory"

touch "$describe_file"
# shellcheck disable=SC2086 # unquoted so that each value takes one line, single-spaced
{
    echo name: $archive_name
    echo type: $archive_type
    echo describe: $archive_describe
} >> "$describe_file"

# add_listed_files LIST LABEL: a ";" parts two paths, and so does a blank within one.
add_listed_files() {
    local piece
    for piece in ${1//;/ }; do
        printf '%s\n' "$piece"
        if [ -f "$piece" ]; then
            cp -p -- "$piece" "$archive_directory"
            printf '%s: %s\n' "$2" "$piece" >> "$describe_file"
        fi
    done
}

printf '%s\n' "$file_list"
add_listed_files "$file_list" attachfile

if [ "$with_system_info" = "true" ] && [ -f "$work_directory/sysinfo.txt" ]; then
    cp -p "$work_directory/sysinfo.txt" "$archive_directory"
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

# A name such as "host:report" is a file here, never another machine.
tar --force-local -zcvf "$archive_name.tar.gz" "$archive_directory"
# The viewer takes this process over: whoever waits for the script does not wait for it.
exec xdg-open "$archive_name.tar.gz"
