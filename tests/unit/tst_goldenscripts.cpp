#include "host/plugins/StepCatalogue.h"
#include "host/running/RunReport.h"
#include "host/running/ScriptRunner.h"
#include "host/scripts/ScriptFile.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TestPaths.h"
#include "tests/support/TextDifference.h"

#include <QtTest>

#include <cstdio>

using namespace StepHost;

namespace
{
const QString scriptFolder = TestPaths::source("tests/scripts");

QStringList scriptNames()
{
    QStringList names;
    for (const QFileInfo &file : QDir(scriptFolder).entryInfoList({"*.json"}, QDir::Files, QDir::Name))
        names.append(file.completeBaseName());
    return names;
}

QString pathOf(const QString &name, const char *suffix)
{
    return QString("%1/%2.%3").arg(scriptFolder, name, suffix);
}
} // namespace

/// Runs every script of tests/scripts and compares the report with the file `.expected` beside it. With
/// the environment variable QUILLMAP_RENEW_GOLDEN set to 1 it writes those files instead.
class TestGoldenScripts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void scripts_data();
    void scripts();
    void variablesFeedBack_data();
    void variablesFeedBack();
    void everyStepHasAScript_data();
    void everyStepHasAScript();
    void everyResultHasAScript();

private:
    StepCatalogue m_catalogue;
};

void TestGoldenScripts::initTestCase()
{
    const auto added = m_catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
}

void TestGoldenScripts::scripts_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : scriptNames())
        QTest::newRow(qPrintable(name)) << name;
}

void TestGoldenScripts::scripts()
{
    QFETCH(QString, name);
    const Result<Script> read = readScriptFile(pathOf(name, "json"), m_catalogue);
    QVERIFY2(read, qPrintable(errorOf(read)));
    VariableScope scope;
    declareVariables(*read, scope);
    const std::vector<ScriptVariable> before = variablesOf(scope);
    const RunResult result = runScript(*read, scope);
    const std::vector<ScriptVariable> after = variablesOf(scope);
    const Result<QByteArray> report = reportToText({*read, result, after, &before});
    QVERIFY2(report, qPrintable(errorOf(report)));

    QFile expected(pathOf(name, "expected"));
    if (qgetenv("QUILLMAP_RENEW_GOLDEN") == "1") {
        QVERIFY2(expected.open(QIODevice::WriteOnly), qPrintable(expected.errorString()));
        QCOMPARE(expected.write(*report), qint64(report->size()));
        return;
    }
    QVERIFY2(expected.open(QIODevice::ReadOnly),
             qPrintable(expected.fileName() + ": " + expected.errorString()));
    const QByteArray wanted = expected.readAll().replace("\r\n", "\n");
    if (*report != wanted) {
        std::fprintf(stderr, "%s %s", qPrintable(expected.fileName()),
                     difference(wanted, *report).toUtf8().constData());
        QFAIL("The report differs; QUILLMAP_RENEW_GOLDEN=1 takes it as the expected one.");
    }
}

void TestGoldenScripts::variablesFeedBack_data()
{
    scripts_data();
}

void TestGoldenScripts::variablesFeedBack()
{
    QFETCH(QString, name);
    const Result<Script> read = readScriptFile(pathOf(name, "json"), m_catalogue);
    QVERIFY2(read, qPrintable(errorOf(read)));
    VariableScope scope;
    declareVariables(*read, scope);
    runScript(*read, scope);

    Script results;
    results.variables = variablesOf(scope);
    const Result<QByteArray> first = writeScript(results);
    QVERIFY2(first, qPrintable(errorOf(first)));
    const Result<Script> again = readScript(*first, m_catalogue);
    QVERIFY2(again, qPrintable(errorOf(again)));
    QCOMPARE(writeScript(*again).value_or(""), *first);
}

void TestGoldenScripts::everyStepHasAScript_data()
{
    QTest::addColumn<QString>("typeId");
    for (const QString &typeId : m_catalogue.typeIds())
        QTest::newRow(qPrintable(typeId)) << typeId;
}

void TestGoldenScripts::everyStepHasAScript()
{
    QFETCH(QString, typeId);
    const Result<Script> read = readScriptFile(pathOf(typeId, "json"), m_catalogue);
    QVERIFY2(read, qPrintable(errorOf(read)));
    VariableScope scope;
    declareVariables(*read, scope);
    const RunResult result = runScript(*read, scope);
    int wrote = 0;
    int warned = 0;
    for (std::size_t i = 0; i < result.steps.size(); ++i) {
        if (read->steps[i].operation->typeId() == typeId) {
            wrote += result.steps[i].outcome == StepOutcome::Wrote;
            warned += !result.steps[i].warnings.isEmpty();
        }
    }
    QVERIFY2(wrote > 0, "no step of this type writes");
    QVERIFY2(warned > 0, "no step of this type is skipped with a warning");
}

void TestGoldenScripts::everyResultHasAScript()
{
    const QStringList names = scriptNames();
    for (const QFileInfo &file : QDir(scriptFolder).entryInfoList({"*.expected"}, QDir::Files))
        QVERIFY2(names.contains(file.completeBaseName()), qPrintable(file.fileName()));
}

QTEST_GUILESS_MAIN(TestGoldenScripts)
#include "tst_goldenscripts.moc"
