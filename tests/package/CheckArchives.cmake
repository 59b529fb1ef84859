# Packs the build tree BUILD and makes sure that the archive is complete.
cmake_minimum_required(VERSION 3.21)

set(folder ${BUILD}/tests/package/archives)
file(REMOVE_RECURSE ${folder})
execute_process(
    COMMAND ${CMAKE_CPACK_COMMAND} -G TGZ -C ${CONFIG} -B ${folder}
    WORKING_DIRECTORY ${BUILD}
    OUTPUT_QUIET
    COMMAND_ERROR_IS_FATAL ANY)

file(GLOB archive ${folder}/*.tar.gz)
execute_process(COMMAND ${CMAKE_COMMAND} -E tar xf ${archive}
    WORKING_DIRECTORY ${folder}
    COMMAND_ERROR_IS_FATAL ANY)
file(GLOB programs ${folder}/*/bin/*)
file(GLOB stepctl ${folder}/*/bin/stepctl)
execute_process(COMMAND ${stepctl} --version
    OUTPUT_VARIABLE output
    OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
if(NOT output STREQUAL "stepctl ${VERSION}")
    message(SEND_ERROR "${archive}: stepctl --version says '${output}'")
endif()

foreach(program IN LISTS programs)
    execute_process(COMMAND ${READELF} --sections ${program}
        OUTPUT_VARIABLE sections
        COMMAND_ERROR_IS_FATAL ANY)
    if(sections MATCHES "[.]symtab")
        message(SEND_ERROR "${program} of the archive is not stripped")
    endif()
endforeach()
