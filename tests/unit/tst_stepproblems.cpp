#include "host/scripts/StepProblems.h"

#include "host/plugins/StepCatalogue.h"
#include "host/scripts/ScriptJson.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TestPaths.h"

#include <QtTest>

using namespace StepHost;

Q_DECLARE_METATYPE(StepHost::EditorKind)
Q_DECLARE_METATYPE(StepHost::VariableKind)
Q_DECLARE_METATYPE(VarType)

class TestStepProblems : public QObject
{
    Q_OBJECT

private slots:
    void settings_data();
    void settings();
    void steps();
    void scripts();

private:
    VariableScope variables() const;
};

VariableScope TestStepProblems::variables() const
{
    VariableScope scope;
    scope.declare("names", VarType::List);
    scope.declare("count", VarType::Int);
    return scope;
}

void TestStepProblems::settings_data()
{
    QTest::addColumn<EditorKind>("editor");
    QTest::addColumn<VariableKind>("kind");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("problem");
    QTest::addColumn<QString>("missing");
    QTest::addColumn<VarType>("missingType");
    const auto row = [](const char *name, EditorKind editor, VariableKind kind, const QVariant &value,
                        const char *problem, const char *missing = "",
                        VarType missingType = VarType::Undeclared) {
        QTest::newRow(name) << editor << kind << value << QString::fromUtf8(problem)
                            << QString::fromUtf8(missing) << missingType;
    };
    const auto any = VariableKind::Any;
    const auto list = VariableKind::List;
    const auto variable = EditorKind::VariableName;
    row("no variable", variable, list, "", "No variable is chosen.");
    row("a list", variable, list, "names", "");
    row("a list with its mark", variable, list, "$names", "");
    row("unknown", variable, list, "other", "There is no variable “other” yet.", "other", VarType::List);
    row("unknown with its mark", variable, list, "$other", "There is no variable “$other” yet.", "other",
        VarType::List);
    row("unknown scalar", variable, VariableKind::Scalar, "other", "There is no variable “other” yet.",
        "other", VarType::String);
    row("no name", variable, list, "$", "There is no variable “$” yet.");
    row("no list", variable, list, "count", "“count” is not a list.");
    row("a list for a scalar", variable, VariableKind::Scalar, "names", "");
    row("deceiving", variable, list, QString("a\u202eb"), "There is no variable “a\\u202eb” yet.", "a\u202eb",
        VarType::List);
    const auto integer = EditorKind::IntegerOrVariable;
    row("empty integer", integer, any, "", "");
    row("integer", integer, any, " -3 ", "");
    row("fraction", integer, any, "1.5", "Not an integer. The step may skip its work.");
    row("too large", integer, any, "2147483648", "Not an integer. The step may skip its work.");
    row("reference", integer, any, "$count", "A reference. Not every step looks one up here.");
    row("unknown reference", integer, any, " $i", "There is no variable “i” yet.", "i", VarType::Int);
    row("unknown count", integer, any, "$i.Count", "There is no variable “i” yet.", "i", VarType::List);
    const auto reference = EditorKind::VariableReference;
    row("literal", reference, any, "x", "");
    row("member", reference, any, "$names.Count", "");
    row("unknown value", reference, any, "$x", "There is no variable “x” yet.", "x", VarType::String);
    row("member of an unknown one", reference, any, "$x.Count", "There is no variable “x” yet.", "x",
        VarType::List);
    row("unknown member", reference, any, "$names.Size", "The variable has no “Size”, so this is empty.");
    row("unknown name that cannot be", reference, any, "$$$x", "There is no variable “$$x” yet.");
    row("choice", EditorKind::Choice, any, 1, "");
    row("no choice", EditorKind::Choice, any, 2, "The present value, 2, is none of the choices.");
    row("negative choice", EditorKind::Choice, any, -1, "The present value, -1, is none of the choices.");
    row("anything", EditorKind::Default, any, "", "");
}

void TestStepProblems::settings()
{
    QFETCH(EditorKind, editor);
    QFETCH(VariableKind, kind);
    QFETCH(QVariant, value);
    SettingSchema setting;
    setting.editor = editor;
    setting.variableKind = kind;
    setting.choices = QStringList{"a", "b"};
    setting.property = "setting";
    const std::optional<StepProblem> found = StepProblems::ofSetting(setting, value, variables());
    const StepProblem problem = found.value_or(StepProblem());
    QTEST(problem.text, "problem");
    QTEST(problem.missing, "missing");
    QTEST(problem.missingType, "missingType");
    QCOMPARE(problem.property, found ? QString("setting") : QString());
}

void TestStepProblems::steps()
{
    StepCatalogue catalogue;
    const auto added = catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
    const std::unique_ptr<Operation> remove(catalogue.create("list.remove", nullptr));
    remove->setProperty("index", "first");
    QVector<StepProblem> problems = StepProblems::ofStep(*remove, variables());
    QCOMPARE(problems.size(), 2);
    QCOMPARE(problems.first().property, QString("targetVar"));
    QVERIFY2(problems.first().text.endsWith(": No variable is chosen."), qPrintable(problems.first().text));
    QCOMPARE(problems.last().property, QString("index"));
    // What is not shown is not used either.
    remove->setProperty("mode", 1);
    remove->setProperty("targetVar", "names");
    problems = StepProblems::ofStep(*remove, variables());
    QVERIFY(problems.isEmpty());
}

void TestStepProblems::scripts()
{
    StepCatalogue catalogue;
    const auto added = catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
    const auto script = readScript(R"({"variables": [{"name": "names", "type": "list"}], "steps": [
        {"type": "list.sort", "targetVar": "names"},
        {"type": "list.clear", "targetVar": "others"},
        {"type": "list.clear", "targetVar": "others", "enabled": false},
        {"type": "list.merge", "listA": "names", "listB": "", "targetVar": "others"}]})",
                                   catalogue);
    QVERIFY2(script, qPrintable(errorOf(script)));
    QStringList found;
    for (const ScriptProblem &problem : StepProblems::ofScript(*script))
        found.append(QString::number(problem.row) + ' ' + problem.problem.property);
    QCOMPARE(found, QStringList({"1 targetVar", "3 listB", "3 targetVar"}));
}

QTEST_GUILESS_MAIN(TestStepProblems)
#include "tst_stepproblems.moc"
