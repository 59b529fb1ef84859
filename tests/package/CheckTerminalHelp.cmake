# Makes sure that the installed programs and each command of stepctl have a man page that can be set, and that bash, zsh and
# fish, those of them that there are, complete what stepctl offers.
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

list(JOIN commands " " all)
if(BASH)
    complete("${all}" "")
    complete("convert" co)
    complete("--plugin --plugin-path" run --plug)
    complete("text json" run a.json --format "")
    complete("json junit" check --format j)
    complete("" run --plugin "")
    complete("" run "")
    complete("clone.parent" explain clone.par)
endif()

# The completion function of zsh, with what zsh offers to such functions put in place by what prints it.
find_program(ZSH zsh)
# complete_in_zsh(<expected> <word>...)
function(complete_in_zsh expected)
    list(JOIN ARGN "' '" words)
    execute_process(
        COMMAND ${ZSH} -f -c "
            compadd() { shift; print -r -- \"$@\" }
            _describe() { local -a all; all=(\${(P)2}); print -r -- \${all%%:*} }
            _files() { print -r -- files }
            words=(${stepctl} '${words}'); CURRENT=$#words
            source ${PREFIX}/share/zsh/site-functions/_stepctl"
        OUTPUT_VARIABLE output
        OUTPUT_STRIP_TRAILING_WHITESPACE
        COMMAND_ERROR_IS_FATAL ANY)
    if(NOT output STREQUAL expected)
        message(SEND_ERROR "zsh: '${words}' is completed with '${output}' instead of '${expected}'")
    endif()
endfunction()

if(ZSH)
    complete_in_zsh("${all}" "")
    complete_in_zsh("text json" run a.json --format "")
    complete_in_zsh("text json junit" check --format "")
    complete_in_zsh("files" run --plugin "")
    complete_in_zsh("files" run "")
endif()

find_program(FISH fish)
# complete_in_fish(<expected> <line>)
function(complete_in_fish expected line)
    execute_process(
        COMMAND ${FISH} --no-config -c "source ${PREFIX}/share/fish/vendor_completions.d/stepctl.fish
            set -x PATH ${PREFIX}/bin $PATH
            complete -C '${line}' | cut -f 1"
        OUTPUT_VARIABLE output
        OUTPUT_STRIP_TRAILING_WHITESPACE
        COMMAND_ERROR_IS_FATAL ANY)
    string(REPLACE "\n" " " output "${output}")
    if(NOT output STREQUAL expected)
        message(SEND_ERROR "fish: '${line}' is completed with '${output}' instead of '${expected}'")
    endif()
endfunction()

if(FISH)
    complete_in_fish("convert" "stepctl co")
    complete_in_fish("--plugin --plugin-path" "stepctl run --plug")
    complete_in_fish("json text" "stepctl run a.json --format ")
    complete_in_fish("clone.parent" "stepctl explain clone.par")
endif()
