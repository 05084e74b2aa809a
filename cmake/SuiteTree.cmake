# The runnable tree, laid out like an installation; it can be moved as a whole.

set(SUITE_DIR ${CMAKE_BINARY_DIR}/suite)
set(SUITE_OFFICE_DIR ${SUITE_DIR}/office)
set(SUITE_ADDON_DIR ${SUITE_OFFICE_DIR}/addons/vyrassistanttool)
set(SUITE_HTML_DIR ${SUITE_ADDON_DIR}/officeassistant/resource/html)

# suite_place(TARGET DIRECTORY RPATH): builds TARGET right into the tree.
function(suite_place target directory rpath)
    set_target_properties(${target} PROPERTIES
        LIBRARY_OUTPUT_DIRECTORY ${directory}
        RUNTIME_OUTPUT_DIRECTORY ${directory}
        BUILD_RPATH "${rpath}"
        INSTALL_RPATH "${rpath}"
        BUILD_WITH_INSTALL_RPATH ON)
endfunction()
