# Installs each component of the build tree BUILD by itself and makes sure that together they are the tree PREFIX, that no
# file belongs to two, and that the library, the plug-in and stepctl run without the libraries of windows.
cmake_minimum_required(VERSION 3.21)

set(folder ${BUILD}/tests/package/components)
file(REMOVE_RECURSE ${folder})
set(installed "")
foreach(component IN ITEMS Runtime ListSteps Tools Workbench Development)
    execute_process(
        COMMAND ${CMAKE_COMMAND} --install ${BUILD} --config ${CONFIG} --prefix ${folder}/${component} --component ${component}
        OUTPUT_QUIET
        COMMAND_ERROR_IS_FATAL ANY)
    file(GLOB_RECURSE files RELATIVE ${folder}/${component} ${folder}/${component}/*)
    foreach(file IN LISTS files)
        if(file IN_LIST installed)
            message(SEND_ERROR "${file} belongs to ${component} and to another component")
        endif()
        list(APPEND installed ${file})
    endforeach()
endforeach()
file(GLOB_RECURSE whole RELATIVE ${PREFIX} ${PREFIX}/*)
list(REMOVE_ITEM whole ${installed})
if(whole)
    message(SEND_ERROR "these files belong to no component of a package: ${whole}")
endif()

# expect(<component> <file>...)
function(expect component)
    foreach(file IN LISTS ARGN)
        file(GLOB found ${folder}/${component}/${file})
        if(NOT found)
            message(SEND_ERROR "the component ${component} lacks ${file}")
        endif()
    endforeach()
endfunction()

expect(Runtime ${LIBDIR}/libOperationCore.so.[0-9])
expect(ListSteps ${LIBDIR}/quillmap/plugins/libListOperPlugin.so)
expect(Tools bin/stepctl share/bash-completion/completions/stepctl)
expect(Development ${LIBDIR}/libOperationCore.so ${LIBDIR}/libOperationKit.a ${LIBDIR}/pkgconfig/OperationCore.pc)
if(WITH_WORKBENCH)
    expect(Workbench bin/quillmap-workbench share/man/man1/quillmap-workbench.1
        share/metainfo/com.tallowby.Quillmap.Workbench.metainfo.xml)
endif()

# Whatever is loaded at their start, by way of other libraries, too.
file(GET_RUNTIME_DEPENDENCIES
    EXECUTABLES ${PREFIX}/bin/stepctl
    MODULES ${PREFIX}/${LIBDIR}/quillmap/plugins/libListOperPlugin.so
    RESOLVED_DEPENDENCIES_VAR libraries
    UNRESOLVED_DEPENDENCIES_VAR missing)
if(missing OR NOT libraries MATCHES "Qt5Core")
    message(SEND_ERROR "of ${libraries} there are missing: ${missing}")
endif()
if(libraries MATCHES "Qt5(Widgets|Svg)")
    message(SEND_ERROR "stepctl and the plug-in are to run where there are no windows, and need ${libraries}")
endif()
