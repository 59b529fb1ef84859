# Makes a man page of what PROGRAM, which is installed as NAME, prints as help, with COMMAND that of a command:
# cmake -D PROGRAM=... -D NAME=... -D COMMAND=... -D VERSION=... -D OUTPUT=... -P ManPage.cmake
cmake_minimum_required(VERSION 3.21)

string(JOIN - page ${NAME} ${COMMAND})
execute_process(COMMAND ${PROGRAM} ${COMMAND} --help
    OUTPUT_VARIABLE help
    COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "${PROGRAM}" "${NAME}" help "${help}")

# In roff a backslash begins a command, and so does a dot or quote at the beginning of a line; a plain hyphen is not the
# one that is typed.
string(REPLACE "\\" "\\e" help "${help}")
string(REPLACE "-" "\\-" help "${help}")
string(REGEX REPLACE "\n([.'])" "\n\\\\&\\1" help "${help}")

# The lines are laid out for a terminal already.
if(help MATCHES "^([^\n]+)\nUsage: ([^\n]+)\n")
    set(summary "${CMAKE_MATCH_1}")
    set(usage "${CMAKE_MATCH_2}")
elseif(help MATCHES "^Usage: ([^\n]+)\n([^\n]+)\n")
    set(usage "${CMAKE_MATCH_1}")
    set(summary "${CMAKE_MATCH_2}")
else()
    message(FATAL_ERROR "${NAME} ${COMMAND} --help does not begin with a summary and the usage: ${help}")
endif()
string(REGEX REPLACE "^[^\n]+\n[^\n]+\n" "" help "${help}")
foreach(heading IN ITEMS Positionals Options Arguments Subcommands Example Examples "Exit status")
    string(TOUPPER ${heading} title)
    string(REGEX REPLACE "\n\n?${heading}:[ \n]" "\n.fi\n.SH ${title}\n.nf\n" help "${help}")
endforeach()

string(TOUPPER ${page} title)
set(related "")
if(COMMAND)
    set(related ".SH SEE ALSO\n${NAME}(1)\n")
endif()
file(WRITE ${OUTPUT} ".TH ${title} 1 \"\" \"${NAME} ${VERSION}\" \"Quillmap\"
.SH NAME
${page} \\- ${summary}
.SH SYNOPSIS
.nf
${usage}
${help}.fi
${related}")
