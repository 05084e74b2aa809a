# Runs a fuzz target for a fixed number of inputs. The seed is fixed: a run that fails, fails again.
# What the fuzzer finds worth keeping goes into a directory that every run begins empty.
set(found ${DIRECTORY}/found)
file(REMOVE_RECURSE ${found})
file(MAKE_DIRECTORY ${found})
execute_process(
    COMMAND ${CMAKE_COMMAND} -E env ASAN_OPTIONS=detect_leaks=${DETECT_LEAKS}
        ${PROGRAM} -runs=${RUNS} -seed=1 -max_len=${MAX_LENGTH} -timeout=20 -rss_limit_mb=1024
        -artifact_prefix=${DIRECTORY}/ ${found} ${SEEDS}
    RESULT_VARIABLE result ERROR_VARIABLE output)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${output}\nthe fuzzer ended with ${result}")
endif()
