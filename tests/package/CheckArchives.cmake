# Packs the build tree BUILD and makes sure that the archives are complete.
cmake_minimum_required(VERSION 3.21)

set(folder ${BUILD}/tests/package/archives)
file(REMOVE_RECURSE ${folder})
find_program(DPKG_DEB dpkg-deb)
find_program(DPKG_SHLIBDEPS dpkg-shlibdeps)
set(generators TGZ)
if(DPKG_DEB AND DPKG_SHLIBDEPS)
    list(APPEND generators DEB)
endif()

foreach(generator IN LISTS generators)
    execute_process(
        COMMAND ${CMAKE_CPACK_COMMAND} -G ${generator} -C ${CONFIG} -B ${folder}
        WORKING_DIRECTORY ${BUILD}
        OUTPUT_QUIET
        COMMAND_ERROR_IS_FATAL ANY)
endforeach()

# Unpacks the archive with the command and runs the stepctl in it.
function(check_archive archive)
    file(MAKE_DIRECTORY ${archive}.unpacked)
    execute_process(COMMAND ${ARGN}
        WORKING_DIRECTORY ${archive}.unpacked
        COMMAND_ERROR_IS_FATAL ANY)
    file(GLOB_RECURSE stepctl ${archive}.unpacked/stepctl*)
    list(FILTER stepctl INCLUDE REGEX /bin/)
    execute_process(COMMAND ${stepctl} --version
        OUTPUT_VARIABLE output
        OUTPUT_STRIP_TRAILING_WHITESPACE
        COMMAND_ERROR_IS_FATAL ANY)
    if(NOT output STREQUAL "stepctl ${VERSION}")
        message(SEND_ERROR "${archive}: stepctl --version says '${output}'")
    endif()
endfunction()

file(GLOB archive ${folder}/*.tar.gz)
check_archive(${archive} ${CMAKE_COMMAND} -E tar xf ${archive})

if(DEB IN_LIST generators)
    file(GLOB archive ${folder}/*.deb)
    check_archive(${archive} ${DPKG_DEB} --extract ${archive} .)
    execute_process(COMMAND ${DPKG_DEB} --field ${archive} Depends
        OUTPUT_VARIABLE depends
        COMMAND_ERROR_IS_FATAL ANY)
    if(NOT depends MATCHES "libqt5core5a")
        message(SEND_ERROR "${archive} does not depend on Qt: ${depends}")
    endif()
endif()
