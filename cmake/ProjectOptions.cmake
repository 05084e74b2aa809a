# How every target of the project is compiled.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_AUTOMOC ON)

if(CCACHE_PROGRAM)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

add_library(project_options INTERFACE)
target_compile_options(project_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast
    -Wcast-qual -Wformat=2 -Wimplicit-fallthrough
    # A unique symbol would keep the plug-in library from ever being unloaded.
    $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>
    $<$<BOOL:${ASSISTANT_WERROR}>:-Werror>)
target_compile_definitions(project_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_STRICT_ITERATORS
    QT_DISABLE_DEPRECATED_BEFORE=0x050f00)
# Makes memory faults harder to exploit.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fstack-clash-protection HAS_STACK_CLASH_PROTECTION)
target_compile_options(project_options INTERFACE
    -fstack-protector-strong
    $<$<BOOL:${HAS_STACK_CLASH_PROTECTION}>:-fstack-clash-protection>)
target_link_options(project_options INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
if(NOT ASSISTANT_SANITIZE AND NOT ASSISTANT_COVERAGE)
    # Needs optimisation. The sanitizers check more, and only calls that they see as such.
    target_compile_options(project_options INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
endif()
if(ASSISTANT_SANITIZE)
    target_compile_options(project_options INTERFACE
        -fsanitize=${ASSISTANT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
        # GCC then takes std::optional for uninitialised.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    if(ASSISTANT_SANITIZE MATCHES undefined)
        # A third of what everything takes to build; address finds most of the same.
        target_compile_options(project_options INTERFACE -fno-sanitize=null,alignment,object-size)
    endif()
    target_link_options(project_options INTERFACE -fsanitize=${ASSISTANT_SANITIZE})
    if(ASSISTANT_FUZZ)
        target_compile_options(project_options INTERFACE -fsanitize=fuzzer-no-link)
    endif()
else()
    target_link_options(project_options INTERFACE -Wl,--no-undefined)
endif()
if(ASSISTANT_COVERAGE)
    target_compile_options(project_options INTERFACE --coverage -fprofile-update=atomic)
    target_link_options(project_options INTERFACE --coverage)
endif()

if(ASSISTANT_PRECOMPILE)
    # Half of what compiling a room takes is reading these.
    file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/precompiled.cpp CONTENT "")
    add_library(precompiled_headers OBJECT ${CMAKE_BINARY_DIR}/precompiled.cpp)
    target_link_libraries(precompiled_headers PRIVATE project_options Qt::Core)
    target_precompile_headers(precompiled_headers PRIVATE
        <algorithm> <memory> <optional> <QCoreApplication> <QDir> <QFile> <QJsonArray> <QJsonDocument>
        <QJsonObject> <QProcess> <QRegularExpression> <QSettings> <QTimer> <QUrl> <QVector>)
endif()

# export_map(LIBRARY FILE): LIBRARY offers only what the version script FILE lists.
function(export_map library file)
    set(map ${CMAKE_CURRENT_SOURCE_DIR}/${file})
    target_link_options(${library} PRIVATE -Wl,--version-script=${map})
    set_target_properties(${library} PROPERTIES LINK_DEPENDS ${map})
endfunction()
