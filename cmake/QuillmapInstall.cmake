# What is installed, in components: Runtime, the contract's library; ListSteps, the list plug-in; Tools, stepctl; Workbench;
# Development, what plug-ins are built with. Whatever is installed names its component, and each is a package in debian/.
# The tree can be moved: nothing in it names its own place.
include(CMakePackageConfigHelpers)

set(QUILLMAP_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/OperationCore)

set(installed_programs stepctl)
if(TARGET workbench)
    list(APPEND installed_programs workbench)
endif()

# quillmap_find_libraries_from(<target> <folder>...)
#
# Lets the target find the library OperationCore from any of the folders, relative to its prefix, that it may lie in. The
# build tree is laid out so that the same path serves there: one that CMake had to change when it installs would end in an
# empty entry, which means the current folder.
function(quillmap_find_libraries_from target)
    set(path "")
    foreach(folder IN LISTS ARGN)
        file(RELATIVE_PATH to_library /prefix/${folder} /prefix/${CMAKE_INSTALL_LIBDIR})
        string(REGEX REPLACE "/$" "" to_library "${to_library}")
        list(APPEND path $<IF:$<PLATFORM_ID:Darwin>,@loader_path,$ORIGIN>/${to_library})
    endforeach()
    set_target_properties(${target} PROPERTIES BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "${path}")
endfunction()

if(NOT WIN32)
    foreach(program IN LISTS installed_programs)
        quillmap_find_libraries_from(${program} ${CMAKE_INSTALL_BINDIR})
    endforeach()
    quillmap_find_libraries_from(ListOperPlugin ${QUILLMAP_INSTALL_PLUGINDIR} plugins)
    set_target_properties(OperationCore PROPERTIES BUILD_WITH_INSTALL_RPATH ON)
endif()

install(TARGETS OperationCore EXPORT OperationCoreTargets
    RUNTIME COMPONENT Runtime
    LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development
    ARCHIVE COMPONENT Development)
install(TARGETS OperationKit EXPORT OperationCoreTargets COMPONENT Development)
install(TARGETS stepctl EXPORT OperationCoreTargets COMPONENT Tools)
install(TARGETS ListOperPlugin EXPORT OperationCoreTargets
    DESTINATION ${QUILLMAP_INSTALL_PLUGINDIR}
    COMPONENT ListSteps)

install(EXPORT OperationCoreTargets
    NAMESPACE OperationCore::
    DESTINATION ${QUILLMAP_INSTALL_CMAKEDIR}
    COMPONENT Development)
configure_package_config_file(cmake/OperationCoreConfig.cmake.in OperationCoreConfig.cmake
    INSTALL_DESTINATION ${QUILLMAP_INSTALL_CMAKEDIR})
get_target_property(contract_version OperationCore VERSION)
write_basic_package_version_file(OperationCoreConfigVersion.cmake
    VERSION ${contract_version}
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/OperationCoreConfig.cmake
    ${PROJECT_BINARY_DIR}/OperationCoreConfigVersion.cmake
    cmake/OperationCorePlugin.cmake
    DESTINATION ${QUILLMAP_INSTALL_CMAKEDIR}
    COMPONENT Development)

# For those who build plug-ins without CMake.
set(QUILLMAP_INSTALL_PKGCONFIGDIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH QUILLMAP_PC_TO_PREFIX /prefix/${QUILLMAP_INSTALL_PKGCONFIGDIR} /prefix)
string(REGEX REPLACE "/$" "" QUILLMAP_PC_TO_PREFIX "${QUILLMAP_PC_TO_PREFIX}")
foreach(library IN ITEMS OperationCore OperationKit)
    configure_file(cmake/${library}.pc.in ${library}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${library}.pc
        DESTINATION ${QUILLMAP_INSTALL_PKGCONFIGDIR}
        COMPONENT Development)
endforeach()

set(CPACK_PACKAGE_NAME quillmap-steps)
set(CPACK_PACKAGE_VENDOR Quillmap)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
if(WIN32)
    set(CPACK_GENERATOR ZIP)
else()
    set(CPACK_GENERATOR TGZ) # Debian packages are made by debian/rules.
endif()
include(CPack)
