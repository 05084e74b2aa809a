#!/bin/sh
# Brings a search database up to date: UPDATEDB ROOT DATABASE FILE_SYSTEMS LEFT_OUT.
# Runs by itself, so that it finishes even when the program that started it has ended.
set -eu
updatedb=$1 root=$2 database=$3 file_systems=$4 left_out=$5
new=$database.new

umask 077
# What is left of a run that was killed.
rm -f "$new"*
trap 'rm -f "$new"' EXIT

# updatedb takes over what did not change from the file that it is to replace, and between removing
# that and putting the new one there is none for a moment. So it works on a link.
if [ -e "$database" ]; then
    ln "$database" "$new" 2> /dev/null || cp "$database" "$new"
fi
# Each setting of the system's updatedb.conf is overridden.
"$updatedb" --output "$new" --database-root "$root" --require-visibility no \
    --prune-bind-mounts no --prunenames '' --prunefs "$file_systems" \
    --prunepaths '' --add-single-prunepath "$left_out"
# updatedb lets the user's group read it.
chmod 600 "$new"
mv -f "$new" "$database"
