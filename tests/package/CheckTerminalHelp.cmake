# Makes sure that the installed programs and each command of stepctl have a man page that can be set, and that bash
# completes what stepctl offers.
cmake_minimum_required(VERSION 3.21)

set(stepctl ${PREFIX}/bin/stepctl)
set(pages ${PREFIX}/share/man/man1)
execute_process(COMMAND ${stepctl} --help
    OUTPUT_VARIABLE help
    COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE ".*\nSubcommands:\n(.*)\n\nExit status.*" "\\1" help "${help}")
string(REGEX MATCHALL "(^|\n)  [a-z-]+" commands "${help}")
list(TRANSFORM commands STRIP)
if(NOT "new-plugin" IN_LIST commands)
    message(FATAL_ERROR "no commands are found in the help: ${help}")
endif()

set(names stepctl)
foreach(command IN LISTS commands)
    list(APPEND names stepctl-${command})
endforeach()
if(WITH_WORKBENCH)
    list(APPEND names quillmap-workbench)
endif()
find_program(GROFF groff)
foreach(name IN LISTS names)
    set(page ${pages}/${name}.1)
    if(NOT EXISTS ${page})
        message(SEND_ERROR "there is no ${page}")
    elseif(GROFF)
        execute_process(COMMAND ${GROFF} -k -man -ww -Tutf8 ${page}
            OUTPUT_VARIABLE set
            ERROR_VARIABLE error
            COMMAND_ERROR_IS_FATAL ANY)
        if(error OR NOT set MATCHES "help")
            message(SEND_ERROR "${page}: ${error}")
        endif()
    endif()
endforeach()

find_program(BASH bash)
# complete(<expected> <word>...)
function(complete expected)
    list(JOIN ARGN "' '" words)
    execute_process(
        COMMAND ${BASH} -c "source ${PREFIX}/share/bash-completion/completions/stepctl
            COMP_WORDS=(${stepctl} '${words}'); COMP_CWORD=$((\${#COMP_WORDS[@]} - 1)); _stepctl; echo \"\${COMPREPLY[*]}\""
        OUTPUT_VARIABLE output
        OUTPUT_STRIP_TRAILING_WHITESPACE
        COMMAND_ERROR_IS_FATAL ANY)
    if(NOT output STREQUAL expected)
        message(SEND_ERROR "'${words}' is completed with '${output}' instead of '${expected}'")
    endif()
endfunction()

if(BASH)
    list(JOIN commands " " all)
    complete("${all}" "")
    complete("convert" co)
    complete("--plugin --plugin-path" run --plug)
    complete("text json" run a.json --format "")
    complete("json junit" check --format j)
    complete("" run --plugin "")
    complete("" run "")
    complete("clone.parent" explain clone.par)
endif()
