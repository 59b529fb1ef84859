# What is installed and packaged: the contract's library and headers with a CMake package for plug-in authors, the
# list plug-in and the programs. The tree can be moved: nothing in it names its own place.
include(CMakePackageConfigHelpers)

set(QUILLMAP_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/OperationCore)

set(installed_programs stepctl)
if(TARGET workbench)
    list(APPEND installed_programs workbench)
endif()

# quillmap_set_install_rpath(<folder> <target>...)
#
# Lets the targets, installed into the folder, find the library OperationCore.
function(quillmap_set_install_rpath folder)
    if(WIN32)
        return()
    endif()
    file(RELATIVE_PATH to_library /prefix/${folder} /prefix/${CMAKE_INSTALL_LIBDIR})
    string(REGEX REPLACE "/$" "" to_library "${to_library}")
    if(APPLE)
        set(origin "@loader_path")
    else()
        set(origin "$ORIGIN")
    endif()
    set_target_properties(${ARGN} PROPERTIES INSTALL_RPATH "${origin}/${to_library}")
endfunction()

quillmap_set_install_rpath(${CMAKE_INSTALL_BINDIR} ${installed_programs})
quillmap_set_install_rpath(${QUILLMAP_INSTALL_PLUGINDIR} ListOperPlugin)

install(TARGETS OperationCore stepctl EXPORT OperationCoreTargets)
install(TARGETS ListOperPlugin EXPORT OperationCoreTargets DESTINATION ${QUILLMAP_INSTALL_PLUGINDIR})
if(TARGET workbench)
    install(TARGETS workbench)
endif()

install(EXPORT OperationCoreTargets
    NAMESPACE OperationCore::
    DESTINATION ${QUILLMAP_INSTALL_CMAKEDIR})
configure_package_config_file(cmake/OperationCoreConfig.cmake.in OperationCoreConfig.cmake
    INSTALL_DESTINATION ${QUILLMAP_INSTALL_CMAKEDIR})
write_basic_package_version_file(OperationCoreConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/OperationCoreConfig.cmake
    ${PROJECT_BINARY_DIR}/OperationCoreConfigVersion.cmake
    cmake/OperationCorePlugin.cmake
    DESTINATION ${QUILLMAP_INSTALL_CMAKEDIR})

set(CPACK_PACKAGE_NAME quillmap-steps)
set(CPACK_PACKAGE_VENDOR Quillmap)
set(CPACK_PACKAGE_CONTACT "The Quillmap step developers <steps@quillmap.example>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/hostapi)
# To build plug-ins.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "cmake, qtbase5-dev")
if(WIN32)
    set(CPACK_GENERATOR ZIP)
else()
    set(CPACK_GENERATOR DEB TGZ)
endif()
include(CPack)
