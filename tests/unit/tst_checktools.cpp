#include "host/checks/CheckGuide.h"
#include "host/checks/CheckSelection.h"
#include "host/checks/TextFlaws.h"
#include "host/checks/Waivers.h"
#include "host/plugins/LibraryFile.h"
#include "tests/support/TestPaths.h"

#include <QTemporaryFile>
#include <QtTest>

using namespace StepHost;

/// What stands around the checks: choosing, explaining and waiving them.
class TestCheckTools : public QObject
{
    Q_OBJECT

private slots:
    void checksAreSelected_data();
    void checksAreSelected();
    void waiversAreRead_data();
    void waiversAreRead();
    void waiversApply();
    void everyCheckIsExplained();
    void anUnknownCheckIsNotExplained();
    void librariesForOtherSystems_data();
    void librariesForOtherSystems();
    void flawsOfTexts_data();
    void flawsOfTexts();
};

void TestCheckTools::checksAreSelected_data()
{
    QTest::addColumn<QStringList>("only");
    QTest::addColumn<QStringList>("skip");
    QTest::addColumn<QString>("selected");
    const auto row = [](const char *name, const QStringList &only, const QStringList &skip,
                        const char *selected) { QTest::newRow(name) << only << skip << QString(selected); };
    row("one", {"clone.parent"}, {}, "clone.parent");
    row("a family without one", {"file"}, {"file.debug"}, "file.stack file.search-paths file.needed");
    row("a pattern", {"*.o?en*"}, {}, "icon.opens");
    row("a pattern left out", {"file"}, {"*.s*"}, "file.needed file.debug");
    row("unknown", {"clone.parents"}, {},
        "--only clone.parents: there is no such check; --list shows them all");
    row("unknown, left out", {}, {"clones"}, "--skip clones: there is no such check; --list shows them all");
}

void TestCheckTools::checksAreSelected()
{
    QFETCH(QStringList, only);
    QFETCH(QStringList, skip);
    QFETCH(QString, selected);
    const Result<QVector<PluginCheck>> checks = selectChecks(only, skip);
    QStringList ids;
    for (const PluginCheck &check : checks.value_or(QVector<PluginCheck>()))
        ids.append(check.id);
    QCOMPARE(checks ? ids.join(' ') : checks.error(), selected);
}

void TestCheckTools::waiversAreRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("read");
    QTest::newRow("nothing") << "\n# a remark\n\n"
                             << "";
    QTest::newRow("any reason") << "icon.size: it is a photo"
                                << "icon.size||it is a photo";
    QTest::newRow("a part of it") << "  texts.one-line \"Join\" : as drawn\r\n"
                                  << "texts.one-line|Join|as drawn";
    QTest::newRow("no reason why")
        << "icon.size:"
        << "line 1: \"icon.size:\" is not a check, a part of its reason in quotes, a colon and why "
           "it is waived";
    QTest::newRow("no such check") << "\nicon.sizes: why"
                                   << "line 2: there is no check \"icon.sizes\"";
}

void TestCheckTools::waiversAreRead()
{
    QFETCH(QString, text);
    QFETCH(QString, read);
    const Result<QVector<Waiver>> waivers = readWaivers(text);
    QStringList texts;
    for (const Waiver &waiver : waivers.value_or(QVector<Waiver>()))
        texts.append(waiver.checkId + '|' + waiver.part + '|' + waiver.why);
    QCOMPARE(waivers ? texts.join('\n') : waivers.error(), read);
}

void TestCheckTools::waiversApply()
{
    QVector<PluginReport> reports{{"p",
                                   {{"icon.size", CheckOutcome::Failed, "A: large"},
                                    {"icon.path", CheckOutcome::Warning, "B: odd"},
                                    {"icon.opens", CheckOutcome::Crashed, "C: crash"},
                                    {"icon.renders", CheckOutcome::Passed, QString()}}}};
    QVector<Waiver> waivers =
        *readWaivers("icon.size \"A\": known\nicon.path \"X\": other\nicon.opens: no\nicon.renders: none");
    applyWaivers(reports, waivers);
    QStringList results;
    for (const CheckResult &result : reports.first().results)
        results.append(outcomeWord(result.outcome) + ": " + result.reason);
    QCOMPARE(results,
             QStringList({"passed: waived, known (A: large)", "warning: B: odd", "crashed: C: crash",
                          "warning: it is waived, none, but there is nothing to waive"}));
}

void TestCheckTools::everyCheckIsExplained()
{
    for (const PluginCheck &check : pluginChecks()) {
        const Result<QString> text = explainCheck(check.id);
        QVERIFY2(text, qPrintable(check.id));
        const QStringList paragraphs = text->split("\n\n");
        QCOMPARE(paragraphs.at(0), "### " + check.id);
        QCOMPARE(paragraphs.at(1), check.protects);
        QVERIFY2(paragraphs.at(2).size() > 10 && !paragraphs.at(2).startsWith('#'), qPrintable(check.id));
        QVERIFY2(text->contains("\nBad:\n") && text->contains("\nGood:\n"), qPrintable(check.id));
    }
    const Result<QString> family = explainCheck("clone");
    QVERIFY(family && family->startsWith("## clone\n") && family->contains("### clone.parent\n"));
}

void TestCheckTools::anUnknownCheckIsNotExplained()
{
    const Result<QString> text = explainCheck("clones");
    QVERIFY(!text);
    QCOMPARE(
        text.error(),
        QString("there is no check \"clones\"; did you mean \"clone\"? stepctl check --list shows them all"));
}

void TestCheckTools::librariesForOtherSystems_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("platform");
    const auto elf = [](char order, const QByteArray &machine) {
        return QByteArray("\x7f"
                          "ELF\x02")
            + order + QByteArray(12, '\0') + machine + QByteArray(40, '\0');
    };
    const auto pe = [](const QByteArray &machine) {
        return "MZ" + QByteArray(58, '\0') + QByteArray("\x40\0\0\0", 4) + QByteArray("PE\0\0", 4) + machine;
    };
    QTest::newRow("ARM") << elf(1, QByteArray("\xb7\0", 2)) << "Linux or its kin on arm64";
    QTest::newRow("big-endian") << elf(2, QByteArray("\0\x16", 2)) << "Linux or its kin on s390x";
    QTest::newRow("unknown") << elf(1, QByteArray("\xff\xff", 2)) << "Linux or its kin on another processor";
    QTest::newRow("Windows on ARM") << pe(QByteArray("\x64\xaa", 2)) << "Windows on arm64";
    QTest::newRow("macOS") << QByteArray("\xcf\xfa\xed\xfe...") << "macOS";
    QTest::newRow("cut off") << QByteArray("\x7f"
                                           "ELF")
                             << "";
    QTest::newRow("MZ and nothing") << QByteArray("MZ") << "";
    QTest::newRow("text") << QByteArray("#include") << "";
    QTest::newRow("nothing") << QByteArray() << "";
}

void TestCheckTools::librariesForOtherSystems()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, platform);
    QTemporaryFile file;
    QVERIFY(file.open());
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
    file.close();
    QCOMPARE(foreignPlatformOf(file.fileName()), platform);
    QCOMPARE(foreignPlatformOf(TestPaths::listPlugin()), QString());
}

void TestCheckTools::flawsOfTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("flaw");
    QTest::newRow("none") << QString::fromUtf8("列表 ™ \U0001f600 مرحبا") << "";
    QTest::newRow("control") << "a\x07"
                             << "has the control character U+0007";
    QTest::newRow("line end") << "a\nb"
                              << "has the control character U+000A";
    QTest::newRow("separator") << QString(QChar(0x2028)) << "has the line end U+2028";
    QTest::newRow("replacement") << QString(QChar(0xfffd))
                                 << "has a replacement character, which stands for bytes that are no UTF-8";
    QTest::newRow("half") << QString(QChar(0xd83d)) << "has a half of a surrogate pair, U+D83D";
}

void TestCheckTools::flawsOfTexts()
{
    QFETCH(QString, text);
    QFETCH(QString, flaw);
    QCOMPARE(flawOf(text), flaw);
    const bool hasLines = text.contains('\n') || text.contains(QChar(0x2028));
    QCOMPARE(flawOfLines(text), hasLines ? QString() : flaw);
}

QTEST_GUILESS_MAIN(TestCheckTools)

#include "tst_checktools.moc"
