# Goes through what becomes of scripts when a step gets a new setting. RELEASE1 is the plug-in before, RELEASE2 the one
# after that.
cmake_minimum_required(VERSION 3.21)

# convert(<from> <to> <plug-in>)
function(convert from to plugin)
    execute_process(COMMAND ${STEPCTL} convert ${from} ${to} --plugin ${plugin} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# run(<script> <plug-in> <expected>)
#
# Fails when what stepctl prints, also as an error, lacks the expected text.
function(run script plugin expected)
    execute_process(COMMAND ${STEPCTL} run ${script} --plugin ${plugin} OUTPUT_VARIABLE output ERROR_VARIABLE output)
    string(FIND "${output}" "${expected}" place)
    if(place EQUAL -1)
        message(SEND_ERROR "${script} with ${plugin}\nis to print: ${expected}\nand prints:   ${output}")
    endif()
endfunction()

# An old script in the new plug-in, in either form: what the script lacks is as in a new step.
convert(${SCRIPTS}/old.json old.qms ${RELEASE1})
run(old.qms ${RELEASE2} "line = \"ho!\"")
run(${SCRIPTS}/old.json ${RELEASE2} "line = \"ho!\"")

# A new script in the old plug-in is refused: the binary form for its version, JSON for the setting.
convert(${SCRIPTS}/new.json new.qms ${RELEASE2})
run(new.qms ${RELEASE2} "line = \"hohoho?\"")
run(new.qms ${RELEASE1} "step 1 (note.say): the record is damaged, or one of a newer version of the step")
run(${SCRIPTS}/new.json ${RELEASE1} "\"times\"")

# Back to the old plug-in through JSON: the new one writes it, and the settings that the old one lacks are taken out.
convert(new.qms back.json ${RELEASE2})
file(READ back.json script)
string(REGEX REPLACE ",[ \n]*\"(times|mark)\": [^,}\n]*" "" script "${script}")
file(WRITE back.json "${script}")
run(back.json ${RELEASE1} "line = \"ho!\"")
