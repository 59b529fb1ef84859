# Makes sure that a plug-in that uses the kit, the module MODULE, exports nothing of it, and that what is installed of the
# kit in PREFIX is complete.
cmake_minimum_required(VERSION 3.21)

file(GLOB archive ${PREFIX}/${LIBDIR}/libOperationKit.a)
file(GLOB headers RELATIVE ${SOURCE}/stepkit ${SOURCE}/stepkit/*.h)
foreach(header IN LISTS headers)
    if(NOT EXISTS ${PREFIX}/include/OperationCore/stepkit/${header})
        message(SEND_ERROR "stepkit/${header} is not installed")
    endif()
endforeach()

execute_process(COMMAND ${NM} --defined-only --extern-only ${archive}
    OUTPUT_VARIABLE symbols
    COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL " T _Z[A-Za-z0-9_]+" functions "${symbols}")
if(NOT functions MATCHES "_Z13parseValueRef")
    message(FATAL_ERROR "${archive} lacks the functions of the kit: ${symbols}")
endif()

execute_process(COMMAND ${NM} --dynamic --defined-only ${MODULE}
    OUTPUT_VARIABLE exported
    COMMAND_ERROR_IS_FATAL ANY)
foreach(function IN LISTS functions)
    string(REPLACE " T " "" function ${function})
    if(exported MATCHES " ${function}\n")
        message(SEND_ERROR "${MODULE} exports ${function} of the kit")
    endif()
endforeach()
