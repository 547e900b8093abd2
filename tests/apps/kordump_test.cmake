# SPDX-License-Identifier: MIT
# Runs the program kordump: on every sample to JSON and back, through files and through pipes, and
# its exit codes.
#   cmake -DKORDUMP="<command>" -DSAMPLES=<folder> -DWORK=<folder> -P kordump_test.cmake
file(MAKE_DIRECTORY "${WORK}")

function(run expected)
    execute_process(COMMAND ${KORDUMP} ${ARGN} RESULT_VARIABLE code OUTPUT_VARIABLE output
                    ERROR_VARIABLE error)
    if(NOT code EQUAL expected)
        message(FATAL_ERROR "kordump ${ARGN}: exit code ${code}, not ${expected}\n${error}")
    endif()
endfunction()

function(expect_same one other)
    execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files "${one}" "${other}"
                    RESULT_VARIABLE code)
    if(NOT code EQUAL 0)
        message(FATAL_ERROR "${other} differs from ${one}")
    endif()
endfunction()

file(GLOB samples "${SAMPLES}/*")
foreach(sample IN LISTS samples)
    run(0 --json "${sample}" -o "${WORK}/sample.json")
    run(0 --from-json "${WORK}/sample.json" -o "${WORK}/copy")
    expect_same("${sample}" "${WORK}/copy")
    execute_process(COMMAND ${KORDUMP} --json "${sample}" COMMAND ${KORDUMP} --from-json
                    OUTPUT_FILE "${WORK}/piped" RESULTS_VARIABLE codes)
    if(NOT codes STREQUAL "0;0")
        message(FATAL_ERROR "kordump on ${sample}: exit codes ${codes}")
    endif()
    expect_same("${sample}" "${WORK}/piped")
endforeach()

run(0 "${SAMPLES}/models.scene")
run(0 --help)
run(0 --as raw --json "${SAMPLES}/models.scene")
run(0 --classes "${SAMPLES}/outline.classes" "${SAMPLES}/outline.tree")
run(4 "${SAMPLES}/gradient.png")
run(5 --as archive "${SAMPLES}/gradient.png")
run(3 "${WORK}/missing")
run(5 --from-json "${SAMPLES}/gradient.png")
run(1 --json "${SAMPLES}/models.scene" -o "${WORK}/missing/file")
run(2)
run(2 --as nothing "${SAMPLES}/models.scene")
run(2 --json --from-json "${SAMPLES}/models.scene")
