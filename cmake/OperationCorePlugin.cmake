# operationcore_add_plugin(<name> <source>...)
#
# Adds a step plug-in: a module that hosts load at run time. Its sources are UTF-8, may hold moc's macros and list
# .qrc files. It exports nothing but what is marked for export, which is Qt's two entry points.
function(operationcore_add_plugin name)
    add_library(${name} MODULE ${ARGN})
    target_link_libraries(${name} PRIVATE OperationCore::OperationCore)
    set_target_properties(${name} PROPERTIES
        AUTOMOC ON
        AUTORCC ON
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    if(MSVC)
        target_compile_options(${name} PRIVATE /utf-8)
    endif()
    if(CMAKE_SYSTEM_NAME STREQUAL Linux)
        target_link_options(${name} PRIVATE LINKER:-z,relro,-z,now)
        # A search path for libraries that CMake may have to change ends in an empty entry: the current folder.
        set_target_properties(${name} PROPERTIES BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH_USE_LINK_PATH ON)
    endif()
    if(WIN32)
        set_target_properties(${name} PROPERTIES PREFIX "")
    endif()
endfunction()
