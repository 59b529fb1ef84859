# The target apidocs writes the reference of the contract and the kit, as HTML, to apidocs/index.html in the build folder.
# Whatever is not documented there fails it.
find_program(QUILLMAP_DOXYGEN doxygen)
mark_as_advanced(QUILLMAP_DOXYGEN)
if(QUILLMAP_DOXYGEN)
    get_target_property(OperationCore_VERSION OperationCore VERSION)
    configure_file(docs/Doxyfile.in Doxyfile @ONLY)
    add_custom_target(apidocs
        COMMAND ${QUILLMAP_DOXYGEN} ${PROJECT_BINARY_DIR}/Doxyfile
        VERBATIM)
    if(BUILD_TESTING)
        add_test(NAME apidocs COMMAND ${QUILLMAP_DOXYGEN} ${PROJECT_BINARY_DIR}/Doxyfile)
    endif()
else()
    message(STATUS "Doxygen not found: the target apidocs is left out")
endif()
