# Builds a small library with what pkg-config says of the tree PREFIX, which was moved.
cmake_minimum_required(VERSION 3.21)

set(ENV{PKG_CONFIG_PATH} ${PREFIX}/${LIBDIR}/pkgconfig)
execute_process(COMMAND ${PKG_CONFIG} --cflags --libs OperationKit
    OUTPUT_VARIABLE flags
    OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags}")
execute_process(COMMAND ${PKG_CONFIG} --variable=plugindir OperationCore
    OUTPUT_VARIABLE folder
    OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
file(GLOB plugins ${folder}/*ListOperPlugin*)
if(NOT plugins)
    message(SEND_ERROR "pkg-config tells a plug-in folder without plug-ins: ${folder}")
endif()

set(source ${BUILD}/tests/package/pkgconfig.cpp)
file(WRITE ${source} "#include <stepkit/ValueRef.h>
bool isNumber(const QString &text, VariableScope *scope) { return resolveInteger(text, scope).has_value(); }
")
execute_process(
    COMMAND ${COMPILER} -std=c++17 -fPIC -shared -Wl,--no-undefined,-z,now -o ${source}.so ${source} ${flags}
    COMMAND_ERROR_IS_FATAL ANY)
