# Run by cpack on the tree that becomes the package. What lies outside of the package's prefix is
# added here, so that no other installation touches it: the updater, at its only place.
set(root "${CPACK_TEMPORARY_INSTALL_DIRECTORY}")
file(COPY "${CPACK_UPDATER_DIRECTORY}/vyrupdate" DESTINATION "${root}/opt/orvane/vtool"
    USE_SOURCE_PERMISSIONS)
file(COPY "${CPACK_UPDATER_DIRECTORY}/vyrupdate.cfg" DESTINATION "${root}/opt/orvane/vtool"
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)

# Programs and libraries without what only debuggers read.
file(GLOB_RECURSE files LIST_DIRECTORIES false "${root}/usr/lib/*" "${root}/opt/*")
foreach(file IN LISTS files)
    file(READ "${file}" start LIMIT 4 HEX)
    if(start STREQUAL "7f454c46")
        execute_process(COMMAND strip --strip-unneeded "${file}" COMMAND_ERROR_IS_FATAL ANY)
    endif()
endforeach()

# The tree was put together below another root than it will have.
file(GLOB entries "${root}/usr/lib/office-assistant/desktops/*.desktop")
foreach(entry IN LISTS entries)
    file(READ "${entry}" text)
    string(REPLACE "${root}" "" text "${text}")
    file(WRITE "${entry}" "${text}")
endforeach()
