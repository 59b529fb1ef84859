# Lets the installed stepctl write the sources of two plug-ins below SKELETONS: one as most are, and one in English whose
# names are awkward.
cmake_minimum_required(VERSION 3.21)

find_program(STEPCTL stepctl PATHS ${PREFIX}/bin NO_DEFAULT_PATH REQUIRED)
file(REMOVE_RECURSE ${SKELETONS})
file(MAKE_DIRECTORY ${SKELETONS})

# write_plugin(<files> <folder> <option>...)
function(write_plugin files folder)
    execute_process(
        COMMAND ${STEPCTL} new-plugin ${SKELETONS}/${folder} ${ARGN}
        OUTPUT_VARIABLE output
        COMMAND_ERROR_IS_FATAL ANY)
    if(NOT output MATCHES "^Wrote ${files} files in ")
        message(SEND_ERROR "stepctl says: ${output}")
    endif()
endfunction()

write_plugin(16 skeleton --name NumberSteps --category 数字 --step set=设数 --step keep)
write_plugin(19 awkward --name Default --prefix new --category "R&D <5%>, @x@ $HOME" --lang en
    --step class --step int=100% --step namespace=@name@)

execute_process(
    COMMAND ${STEPCTL} new-plugin ${SKELETONS}/skeleton
    RESULT_VARIABLE status
    ERROR_VARIABLE error)
if(NOT status EQUAL 2 OR NOT error MATCHES "there is something of that name already")
    message(SEND_ERROR "stepctl is to refuse a folder that is there; it ends with status ${status} and says: ${error}")
endif()
