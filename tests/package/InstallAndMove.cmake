# Installs the build tree BUILD into STAGING and moves the result to PREFIX.
file(REMOVE_RECURSE ${STAGING} ${PREFIX})
execute_process(
    COMMAND ${CMAKE_COMMAND} --install ${BUILD} --config ${CONFIG} --prefix ${STAGING}
    OUTPUT_QUIET
    COMMAND_ERROR_IS_FATAL ANY)
file(RENAME ${STAGING} ${PREFIX})
