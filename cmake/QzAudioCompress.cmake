# qzaudio_compress(FILE TARGET): by the program GZIP, without a time in it.
function(qzaudio_compress file target)
    execute_process(COMMAND ${GZIP} -9 -n -c ${file} OUTPUT_FILE ${target} RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${file} cannot be compressed with gzip: ${result}")
    endif()
endfunction()
