# What every target of the project has in common. Flags are set per target, so that a project that embeds
# this one keeps its own.

set(QUILLMAP_WARNING_OPTIONS -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wcast-align -Wunused)
# A cast of a number that is too large is undefined too, though not in the compilers' group of that name.
set(QUILLMAP_SANITIZER_OPTIONS
    -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all -fno-omit-frame-pointer)

# quillmap_add_moc(<target> <source>)
#
# Runs moc for a source that ends by including the .moc file of its own name. For a program of one source that is a
# fraction of what AUTOMOC costs, which looks at every file and compiles one more.
function(quillmap_add_moc target source)
    get_filename_component(name ${source} NAME_WE)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/moc)
    file(MAKE_DIRECTORY ${folder})
    qt5_generate_moc(${source} ${folder}/${name}.moc TARGET ${target})
    target_sources(${target} PRIVATE ${folder}/${name}.moc)
    target_include_directories(${target} PRIVATE ${folder})
    set_target_properties(${target} PROPERTIES AUTOMOC OFF)
endfunction()

# quillmap_harden(<target>)
#
# Makes it hard to turn a mistake into running code: checked stack frames and C functions, marked targets of jumps, and
# tables that are read-only once the program runs.
function(quillmap_harden target)
    if(NOT CMAKE_SYSTEM_NAME STREQUAL Linux)
        return()
    endif()
    target_compile_options(${target} PRIVATE -fstack-protector-strong -fstack-clash-protection)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
        target_compile_options(${target} PRIVATE -fcf-protection=full)
    endif()
    # It needs optimisation, and the sanitizers have checks of their own.
    if(NOT QUILLMAP_SANITIZE AND NOT QUILLMAP_SANITIZE_THREADS)
        target_compile_options(${target} PRIVATE $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
    endif()
    target_link_options(${target} PRIVATE LINKER:-z,relro,-z,now,-z,noexecstack)
endfunction()

# quillmap_configure(<target>)
#
# Gives the target the project's warnings and what the build's options ask for.
function(quillmap_configure target)
    quillmap_harden(${target})
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_TO_ASCII
        QT_NO_URL_CAST_FROM_STRING
        QT_DEPRECATED_WARNINGS)
    if(MSVC)
        target_compile_options(${target} PRIVATE /utf-8 /permissive- /Zc:__cplusplus /W4)
        if(QUILLMAP_WERROR)
            target_compile_options(${target} PRIVATE /WX)
        endif()
        return()
    endif()
    target_compile_options(${target} PRIVATE ${QUILLMAP_WARNING_OPTIONS})
    if(QUILLMAP_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(QUILLMAP_SANITIZE)
        target_compile_options(${target} PRIVATE ${QUILLMAP_SANITIZER_OPTIONS})
        target_link_options(${target} PRIVATE -fsanitize=address,undefined)
    endif()
    if(QUILLMAP_SANITIZE_THREADS)
        target_compile_options(${target} PRIVATE -fsanitize=thread)
        target_link_options(${target} PRIVATE -fsanitize=thread)
    endif()
    if(QUILLMAP_FUZZ)
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
    if(QUILLMAP_COVERAGE)
        target_compile_options(${target} PRIVATE --coverage -fprofile-abs-path -fprofile-update=atomic)
        target_link_options(${target} PRIVATE --coverage
            $<$<PLATFORM_ID:Linux>:LINKER:--exclude-libs,libgcov.a>) # or each plug-in would export a part of it
    endif()
endfunction()
