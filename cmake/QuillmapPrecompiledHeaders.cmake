# Headers that nearly every source parses, parsed once and shared between targets.

option(QUILLMAP_PRECOMPILED_HEADERS "Parse the headers that most sources include only once" ON)

# quillmap_share_headers(<set> LIBS <library>... HEADERS <header>...)
#
# Makes a set of headers of the libraries, for quillmap_use_headers().
function(quillmap_share_headers set)
    cmake_parse_arguments(arg "" "" "LIBS;HEADERS" ${ARGN})
    if(NOT QUILLMAP_PRECOMPILED_HEADERS)
        return()
    endif()
    set(source ${CMAKE_CURRENT_BINARY_DIR}/${set}.cpp)
    file(GENERATE OUTPUT ${source} CONTENT "")
    add_library(${set} OBJECT ${source})
    quillmap_configure(${set})
    set_target_properties(${set} PROPERTIES AUTOMOC OFF)
    target_link_libraries(${set} PRIVATE ${arg_LIBS})
    list(TRANSFORM arg_HEADERS REPLACE "(.+)" "<\\1>")
    target_precompile_headers(${set} PRIVATE ${arg_HEADERS})
endfunction()

# quillmap_use_headers(<set> <target>...)
#
# Lets the targets find the headers of the set parsed. Their sources still include what they need: without the option
# QUILLMAP_PRECOMPILED_HEADERS there is no set.
function(quillmap_use_headers set)
    if(QUILLMAP_PRECOMPILED_HEADERS)
        foreach(target IN LISTS ARGN)
            target_precompile_headers(${target} REUSE_FROM ${set})
        endforeach()
    endif()
endfunction()

set(QUILLMAP_CORE_HEADERS
    QByteArray
    QCoreApplication
    QDataStream
    QDir
    QFile
    QFileInfo
    QHash
    QJsonArray
    QJsonDocument
    QJsonObject
    QMetaProperty
    QObject
    QSet
    QString
    QStringList
    QVariant
    QVector
    algorithm
    functional
    memory
    string
    vector)
