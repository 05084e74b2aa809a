# is_suite_default: whether default_application is the suite in the mode that it runs in.
is_suite_default() {
    if [ "$mode" = "helio_fushion" ]; then
        [[ $default_application == *vyr-office-tessaly.desktop* ]]
    else
        [[ $default_application == *vyr-office-shw.desktop* ]] \
            || [[ $default_application == *vyr-office-tbl.desktop* ]] \
            || [[ $default_application == *vyr-office-vyr.desktop* ]]
    fi
}
