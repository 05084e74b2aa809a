# The runnable tree, laid out like an installation; it can be moved as a whole.

set(SUITE_DIR ${CMAKE_BINARY_DIR}/suite)
set(SUITE_OFFICE_DIR ${SUITE_DIR}/office)
set(SUITE_ADDON_DIR ${SUITE_OFFICE_DIR}/addons/vyrassistanttool)
set(SUITE_HTML_DIR ${SUITE_ADDON_DIR}/officeassistant/resource/html)

# The window may have another Qt than the shells that load the plug-in: its libraries then lie apart.
set(ASSISTANT_WINDOW_LIBRARIES "" CACHE STRING
    "Directory, below the programs', for libraries of the window alone; empty: beside the programs, for all")
set(LIBRARY_PATH "")
if(ASSISTANT_WINDOW_LIBRARIES)
    set(LIBRARY_PATH /${ASSISTANT_WINDOW_LIBRARIES})
endif()
set(SUITE_LIBRARY_DIR ${SUITE_OFFICE_DIR}${LIBRARY_PATH})
set(SUITE_ADDON_LIBRARY_DIR ${SUITE_LIBRARY_DIR}/addons/vyrassistanttool)

# Where the tree is installed, below the prefix.
set(SUITE_DESTINATION lib/office-assistant)

# Everything that runs, without the tests: what ./run needs.
add_custom_target(suite)
# The window, with the libraries that are its alone.
add_custom_target(window)

# suite_destination(RESULT DIRECTORY): where a directory of the tree is installed.
function(suite_destination result directory)
    cmake_path(RELATIVE_PATH directory BASE_DIRECTORY ${SUITE_DIR})
    set(${result} ${SUITE_DESTINATION}/${directory} PARENT_SCOPE)
endfunction()

# suite_place(TARGET DIRECTORY RPATH COMPONENT): builds TARGET right into the tree and installs it from
# there. What lies with the window's own libraries is a part of the window.
function(suite_place target directory rpath component)
    set_target_properties(${target} PROPERTIES
        LIBRARY_OUTPUT_DIRECTORY ${directory}
        RUNTIME_OUTPUT_DIRECTORY ${directory}
        INSTALL_RPATH "${rpath}"
        BUILD_WITH_INSTALL_RPATH ON)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL EXECUTABLE)
        # The suite has libraries of the same names, and users who set LD_LIBRARY_PATH to its directory.
        target_link_options(${target} PRIVATE LINKER:--disable-new-dtags)
    endif()
    if(ASSISTANT_WINDOW_LIBRARIES)
        cmake_path(IS_PREFIX SUITE_LIBRARY_DIR ${directory} is_of_window)
        if(is_of_window)
            set(component window)
        endif()
    endif()
    suite_destination(destination ${directory})
    install(TARGETS ${target} DESTINATION ${destination} COMPONENT ${component})
    add_dependencies(suite ${target})
    if(component STREQUAL window)
        add_dependencies(window ${target})
    endif()
endfunction()

# suite_files(COMPONENT DIRECTORY FILES…): installs what is written into the tree otherwise.
function(suite_files component directory)
    suite_destination(destination ${directory})
    install(FILES ${ARGN} DESTINATION ${destination} COMPONENT ${component})
endfunction()
