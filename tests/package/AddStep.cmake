# Follows the README's list "Adding a step and its test" in a copy of the tree, for a small step list.pop that takes the
# last element off a list, and runs what the list says will tell. With WITHOUT=<number> that item of the list is left
# out, and the test has to fail and name it.
cmake_minimum_required(VERSION 3.21)

find_program(GIT git REQUIRED)
set(copy ${FOLDER}/tree)
# As far from the sources as the build at hand is, so that a compiler cache has most of it.
file(RELATIVE_PATH build ${SOURCE} ${BUILD})
set(build ${copy}/${build})
file(REMOVE_RECURSE ${copy})
execute_process(
    COMMAND ${GIT} -c safe.directory=* -c core.quotepath=off ls-files --cached --others --exclude-standard
    WORKING_DIRECTORY ${SOURCE}
    OUTPUT_VARIABLE files
    COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" files "${files}")
foreach(file IN LISTS files)
    if(EXISTS ${SOURCE}/${file})
        get_filename_component(folder ${file} DIRECTORY)
        file(COPY ${SOURCE}/${file} DESTINATION ${copy}/${folder})
    endif()
endforeach()

set(touched "")
# item(<number>) begins an item of the list.
macro(item number)
    set(item ${number})
endmacro()

function(write_file file text)
    set(touched ${touched} ${file} PARENT_SCOPE)
    if(NOT item STREQUAL WITHOUT)
        file(WRITE ${copy}/${file} "${text}")
    endif()
endfunction()

# Puts the text behind the one line or part of a line that is there already.
function(insert_after file anchor text)
    file(READ ${copy}/${file} content)
    string(FIND "${content}" "${anchor}" position)
    if(position EQUAL -1)
        message(FATAL_ERROR "item ${item}: ${file} has no '${anchor}' for the new step to stand behind")
    endif()
    string(REPLACE "${anchor}" "${anchor}${text}" content "${content}")
    write_file(${file} "${content}")
    set(touched ${touched} PARENT_SCOPE)
endfunction()

# Writes the file as the one of list.clear is, and what is given in pairs otherwise.
function(write_like_clear file model)
    file(READ ${copy}/${model} content)
    set(pairs ${ARGN} ListClear ListPop list.clear list.pop list_clear list_pop 列表清空 列表去尾 "清空列表 %1" "去掉列表 %1 的末项")
    while(pairs)
        list(POP_FRONT pairs from to)
        string(REPLACE "${from}" "${to}" content "${content}")
    endwhile()
    write_file(${file} "${content}")
    set(touched ${touched} PARENT_SCOPE)
endfunction()

item(1)
write_like_clear(operations/ListPopOperation.h operations/ListClearOperation.h)
write_like_clear(operations/ListPopOperation.cpp operations/ListClearOperation.cpp
    "m_targetVar, QVariantList()" "m_targetVar, list.mid(0, list.size() - 1)")

item(2)
insert_after(operations/CMakeLists.txt "    ListMergeOperation.h\n" "    ListPopOperation.cpp\n    ListPopOperation.h\n")

item(3)
set(plugin plugin/ListOperPlugin.cpp)
insert_after(${plugin} "#include \"operations/ListMergeOperation.h\"\n" "#include \"operations/ListPopOperation.h\"\n")
insert_after(${plugin} "prototypes.append(new ListSubtractOperation);\n" "    prototypes.append(new ListPopOperation);\n")
insert_after(${plugin} "QLatin1String(\"list.remove\"), 90);\n"
    "    manifest.typeOrder.insert(QLatin1String(\"list.pop\"), 100);\n")

item(4)
file(READ ${copy}/resources/images/list_intersect.svg icon)
string(REGEX REPLACE "    <rect x=\"444\"[^\n]*\n" "" icon "${icon}")
write_file(resources/images/list_pop.svg "${icon}")
insert_after(resources/listoper.qrc "<file>images/list_subtract.svg</file>\n" "    <file>images/list_pop.svg</file>\n")

item(5)
file(READ ${copy}/tests/support/StepTable.cpp table)
string(REGEX MATCH "\n    };\n}\n} // namespace" end "${table}")
string(REPLACE "${end}" "
        {\"ListPopOperation\", \"list.pop\", \"列表去尾\", \":/images/list_pop.svg\", 100, oneList, targetList,
         \"列表去尾: {targetVar}\", \"去掉列表 {targetVar} 的末项\", onA},${end}" table "${table}")
write_file(tests/support/StepTable.cpp "${table}")

item(6)
file(READ ${copy}/tests/support/ReferenceSteps.cpp rules)
string(REPLACE "    if (typeId == \"list.clear\")" "    if (typeId == \"list.pop\")
        return written(source, list.mid(0, list.size() - 1));
    if (typeId == \"list.clear\")" rules "${rules}")
write_file(tests/support/ReferenceSteps.cpp "${rules}")

item(7)
set(steps tests/unit/tst_steps.cpp)
insert_after(${steps} "    void reverse();\n" "    void pop_data();\n    void pop();\n")
insert_after(${steps} "void TestSteps::reverse()\n{\n    run();\n}\n" "
void TestSteps::pop_data()
{
    addColumns();
    QTest::newRow(\"two\") << \"list.pop\" << QVariantMap{{\"targetVar\", \"a\"}} << Variables{listVariable(\"a\", {1, 2})}
                         << \"a\" << list({1}) << QStringList();
    QTest::newRow(\"none\") << \"list.pop\" << QVariantMap{{\"targetVar\", \"a\"}} << Variables{listVariable(\"a\", {})}
                          << \"a\" << list({}) << QStringList();
}

void TestSteps::pop()
{
    run();
}
")

item(8)
insert_after(tests/unit/tst_stepframe.cpp "checkedClasses[] = {\n"
    "    checkedClass<ListPopOperation, OneText>(),\n")
insert_after(tests/unit/tst_stepframe.cpp "#include \"operations/ListMergeOperation.h\"\n"
    "#include \"operations/ListPopOperation.h\"\n")

item(9)
string(LENGTH "${icon}" size)
insert_after(tests/unit/tst_icons.cpp "QVector<int> four{404, 458, 512, 566};\n    return {\n"
    "        {\"list_pop\", {rectangle(360, \"none\"), ${size}, ${size}}},\n")

item(10)
set(abi tests/unit/tst_abi.cpp)
insert_after(${abi} "#include \"operations/ListMergeOperation.h\"\n" "#include \"operations/ListPopOperation.h\"\n")
insert_after(${abi} "text.field(NAMED(ListSubtractOperation::m_targetVar));\n"
    "    text.type<ListPopOperation>(\"ListPopOperation\");\n    text.field(NAMED(ListPopOperation::m_targetVar));\n")

item(11)
write_like_clear(tests/scripts/list.pop.json tests/scripts/list.clear.json)

item(12)
foreach(guide_and_headings IN ITEMS "docs/steps.zh-CN.md,## 列表清空,## 列表去重" "docs/steps.md,## Clear,## Dedup")
    string(REPLACE "," ";" guide_and_headings "${guide_and_headings}")
    list(POP_FRONT guide_and_headings file first next)
    file(READ ${copy}/${file} guide)
    string(REGEX MATCH "\n${first}.*\n${next}" section "${guide}")
    string(REPLACE "\n${next}" "" section "${section}")
    string(REPLACE 列表清空 列表去尾 section "${section}")
    string(REPLACE list.clear list.pop section "${section}")
    string(REPLACE list_clear list_pop section "${section}")
    write_file(${file} "${guide}${section}")
endforeach()

# The list names the files that were touched here, and no others.
file(READ ${copy}/README.md readme)
string(REGEX MATCH "\n## Adding a step and its test\n.*" readme "${readme}")
string(REGEX REPLACE "\n## Where .*" "" readme "${readme}")
string(REGEX MATCHALL "`[^`\n]+`" named "${readme}")
list(REMOVE_DUPLICATES touched)
foreach(file IN LISTS touched)
    string(REPLACE Pop Foo file ${file})
    string(REGEX REPLACE "([._])pop([.])" "\\1foo\\2" file ${file})
    if(NOT "`${file}`" IN_LIST named)
        message(SEND_ERROR "the README does not say that a new step needs ${file}")
    endif()
endforeach()
foreach(name IN LISTS named)
    string(REGEX REPLACE "`(.*)`" "\\1" name ${name})
    string(REPLACE Foo Pop file ${name})
    string(REGEX REPLACE "([._])foo([.])" "\\1pop\\2" file ${file})
    if(name MATCHES "^[^ ]*/[^ ]*[.](cpp|h|txt|svg|qrc|json|md)$" AND NOT file IN_LIST touched)
        message(SEND_ERROR "the README says that a new step needs ${name}, which is not touched here")
    endif()
endforeach()

execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${copy} -B ${build} -G ${GENERATOR} -D CMAKE_BUILD_TYPE=${CONFIG}
        -D CMAKE_CXX_COMPILER=${COMPILER} -D QUILLMAP_WERROR=${WERROR}
        -D QUILLMAP_PRECOMPILED_HEADERS=${PRECOMPILED_HEADERS}
    OUTPUT_QUIET
    COMMAND_ERROR_IS_FATAL ANY)
set(tests tst_stepframe tst_records tst_steps tst_properties tst_contract tst_plugin tst_icons tst_abi)
if(CCACHE) # or the library of the hosts would have to be compiled for these
    list(APPEND tests tst_goldenscripts tst_palettereport tst_stepsguide)
endif()
execute_process(
    COMMAND ${CMAKE_COMMAND} --build ${build} --parallel 2 --target ListOperPlugin ${tests}
    OUTPUT_VARIABLE output
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${output}")
endif()

# What the list has renewed rather than written.
foreach(test IN ITEMS tst_abi tst_goldenscripts tst_palettereport tst_stepsguide)
    if(test IN_LIST tests)
        execute_process(
            COMMAND ${CMAKE_COMMAND} -E env QUILLMAP_RENEW_ABI=1 QUILLMAP_RENEW_GOLDEN=1 RENEW_GOLDEN=1 ${build}/bin/${test}
            OUTPUT_QUIET ERROR_QUIET)
    endif()
endforeach()

list(JOIN tests "|" pattern)
execute_process(
    COMMAND ${CMAKE_CTEST_COMMAND} --parallel 2 --output-on-failure --tests-regex "^(${pattern})$"
    WORKING_DIRECTORY ${build}
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(SEND_ERROR "the tests of the steps fail in ${copy}")
endif()
file(GLOB module ${build}/plugins/*ListOperPlugin.*)
execute_process(
    COMMAND ${STEPCTL} check ${module} --waive ${copy}/plugin/waivers.txt --strict
    OUTPUT_VARIABLE output
    ERROR_VARIABLE output
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(SEND_ERROR "stepctl check ${module}:\n${output}")
endif()
