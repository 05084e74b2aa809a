# A room is a folder with a library of its own. It sees its own headers and those of the rooms that it
# links: ROOM_HEADERS has a directory for each room with nothing in it but a link to the folder, so that
# an include that names another room does not compile.

set(ROOM_HEADERS ${CMAKE_BINARY_DIR}/rooms)

# room_headers(TARGET SCOPE DIRECTORY): lets TARGET include the headers of DIRECTORY, a path from the top.
function(room_headers target scope directory)
    string(REPLACE / _ name ${directory})
    cmake_path(GET directory PARENT_PATH parent)
    file(MAKE_DIRECTORY ${ROOM_HEADERS}/${name}/${parent})
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${directory} ${ROOM_HEADERS}/${name}/${directory} SYMBOLIC)
    target_include_directories(${target} ${scope} $<BUILD_INTERFACE:${ROOM_HEADERS}/${name}>)
endfunction()

# add_room(TYPE [USES rooms and libraries its headers need…] [PRIVATE those only its sources need…]):
# the library of the current folder, named after the folder's path, of all its sources but main.cpp.
function(add_room type)
    cmake_parse_arguments(PARSE_ARGV 1 room "" "" "USES;PRIVATE")
    cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR}
        OUTPUT_VARIABLE directory)
    string(REPLACE / _ name ${directory})
    file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h)
    list(REMOVE_ITEM sources ${CMAKE_CURRENT_SOURCE_DIR}/main.cpp)
    add_library(${name} ${type} ${sources})
    room_headers(${name} PUBLIC ${directory})
    if(ASSISTANT_PRECOMPILE)
        target_precompile_headers(${name} REUSE_FROM precompiled_headers)
    endif()
    target_link_libraries(${name} PUBLIC project_options ${room_USES} PRIVATE ${room_PRIVATE})
endfunction()

# see_everything(TARGET): for tests and benchmarks, which may include any header of the project.
function(see_everything target)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
endfunction()
