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
    <name>Workbench::ScriptEdits</name>
    <message numerus="yes">
        <source>Paste %n step(s)</source>
        <translation>
            <numerusform>Paste %n step</numerusform>
            <numerusform>Paste %n steps</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Workbench::ScriptPane</name>
    <message numerus="yes">
        <source>The steps bring %n variable(s) along of which this script has another one: %1</source>
        <translation>
            <numerusform>The steps bring %n variable along of which this script has another one: %1</numerusform>
            <numerusform>The steps bring %n variables along of which this script has others: %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Workbench::SearchModel</name>
    <message numerus="yes">
        <source>Start value, %n time(s)</source>
        <translation>
            <numerusform>Start value, %n time</numerusform>
            <numerusform>Start value, %n times</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Workbench::SearchPane</name>
    <message numerus="yes">
        <source>Found in %n place(s)</source>
        <translation>
            <numerusform>Found in %n place</numerusform>
            <numerusform>Found in %n places</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Replaced in %n text(s)</source>
        <translation>
            <numerusform>Replaced in %n text</numerusform>
            <numerusform>Replaced in %n texts</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>“%1” is used in %n setting(s)</source>
        <translation>
            <numerusform>“%1” is used in %n setting</numerusform>
            <numerusform>“%1” is used in %n settings</numerusform>
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
<context>
    <name>Workbench::VariablesPane</name>
    <message numerus="yes">
        <source>“%1” is used by %n step(s): %2. Without it they may skip their work.</source>
        <translation>
            <numerusform>“%1” is used by %n step: %2. Without it that may skip its work.</numerusform>
            <numerusform>“%1” is used by %n steps: %2. Without it they may skip their work.</numerusform>
        </translation>
    </message>
</context>
</TS>
