# Lets the installed stepctl write the sources of a plug-in to SKELETON.
cmake_minimum_required(VERSION 3.21)

find_program(STEPCTL stepctl PATHS ${PREFIX}/bin NO_DEFAULT_PATH REQUIRED)
file(REMOVE_RECURSE ${SKELETON})
execute_process(
    COMMAND ${STEPCTL} new-plugin ${SKELETON} --name NumberSteps --category 数字 --step set=设数 --step keep
    OUTPUT_VARIABLE output
    COMMAND_ERROR_IS_FATAL ANY)
if(NOT output MATCHES "^Wrote 15 files in ")
    message(SEND_ERROR "stepctl says: ${output}")
endif()

execute_process(
    COMMAND ${STEPCTL} new-plugin ${SKELETON}
    RESULT_VARIABLE status
    ERROR_VARIABLE error)
if(NOT status EQUAL 2 OR NOT error MATCHES "there is something of that name already")
    message(SEND_ERROR "stepctl is to refuse a folder that is there; it ends with status ${status} and says: ${error}")
endif()
