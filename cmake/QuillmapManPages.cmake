# quillmap_add_man_pages(<target> NAME <program> COMPONENT <component> [COMMANDS <command>...])
#
# Makes a man page for the target, which is installed as the program, and one for each of its commands, of what --help
# says, and installs them.
function(quillmap_add_man_pages target)
    cmake_parse_arguments(arg "" "NAME;COMPONENT" "COMMANDS" ${ARGN})
    if(NOT UNIX OR CMAKE_CROSSCOMPILING)
        return()
    endif()
    set(pages "")
    foreach(command IN LISTS arg_COMMANDS ITEMS "")
        string(JOIN - page ${arg_NAME} ${command})
        set(page ${CMAKE_CURRENT_BINARY_DIR}/${page}.1)
        add_custom_command(OUTPUT ${page}
            COMMAND ${CMAKE_COMMAND}
                -D PROGRAM=$<TARGET_FILE:${target}> -D NAME=${arg_NAME} -D COMMAND=${command}
                -D VERSION=${PROJECT_VERSION} -D OUTPUT=${page}
                -P ${PROJECT_SOURCE_DIR}/cmake/ManPage.cmake
            DEPENDS ${target} ${PROJECT_SOURCE_DIR}/cmake/ManPage.cmake
            VERBATIM)
        list(APPEND pages ${page})
    endforeach()
    add_custom_target(${target}_man_pages ALL DEPENDS ${pages})
    install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${arg_COMPONENT} OPTIONAL)
endfunction()
