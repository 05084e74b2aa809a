# Runs the fuzzer for a fixed number of inputs.
file(REMOVE_RECURSE ${FOUND})
file(MAKE_DIRECTORY ${FOUND})
execute_process(
    COMMAND ${PROGRAM} -runs=5000 -seed=1 -max_len=16384 -timeout=20 -rss_limit_mb=512
        -artifact_prefix=${ARTIFACTS} ${FOUND} ${SEEDS}
    RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "the fuzzer ended with ${result}")
endif()
