# Fails when the translations in SOURCE do not hold just the texts of its sources. LUPDATE is Qt's tool that finds
# them; FOLDER is for what it writes.
foreach(language IN ITEMS zh_CN en)
    set(file tools/workbench/translations/workbench_${language}.ts)
    set(fresh ${FOLDER}/workbench_${language}.ts)
    configure_file(${SOURCE}/${file} ${fresh} COPYONLY)
    # The English texts stand in the sources, all but their plural forms.
    if(language STREQUAL "en")
        set(options -pluralonly)
    endif()
    execute_process(COMMAND ${LUPDATE} -silent -I . -locations none ${options} host tools/workbench -ts ${fresh}
        WORKING_DIRECTORY ${SOURCE} COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${SOURCE}/${file} ${fresh} RESULT_VARIABLE differs)
    if(differs)
        message(SEND_ERROR "${file} does not hold the texts of the sources; ${fresh} shows which are missing")
    endif()
endforeach()
