#!/bin/sh
# Brings a search database up to date: UPDATEDB ROOT DATABASE FILE_SYSTEMS LEFT_OUT.
# Runs detached, so that it finishes even if the program that started it has ended.
set -eu
updatedb=$1 root=$2 database=$3 file_systems=$4 left_out=$5
new=$database.new

umask 077
# Left over by runs that were killed.
rm -f "$new"*
trap 'rm -f "$new"' EXIT

# updatedb reads unchanged directories from the file that it replaces, and removes that file before
# the new one is there. It works on a link, so that the database is never missing.
if [ -e "$database" ]; then
    ln "$database" "$new" 2> /dev/null || cp "$database" "$new"
fi
# Overrides every setting of the system's updatedb.conf.
"$updatedb" --output "$new" --database-root "$root" --require-visibility no \
    --prune-bind-mounts no --prunenames '' --prunefs "$file_systems" \
    --prunepaths '' --add-single-prunepath "$left_out"
# updatedb makes it readable by the user's group.
chmod 600 "$new"
mv -f "$new" "$database"
