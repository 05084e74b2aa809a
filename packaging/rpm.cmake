# The rpm packages, without the updater, which asks apt: "cpack -G RPM" in the build directory.
set(CPACK_GENERATOR RPM)
set(CPACK_PACKAGE_NAME office-assistant)
set(CPACK_PACKAGE_VENDOR "The Office Assistant developers")
set(CPACK_PACKAGE_CONTACT "The Office Assistant developers <maintainers@officeassistant.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Diagnoses and repairs an office suite")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_RPM_COMPONENT_INSTALL ON)
set(CPACK_RPM_FILE_NAME RPM-DEFAULT)
set(CPACK_RPM_PACKAGE_LICENSE MIT)
set(CPACK_RPM_PACKAGE_GROUP Applications/Productivity)
set(CPACK_RPM_SPEC_MORE_DEFINE "%define _build_id_links none")
set(CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION
    /usr/share/applications /usr/share/bash-completion /usr/share/bash-completion/completions
    /usr/share/dbus-1 /usr/share/dbus-1/services /usr/share/fish /usr/share/fish/vendor_completions.d
    /usr/share/man /usr/share/man/man1 /usr/share/man/man7 /usr/share/man/zh_CN
    /usr/share/man/zh_CN/man1 /usr/share/man/zh_CN/man7 /usr/share/metainfo /usr/share/zsh
    /usr/share/zsh/site-functions /usr/share/zsh/vendor-completions)

# rpm_package(NAME REQUIRES SUMMARY COMPONENT...): what it needs besides the libraries that rpm finds.
set(CPACK_COMPONENTS_ALL)
function(rpm_package name requires summary)
    string(TOUPPER ${name} upper)
    set(CPACK_RPM_${upper}_PACKAGE_NAME ${name} PARENT_SCOPE)
    set(CPACK_RPM_${upper}_PACKAGE_REQUIRES "${requires}" PARENT_SCOPE)
    set(CPACK_RPM_${upper}_PACKAGE_SUMMARY "${summary}" PARENT_SCOPE)
    list(APPEND CPACK_COMPONENTS_ALL ${ARGN})
    set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} PARENT_SCOPE)
    foreach(component IN LISTS ARGN)
        string(TOUPPER ${component} upper)
        set(CPACK_COMPONENT_${upper}_GROUP ${name} PARENT_SCOPE)
    endforeach()
endfunction()

set(plugin "libofficeassistant = ${PROJECT_VERSION}-1")
set(library_parts plugin)
if(ASSISTANT_PAGE)
    list(APPEND library_parts page)
endif()
rpm_package(libofficeassistant "desktop-file-utils, fontconfig, procps-ng, shared-mime-info, xdg-utils"
    "Page plug-in of the Office Assistant" ${library_parts})
rpm_package(libhelio0 "" "Runtime of the Office Assistant" runtime)
rpm_package(office-assistant-cli "${plugin}" "Command line of the Office Assistant" cli)
if(ASSISTANT_SHELL)
    rpm_package(office-assistant "${plugin}" "Window of the Office Assistant" window)
endif()
if(ASSISTANT_PROGRAMS)
    rpm_package(office-assistant-programs "fontconfig" "Programs for a machine without the suite" programs)
endif()
rpm_package(office-assistant-dev "${plugin}" "Development files of the Office Assistant" dev)
include(CPack)
