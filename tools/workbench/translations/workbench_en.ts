<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>Workbench::ListValueModel</name>
    <message numerus="yes">
        <source>%n item(s) kept the old type: %1</source>
        <translation>
            <numerusform>%n item kept the old type: %1</numerusform>
            <numerusform>%n items kept the old type: %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Workbench::RunSession</name>
    <message numerus="yes">
        <source>%n process(es) that the steps left running were ended</source>
        <translation>
            <numerusform>%n process that the steps left running was ended</numerusform>
            <numerusform>%n processes that the steps left running were ended</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Workbench::ScriptDocument</name>
    <message numerus="yes">
        <source>Paste %n step(s)</source>
        <translation>
            <numerusform>Paste %n step</numerusform>
            <numerusform>Paste %n steps</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Duplicate %n step(s)</source>
        <translation>
            <numerusform>Duplicate %n step</numerusform>
            <numerusform>Duplicate %n steps</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Delete %n step(s)</source>
        <translation>
            <numerusform>Delete %n step</numerusform>
            <numerusform>Delete %n steps</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Move %n step(s)</source>
        <translation>
            <numerusform>Move %n step</numerusform>
            <numerusform>Move %n steps</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Enable %n step(s)</source>
        <translation>
            <numerusform>Enable %n step</numerusform>
            <numerusform>Enable %n steps</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Disable %n step(s)</source>
        <translation>
            <numerusform>Disable %n step</numerusform>
            <numerusform>Disable %n steps</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Workbench::TableValueModel</name>
    <message numerus="yes">
        <source>%n cell(s) kept the old type: %1</source>
        <translation>
            <numerusform>%n cell kept the old type: %1</numerusform>
            <numerusform>%n cells kept the old type: %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Workbench::ValueDialog</name>
    <message numerus="yes">
        <source>%n row(s)</source>
        <translation>
            <numerusform>%n row</numerusform>
            <numerusform>%n rows</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n item(s)</source>
        <translation>
            <numerusform>%n item</numerusform>
            <numerusform>%n items</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Workbench::VariablesModel</name>
    <message numerus="yes">
        <source>%n row(s): %1</source>
        <translation>
            <numerusform>%n row: %1</numerusform>
            <numerusform>%n rows: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n item(s): %1</source>
        <translation>
            <numerusform>%n item: %1</numerusform>
            <numerusform>%n items: %1</numerusform>
        </translation>
    </message>
</context>
</TS>
