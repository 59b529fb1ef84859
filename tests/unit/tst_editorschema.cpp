#include "host/plugins/EditorSchema.h"

#include "tests/support/FixtureStep.h"

#include <QtTest>

using namespace StepHost;

using Entries = QVector<ClassInfoDeclaration>;

Q_DECLARE_METATYPE(ClassInfoDeclaration)
Q_DECLARE_METATYPE(SchemaFault)
Q_DECLARE_METATYPE(VarType)

/// Declares one of everything, through the class-info table of a real class.
class SampleStep : public FixtureStep
{
    Q_OBJECT
    Q_PROPERTY(QString target MEMBER m_target)
    Q_PROPERTY(int mode MEMBER m_mode)
    Q_PROPERTY(QString index MEMBER m_index)
    Q_PROPERTY(QString value MEMBER m_value)
    Q_PROPERTY(bool deep MEMBER m_deep)
    Q_CLASSINFO("prop_target", "目标列表")
    Q_CLASSINFO("editor_target", "VARNAME")
    Q_CLASSINFO("varname_type_target", "list")
    Q_CLASSINFO("prop_mode", "Mode")
    Q_CLASSINFO("editor_mode", "COMBO")
    Q_CLASSINFO("choices_mode", "by index|by value")
    Q_CLASSINFO("prop_index", "Index")
    Q_CLASSINFO("editor_index", "NUMVAR:INT")
    Q_CLASSINFO("show_when_index", "mode=0")
    Q_CLASSINFO("prop_value", "Value")
    Q_CLASSINFO("editor_value", "VARREF")
    Q_CLASSINFO("varref_kind_value", "string")
    Q_CLASSINFO("varref_type_value", "int,double,string,bool")
    Q_CLASSINFO("show_when_value", "mode=1")
    Q_CLASSINFO("prop_deep", "Deep")

public:
    SampleStep() : FixtureStep(QString()) { }

    QString m_target;
    int m_mode = 0;
    QString m_index;
    QString m_value;
    bool m_deep = false;
};

namespace
{
// The properties that the tests without a class work on.
const QVector<PropertyDeclaration> properties{
    {"text", QMetaType::QString}, {"number", QMetaType::Int}, {"flag", QMetaType::Bool}};

const Entries labels{{"prop_text", "Text"}, {"prop_number", "Number"}, {"prop_flag", "Flag"}};

EditorSchema schemaOf(const Entries &entries)
{
    return readEditorSchema(properties, labels + entries);
}
} // namespace

class TestEditorSchema : public QObject
{
    Q_OBJECT

private slots:
    void readsAStepClass();
    void visibilityFollowsTheRule();
    void kindsOfVariables_data();
    void kindsOfVariables();
    void takesWhatIsRight_data();
    void takesWhatIsRight();
    void reportsWhatIsWrong_data();
    void reportsWhatIsWrong();
    void reportsEveryMissingLabel();
    void leavesOutWhatItCannotUse();
    void theLastOfTwoEqualKeysCounts();
    void circlesOfRules();
    void hugeClassInfo();
};

void TestEditorSchema::readsAStepClass()
{
    const EditorSchema schema = readEditorSchema(SampleStep::staticMetaObject);
    QCOMPARE(schema.problems.size(), 0);
    QStringList names;
    for (const SettingSchema &setting : schema.settings)
        names.append(setting.property);
    QCOMPARE(names, QStringList({"target", "mode", "index", "value", "deep"}));

    const SettingSchema *target = schema.find("target");
    QCOMPARE(target->type, int(QMetaType::QString));
    QCOMPARE(target->label, QString::fromUtf8("目标列表"));
    QVERIFY(target->editor == EditorKind::VariableName);
    QVERIFY(target->variableKind == VariableKind::List);
    QVERIFY(!target->showWhen);

    const SettingSchema *mode = schema.find("mode");
    QVERIFY(mode->editor == EditorKind::Choice);
    QCOMPARE(mode->choices, QStringList({"by index", "by value"}));

    const SettingSchema *index = schema.find("index");
    QVERIFY(index->editor == EditorKind::IntegerOrVariable);
    QCOMPARE(index->showWhen->property, QString("mode"));
    QCOMPARE(index->showWhen->value, 0);

    const SettingSchema *value = schema.find("value");
    QVERIFY(value->editor == EditorKind::VariableReference);
    QVERIFY(value->literalType == VarType::String);
    QVERIFY(value->valueTypes
            == QVector<VarType>({VarType::Int, VarType::Double, VarType::String, VarType::Bool}));

    QVERIFY(schema.find("deep")->editor == EditorKind::Default);
    QVERIFY(!schema.find("objectName"));
}

void TestEditorSchema::visibilityFollowsTheRule()
{
    const EditorSchema schema = readEditorSchema(SampleStep::staticMetaObject);
    SampleStep step;
    QVERIFY(isVisible(*schema.find("target"), step));
    QVERIFY(isVisible(*schema.find("index"), step));
    QVERIFY(!isVisible(*schema.find("value"), step));
    step.m_mode = 1;
    QVERIFY(!isVisible(*schema.find("index"), step));
    QVERIFY(isVisible(*schema.find("value"), step));
}

void TestEditorSchema::kindsOfVariables_data()
{
    QTest::addColumn<VarType>("type");
    QTest::addColumn<bool>("isList");
    QTest::addColumn<bool>("isScalar");
    for (const VarType type : {VarType::Int, VarType::Double, VarType::String, VarType::Bool})
        QTest::addRow("scalar %d", int(type)) << type << false << true;
    QTest::newRow("list") << VarType::List << true << false;
    QTest::newRow("table") << VarType::Table << false << false;
    QTest::newRow("undeclared") << VarType::Undeclared << false << false;
}

void TestEditorSchema::kindsOfVariables()
{
    QFETCH(VarType, type);
    QTEST(isOfKind(type, VariableKind::List), "isList");
    QTEST(isOfKind(type, VariableKind::Scalar), "isScalar");
    QVERIFY(isOfKind(type, VariableKind::Any));
}

void TestEditorSchema::takesWhatIsRight_data()
{
    QTest::addColumn<Entries>("entries");
    QTest::newRow("labels only") << Entries{};
    QTest::newRow("rule on a bool") << Entries{{"show_when_text", "flag=1"}};
    QTest::newRow("rule on an int without choices") << Entries{{"show_when_text", "number=-7"}};
    QTest::newRow("one choice") << Entries{{"editor_number", "COMBO"}, {"choices_number", "only"}};
    QTest::newRow("choices before the editor")
        << Entries{{"choices_number", "a|b"}, {"editor_number", "COMBO"}};
    QTest::newRow("chain of rules") << Entries{{"show_when_text", "number=1"},
                                               {"show_when_number", "flag=1"}};
}

void TestEditorSchema::takesWhatIsRight()
{
    QFETCH(Entries, entries);
    const EditorSchema schema = schemaOf(entries);
    QVERIFY2(schema.problems.isEmpty(), qPrintable(schema.problems.value(0).text));
}

void TestEditorSchema::reportsWhatIsWrong_data()
{
    QTest::addColumn<Entries>("entries");
    QTest::addColumn<SchemaFault>("fault");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const Entries &entries, SchemaFault fault, const char *text) {
        QTest::newRow(name) << entries << fault << QString(text);
    };
    row("unknown prefix", {{"label_text", "x"}}, SchemaFault::UnknownPrefix,
        "\"label_text\" begins with none of prop_, editor_, varname_type_, varref_kind_, varref_type_, "
        "choices_, show_when_");
    row("empty key", {{"", "x"}}, SchemaFault::UnknownPrefix,
        "\"\" begins with none of prop_, editor_, varname_type_, varref_kind_, varref_type_, choices_, "
        "show_when_");
    row("unknown property", {{"prop_other", "x"}}, SchemaFault::UnknownProperty,
        "\"prop_other\" names no property of the class");
    row("prefix alone", {{"prop_", "x"}}, SchemaFault::UnknownProperty,
        "\"prop_\" names no property of the class");
    row("key twice", {{"prop_text", "x"}}, SchemaFault::DuplicateKey,
        "\"prop_text\" is declared more than once");
    row("unknown editor", {{"editor_text", "varname"}}, SchemaFault::UnknownEditor,
        "\"editor_text\" is \"varname\", which is none of VARNAME, VARREF, NUMVAR:INT, COMBO");
    row("unknown variable kind", {{"editor_text", "VARNAME"}, {"varname_type_text", "lists"}},
        SchemaFault::UnknownKind, "\"varname_type_text\" is \"lists\", which is none of list, scalar");
    row("unknown literal type", {{"editor_text", "VARREF"}, {"varref_kind_text", ""}},
        SchemaFault::UnknownKind,
        "\"varref_kind_text\" is \"\", which is none of int, double, string, bool, list, table");
    row("undeclared literal type", {{"editor_text", "VARREF"}, {"varref_kind_text", "undeclared"}},
        SchemaFault::UnknownKind,
        "\"varref_kind_text\" is \"undeclared\", which is none of int, double, string, bool, list, table");
    row("unknown value type", {{"editor_text", "VARREF"}, {"varref_type_text", "int,,bool"}},
        SchemaFault::UnknownKind,
        "\"varref_type_text\" has \"\", which is none of int, double, string, bool, list, table");
    row("variable kind without VARNAME", {{"varname_type_text", "list"}}, SchemaFault::UnusedKey,
        "\"varname_type_text\" has a meaning only for the editor VARNAME");
    row("value types without VARREF", {{"editor_text", "VARNAME"}, {"varref_type_text", "int"}},
        SchemaFault::UnusedKey, "\"varref_type_text\" has a meaning only for the editor VARREF");
    row("literal type without VARREF", {{"varref_kind_text", "int"}}, SchemaFault::UnusedKey,
        "\"varref_kind_text\" has a meaning only for the editor VARREF");
    row("choices without COMBO", {{"choices_number", "a|b"}}, SchemaFault::UnusedKey,
        "\"choices_number\" has a meaning only for the editor COMBO");
    row("no choices", {{"editor_number", "COMBO"}}, SchemaFault::MissingChoices,
        "the setting \"number\" has a choice editor and no choices");
    row("empty choice", {{"editor_number", "COMBO"}, {"choices_number", "a||c"}}, SchemaFault::MissingChoices,
        "choice 1 of the setting \"number\" is empty");
    row("choice of a text", {{"editor_text", "COMBO"}, {"choices_text", "a|b"}},
        SchemaFault::ChoiceNotInteger, "the setting \"text\" has a choice editor and is not an int");
    row("rule without =", {{"show_when_text", "flag"}}, SchemaFault::UnreadableRule,
        "\"show_when_text\" is \"flag\", which is not a property name, \"=\" and an integer");
    row("rule without a property", {{"show_when_text", "=1"}}, SchemaFault::UnreadableRule,
        "\"show_when_text\" is \"=1\", which is not a property name, \"=\" and an integer");
    row("rule without a number", {{"show_when_text", "flag=true"}}, SchemaFault::UnreadableRule,
        "\"show_when_text\" is \"flag=true\", which is not a property name, \"=\" and an integer");
    row("rule with too large a number", {{"show_when_text", "number=99999999999"}},
        SchemaFault::UnreadableRule,
        "\"show_when_text\" is \"number=99999999999\", which is not a property name, \"=\" and an integer");
    row("rule on an unknown property", {{"show_when_text", "mode=1"}}, SchemaFault::RuleUnknownProperty,
        "the visibility rule of \"text\" names \"mode\", which is no property of the class");
    row("rule on a text", {{"show_when_flag", "text=1"}}, SchemaFault::RuleImpossibleValue,
        "the visibility rule of \"flag\" waits for \"text\" = 1, which cannot be");
    row("rule on a bool that is 2", {{"show_when_text", "flag=2"}}, SchemaFault::RuleImpossibleValue,
        "the visibility rule of \"text\" waits for \"flag\" = 2, which cannot be");
    row("rule on a missing choice",
        {{"editor_number", "COMBO"}, {"choices_number", "a|b"}, {"show_when_text", "number=2"}},
        SchemaFault::RuleImpossibleValue,
        "the visibility rule of \"text\" waits for \"number\" = 2, which cannot be");
    row("rule on itself", {{"show_when_flag", "flag=1"}}, SchemaFault::RuleCycle,
        "the visibility rule of \"flag\" depends on itself through \"flag\"");
}

void TestEditorSchema::reportsWhatIsWrong()
{
    QFETCH(Entries, entries);
    QFETCH(SchemaFault, fault);
    QFETCH(QString, text);
    const EditorSchema schema = schemaOf(entries);
    QCOMPARE(schema.problems.size(), 1);
    QCOMPARE(schema.problems.first().text, text);
    QVERIFY(schema.problems.first().fault == fault);
}

void TestEditorSchema::reportsEveryMissingLabel()
{
    const EditorSchema schema = readEditorSchema(properties, {{"prop_number", ""}, {"prop_flag", "Flag"}});
    QCOMPARE(schema.problems.size(), 2);
    QCOMPARE(schema.problems.at(0).text, QString("the setting \"text\" has no label (\"prop_text\")"));
    QCOMPARE(schema.problems.at(1).text, QString("the setting \"number\" has no label (\"prop_number\")"));
}

void TestEditorSchema::leavesOutWhatItCannotUse()
{
    const EditorSchema schema = schemaOf({{"editor_text", "MAGIC"},
                                          {"editor_number", "COMBO"},
                                          {"choices_number", "a|b"},
                                          {"show_when_text", "number=2"},
                                          {"show_when_flag", "nothing=0"}});
    QCOMPARE(schema.problems.size(), 3);
    QVERIFY(schema.find("text")->editor == EditorKind::Default);
    QVERIFY(!schema.find("text")->showWhen);
    QVERIFY(!schema.find("flag")->showWhen);
    QCOMPARE(schema.find("number")->choices, QStringList({"a", "b"}));
}

void TestEditorSchema::theLastOfTwoEqualKeysCounts()
{
    const EditorSchema schema =
        schemaOf({{"prop_text", "Later"}, {"show_when_text", "flag=0"}, {"show_when_text", "flag=1"}});
    QCOMPARE(schema.find("text")->label, QString("Later"));
    QCOMPARE(schema.find("text")->showWhen->value, 1);
}

void TestEditorSchema::circlesOfRules()
{
    QVector<PropertyDeclaration> chain;
    Entries entries;
    const int length = 1000;
    for (int i = 0; i < length; ++i) {
        const QString name = QString("p%1").arg(i);
        chain.append({name, QMetaType::Int});
        entries.append(ClassInfoDeclaration{"prop_" + name, name});
        entries.append(ClassInfoDeclaration{"show_when_" + name, QString("p%1=1").arg((i + 1) % length)});
    }
    // One more setting depends on the circle without being part of it.
    chain.append({"outside", QMetaType::Int});
    entries.append(ClassInfoDeclaration{"prop_outside", "outside"});
    entries.append(ClassInfoDeclaration{"show_when_outside", "p500=1"});

    const EditorSchema schema = readEditorSchema(chain, entries);
    QCOMPARE(schema.problems.size(), length);
    for (const SchemaProblem &problem : schema.problems)
        QVERIFY(problem.fault == SchemaFault::RuleCycle);
    QVERIFY(!schema.find("p0")->showWhen);
    QVERIFY(schema.find("outside")->showWhen);
}

void TestEditorSchema::hugeClassInfo()
{
    const QString huge(1000000, QLatin1Char('|'));
    const EditorSchema schema = schemaOf({{huge, huge},
                                          {"prop_" + huge, huge},
                                          {"editor_text", huge},
                                          {"editor_number", "COMBO"},
                                          {"choices_number", huge},
                                          {"varref_type_flag", huge},
                                          {"show_when_text", huge},
                                          {"show_when_flag", huge + "=1"}});
    QVERIFY(schema.problems.size() >= 7);
    for (const SchemaProblem &problem : schema.problems)
        QVERIFY2(problem.text.size() < 400, qPrintable(problem.text.left(400)));
    QCOMPARE(schema.find("number")->choices.size(), huge.size() + 1);
}

QTEST_GUILESS_MAIN(TestEditorSchema)

#include "tst_editorschema.moc"
