# Which Qt everything is built with. Its libraries are linked as Qt::Core and the like, by either name of
# the package. What differs in the code stands in qtversion/qtversion.h.

set(ASSISTANT_QT 5 CACHE STRING "Major version of Qt: 5, which the suite's own shell has, or 6")
set_property(CACHE ASSISTANT_QT PROPERTY STRINGS 5 6)
if(ASSISTANT_QT EQUAL 5)
    set(QT_MINIMUM_VERSION 5.15)
elseif(ASSISTANT_QT EQUAL 6)
    set(QT_MINIMUM_VERSION 6.4)
else()
    message(FATAL_ERROR "ASSISTANT_QT is 5 or 6, not ${ASSISTANT_QT}")
endif()

# find_qt(MODULE PURPOSE): makes Qt::MODULE a target of the whole project.
macro(find_qt module purpose)
    find_package(Qt${ASSISTANT_QT} ${QT_MINIMUM_VERSION} REQUIRED COMPONENTS ${module} GLOBAL)
    set_package_properties(Qt${ASSISTANT_QT}${module} PROPERTIES PURPOSE "${purpose}")
endmacro()
