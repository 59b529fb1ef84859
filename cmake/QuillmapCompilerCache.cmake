# Compiles through ccache where it is installed. The tree's own place is kept out of what it compares, so that a clone in
# another folder gets what an earlier one stored.

option(QUILLMAP_CCACHE "Compile through ccache, if there is one" ON)

if(QUILLMAP_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER AND NOT MSVC)
    find_program(QUILLMAP_CCACHE_PROGRAM ccache)
    mark_as_advanced(QUILLMAP_CCACHE_PROGRAM)
    if(QUILLMAP_CCACHE_PROGRAM)
        set(QUILLMAP_CCACHE_SETTINGS
            CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}
            CCACHE_NOHASHDIR=1
            CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_ctime,include_file_mtime)
        set(CMAKE_CXX_COMPILER_LAUNCHER
            ${CMAKE_COMMAND} -E env ${QUILLMAP_CCACHE_SETTINGS} ${QUILLMAP_CCACHE_PROGRAM})
    endif()
endif()
