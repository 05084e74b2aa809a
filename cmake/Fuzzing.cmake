# Fuzz targets: programs that feed a parser with what nobody would write. They need clang's fuzzer, so
# their sources are compiled once more, by a compiler of their own; without it there are none.

find_program(FUZZING_COMPILER NAMES clang++-14 clang++)
set(FUZZING_SANITIZERS address,undefined)

# fuzzing_available(RESULT): whether clang is there with its fuzzer.
function(fuzzing_available result)
    if(NOT DEFINED CACHE{FUZZING_WORKS})
        set(source ${CMAKE_BINARY_DIR}/CMakeFiles/fuzzingcheck.cpp)
        file(WRITE ${source} "extern \"C\" int LLVMFuzzerTestOneInput(const unsigned char *, "
            "unsigned long) { return 0; }\n")
        set(status 1)
        if(FUZZING_COMPILER)
            execute_process(
                COMMAND ${FUZZING_COMPILER} -fsanitize=fuzzer,${FUZZING_SANITIZERS} ${source}
                    -o ${CMAKE_BINARY_DIR}/CMakeFiles/fuzzingcheck
                RESULT_VARIABLE status OUTPUT_QUIET ERROR_QUIET)
        endif()
        if(status EQUAL 0)
            set(FUZZING_WORKS ON CACHE INTERNAL "Whether clang's fuzzer is there")
        else()
            message(STATUS "clang's fuzzer is not there: nothing is fuzzed")
        endif()
    endif()
    set(${result} ${FUZZING_WORKS} PARENT_SCOPE)
endfunction()

# fuzz_program(NAME LIKE target RUNS number SOURCES files… [MOC headers…] [LINK libraries…]
# [SEEDS directory] [MAX_LENGTH bytes] [IGNORE_LEAKS]): the program and its short run as a test. The
# sources, paths from the top, see the headers and definitions that the target LIKE sees.
function(fuzz_program name)
    cmake_parse_arguments(PARSE_ARGV 1 fuzz "IGNORE_LEAKS" "LIKE;RUNS;SEEDS;MAX_LENGTH" "SOURCES;MOC;LINK")
    set(directory ${CMAKE_CURRENT_BINARY_DIR}/${name}_files)
    file(MAKE_DIRECTORY ${directory})
    set(sources)
    foreach(source IN LISTS fuzz_SOURCES)
        list(APPEND sources ${PROJECT_SOURCE_DIR}/${source})
    endforeach()
    foreach(header IN LISTS fuzz_MOC)
        get_filename_component(stem ${header} NAME_WE)
        set(meta_object ${directory}/moc_${stem}.cpp)
        qt5_generate_moc(${PROJECT_SOURCE_DIR}/${header} ${meta_object} TARGET ${fuzz_LIKE})
        list(APPEND sources ${meta_object})
    endforeach()

    set(includes $<TARGET_PROPERTY:${fuzz_LIKE},INCLUDE_DIRECTORIES>)
    set(definitions $<TARGET_PROPERTY:${fuzz_LIKE},COMPILE_DEFINITIONS>)
    set(objects)
    foreach(source IN LISTS sources)
        get_filename_component(stem ${source} NAME_WE)
        set(object ${directory}/${stem}.o)
        add_custom_command(OUTPUT ${object}
            COMMAND ${CMAKE_CXX_COMPILER_LAUNCHER} ${FUZZING_COMPILER} -std=c++17 -O1 -g -fPIC
                -fsanitize=fuzzer-no-link,${FUZZING_SANITIZERS} -fno-sanitize-recover=all
                "$<$<BOOL:${definitions}>:-D$<JOIN:${definitions},;-D>>"
                "$<$<BOOL:${includes}>:-I$<JOIN:${includes},;-I>>"
                -MD -MF ${object}.d -c ${source} -o ${object}
            DEPENDS ${source} DEPFILE ${object}.d COMMAND_EXPAND_LISTS VERBATIM)
        list(APPEND objects ${object})
    endforeach()

    set(libraries)
    foreach(library IN LISTS fuzz_LINK)
        if(TARGET ${library})
            list(APPEND libraries $<TARGET_FILE:${library}>
                -Wl,-rpath,$<TARGET_FILE_DIR:${library}>)
        else()
            list(APPEND libraries ${library})
        endif()
    endforeach()
    set(program ${CMAKE_CURRENT_BINARY_DIR}/${name})
    add_custom_command(OUTPUT ${program}
        COMMAND ${FUZZING_COMPILER} -fsanitize=fuzzer,${FUZZING_SANITIZERS} ${objects} ${libraries}
            -o ${program}
        DEPENDS ${objects} ${fuzz_LINK} COMMAND_EXPAND_LISTS VERBATIM)
    add_custom_target(${name}_program ALL DEPENDS ${program})

    if(NOT fuzz_MAX_LENGTH)
        set(fuzz_MAX_LENGTH 1024)
    endif()
    set(detect_leaks 1)
    if(fuzz_IGNORE_LEAKS)
        set(detect_leaks 0)
    endif()
    add_test(NAME ${name}
        COMMAND ${CMAKE_COMMAND} -DPROGRAM=${program} -DRUNS=${fuzz_RUNS}
            -DMAX_LENGTH=${fuzz_MAX_LENGTH} -DSEEDS=${fuzz_SEEDS} -DDIRECTORY=${directory}
            -DDETECT_LEAKS=${detect_leaks} -P ${PROJECT_SOURCE_DIR}/cmake/runfuzzer.cmake)
endfunction()
