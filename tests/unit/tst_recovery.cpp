#include "WindowFixture.h"

#include "tools/workbench/document/Recovery.h"
#include "tools/workbench/settings/PropertyEditor.h"
#include "tools/workbench/settings/PropertyPane.h"

#include "host/values/ItemValue.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/FixtureStep.h"
#include "tests/support/ProgramStart.h"
#include "tests/support/TestPaths.h"

#include <QLineEdit>
#include <QPushButton>
#include <QRandomGenerator>

#include <cstdio>

using namespace Workbench;

namespace
{
constexpr char editorName[] = "edit-until-killed";
constexpr char typistName[] = "type-until-killed";
constexpr int saveEvery = 7;

QStringList copiesIn(const QString &folder)
{
    return QDir(folder).entryList({"*.recovery"}, QDir::Files);
}

/// A document with a copy of its changes.
struct KeptDocument
{
    KeptDocument(const StepHost::StepCatalogue &catalogue, const QString &folder)
        : document(catalogue), recovery(document, folder)
    {
        recovery.setDelay(0);
    }

    void addStep(const QString &target)
    {
        const int row = document.model().rowCount();
        document.placeStep("list.clear", row);
        document.setSetting(row, "targetVar", target);
    }

    ScriptDocument document;
    Recovery recovery;
};

/// A step that counts how often one like it is copied.
class CountedStep : public FixtureStep
{
public:
    explicit CountedStep(int &copies) : FixtureStep("test.counted"), m_copies(copies) { }

    Operation *clone(QObject *) const override
    {
        ++m_copies;
        return new CountedStep(m_copies);
    }

private:
    int &m_copies;
};

/// Edits, keeps copies and saves in \a folder, tells of each edit, and never ends.
int editUntilKilled(const QString &folder)
{
    StepHost::StepCatalogue catalogue;
    if (!catalogue.addPlugin(TestPaths::listPlugin()))
        return 1;
    KeptDocument kept(catalogue, folder + "/recovery");
    kept.addStep("0");
    kept.document.save(folder + "/script.json");
    int edits = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        kept.document.setSetting(0, "targetVar", QString::number(++edits));
        if (edits % saveEvery == 0)
            kept.document.save(folder + "/script.json");
        std::printf("%d\n", edits);
        std::fflush(stdout);
    });
    timer.start(1);
    return QCoreApplication::exec();
}

/// Types numbers into a setting of the script in \a folder, in a window, and saves now and then. Tells of each number and
/// when it stood there, and never ends.
int typeUntilKilled(const QString &folder)
{
    StepHost::StepCatalogue catalogue;
    if (!catalogue.addPlugin(TestPaths::listPlugin()))
        return 1;
    QSettings settings(folder + "/settings.ini", QSettings::IniFormat);
    MainWindow window(catalogue, settings);
    window.show();
    // There may be no window manager that would make it the active one.
    QApplication::setActiveWindow(&window);
    if (!QTest::qWaitForWindowExposed(&window))
        return 1;
    window.openFile(folder + "/script.json");
    auto *field = window.findChild<PropertyPane *>()->editor("value")->findChild<QLineEdit *>();
    constexpr int pauseMs = 10;
    for (int number = 1;; ++number) {
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, QString::number(number));
        std::printf("%lld %d\n", QDateTime::currentMSecsSinceEpoch(), number);
        std::fflush(stdout);
        if (QRandomGenerator::global()->bounded(100) == 0)
            QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier);
        QTest::qWait(pauseMs);
    }
}
} // namespace

class TestRecovery : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void keepsAndRestores();
    void leavesCopiesOfOthersAlone();
    void isGoneOnceSaved();
    void ignoresWhatIsNoCopy();
    void tellsWhenItCannotKeep();
    void looksAtChangedStepsOnly();
    void survivesKills();
    void theWindowSurvivesKills();
    void isOffered();
    void isNotOfferedAfterClosing();

private:
    StepHost::StepCatalogue m_catalogue;
};

void TestRecovery::initTestCase()
{
    const auto added = m_catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
}

void TestRecovery::keepsAndRestores()
{
    const QTemporaryDir folder;
    const QString fileName = folder.filePath("script.json");
    const QString copies = folder.filePath("recovery");
    VariableScope variables;
    variables.declare("a", VarType::List);
    variables.set("a", QVariantList{1, 1.0, "x", QVariant()});
    variables.declare("t", VarType::Table);
    {
        KeptDocument kept(m_catalogue, copies);
        QCOMPARE(kept.document.save(fileName), QString());
        QSignalSpy made(&kept.recovery, &Recovery::kept);
        kept.addStep("a");
        kept.document.setVariables(variables, "Set");
        kept.document.setEnabled({0}, false);
        QVERIFY(made.wait());
    }
    KeptDocument next(m_catalogue, copies);
    const QVector<Recovery::Copy> left = next.recovery.leftCopies();
    QCOMPARE(left.size(), 1);
    QCOMPARE(left.first().fileName, fileName);
    QCOMPARE(next.recovery.restore(left.first()), QString());
    QCOMPARE(next.document.fileName(), fileName);
    QCOMPARE(next.document.model().rowCount(), 1);
    QCOMPARE(next.document.model().step(0).property("targetVar").toString(), QString("a"));
    QVERIFY(!next.document.model().isEnabled(0));
    QVERIFY(StepHost::ItemValue::same(next.document.variables().get("a"), variables.get("a")));
    QCOMPARE(next.document.variables().typeOf("t"), VarType::Table);
    QVERIFY(!next.document.undoStack().isClean());
    // The copy goes only when the next one is there.
    QCOMPARE(copiesIn(copies).size(), 1);
    QSignalSpy made(&next.recovery, &Recovery::kept);
    QVERIFY(made.wait());
    QCOMPARE(copiesIn(copies).size(), 1);
    QVERIFY(!QFile::exists(left.first().path));
}

void TestRecovery::leavesCopiesOfOthersAlone()
{
    const QTemporaryDir folder;
    KeptDocument first(m_catalogue, folder.path());
    KeptDocument second(m_catalogue, folder.path());
    QSignalSpy firstMade(&first.recovery, &Recovery::kept);
    QSignalSpy secondMade(&second.recovery, &Recovery::kept);
    first.addStep("a");
    QVERIFY(firstMade.wait());
    second.addStep("b");
    QVERIFY(secondMade.wait());
    QCOMPARE(copiesIn(folder.path()).size(), 2);
    QVERIFY(second.recovery.leftCopies().isEmpty());
    second.document.clear();
    QCOMPARE(copiesIn(folder.path()).size(), 1);
}

void TestRecovery::isGoneOnceSaved()
{
    const QTemporaryDir folder;
    const QString copies = folder.filePath("recovery");
    KeptDocument kept(m_catalogue, copies);
    QSignalSpy made(&kept.recovery, &Recovery::kept);
    kept.addStep("a");
    QVERIFY(made.wait());
    QCOMPARE(copiesIn(copies).size(), 1);
    QCOMPARE(kept.document.save(folder.filePath("script.json")), QString());
    QTRY_VERIFY(copiesIn(copies).isEmpty());
    kept.addStep("b");
    QVERIFY(made.wait());
    QCOMPARE(copiesIn(copies).size(), 1);
}

void TestRecovery::ignoresWhatIsNoCopy()
{
    const QTemporaryDir folder;
    for (const char *content : {"", "QMRC", "anything else, and more of it"}) {
        QFile file(folder.filePath("x.recovery"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        ScriptDocument document(m_catalogue);
        Recovery recovery(document, folder.path());
        QVERIFY(recovery.leftCopies().isEmpty());
        QVERIFY(!recovery.restore({file.fileName(), QString(), QDateTime()}).isEmpty());
    }
}

void TestRecovery::tellsWhenItCannotKeep()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("in the way"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    KeptDocument kept(m_catalogue, file.fileName());
    QSignalSpy failed(&kept.recovery, &Recovery::failed);
    kept.addStep("a");
    QVERIFY(failed.wait());
    QVERIFY(!failed.first().first().toString().isEmpty());
}

void TestRecovery::looksAtChangedStepsOnly()
{
    const QTemporaryDir folder;
    KeptDocument kept(m_catalogue, folder.path());
    int copies = 0;
    std::vector<StepHost::ScriptStep> steps(50);
    for (StepHost::ScriptStep &step : steps)
        step.operation = std::make_unique<CountedStep>(copies);
    kept.document.model().setSteps(std::move(steps));
    QSignalSpy made(&kept.recovery, &Recovery::kept);
    kept.document.setEnabled({0}, false);
    QVERIFY(made.wait());
    const int atFirst = copies;
    QVERIFY(atFirst >= 50);
    kept.document.setEnabled({1}, false);
    QVERIFY(made.wait());
    QCOMPARE(copies - atFirst, atFirst / 50);
}

void TestRecovery::survivesKills()
{
    constexpr int kills = 10;
    constexpr int mostEdits = 40;
    QRandomGenerator random(1);
    for (int i = 0; i < kills; ++i) {
        const QTemporaryDir folder;
        const int edits = random.bounded(1, mostEdits);
        QProcess editor;
        startProgram(editor, QCoreApplication::applicationFilePath(), {editorName, folder.path()});
        int told = 0;
        while (told < edits && (editor.canReadLine() || editor.waitForReadyRead(-1))) {
            while (editor.canReadLine())
                told = editor.readLine().trimmed().toInt();
        }
        editor.kill();
        QVERIFY(editor.waitForFinished(-1));
        QVERIFY(told >= edits);

        const auto valueOf = [](const ScriptDocument &document) {
            return document.model().step(0).property("targetVar").toInt();
        };
        ScriptDocument saved(m_catalogue);
        QCOMPARE(saved.open(folder.filePath("script.json")), QString());
        QVERIFY(valueOf(saved) % saveEvery == 0);
        ScriptDocument document(m_catalogue);
        Recovery recovery(document, folder.filePath("recovery"));
        const QVector<Recovery::Copy> copies = recovery.leftCopies();
        QCOMPARE(copies.size(), copiesIn(folder.filePath("recovery")).size());
        QVERIFY(copies.size() <= 1);
        if (copies.isEmpty())
            continue;
        QCOMPARE(recovery.restore(copies.first()), QString());
        QCOMPARE(document.fileName(), saved.fileName());
    }
}

namespace
{
/// What the window told: numbers, each with the time when it stood there, in milliseconds.
QVector<QPair<qint64, int>> toldBy(const QByteArray &output)
{
    QVector<QPair<qint64, int>> told;
    const QList<QByteArray> lines = output.left(output.lastIndexOf('\n') + 1).split('\n');
    for (const QByteArray &line : lines) {
        if (!line.isEmpty())
            told.append({line.split(' ').value(0).toLongLong(), line.split(' ').value(1).toInt()});
    }
    return told;
}
} // namespace

// It takes a while and a clock: script/kill-workbench asks for it.
void TestRecovery::theWindowSurvivesKills()
{
    const int kills = qEnvironmentVariableIntValue("QUILLMAP_KILLS");
    if (kills == 0)
        QSKIP("QUILLMAP_KILLS tells how often the window is to be killed");
    constexpr int mostTime = 9000;
    constexpr int mostLost = 5000;
    qint64 longest = 0;
    for (int i = 0; i < kills; ++i) {
        const QTemporaryDir folder;
        const QString fileName = folder.filePath("script.json");
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(R"({"steps": [{"type": "list.add", "value": "0"}]})");
        file.close();
        QProcess window;
        startProgram(window, QCoreApplication::applicationFilePath(), {typistName, folder.path()});
        QVERIFY(window.waitForReadyRead(-1));
        QTest::qWait(QRandomGenerator::global()->bounded(mostTime));
        window.kill();
        const qint64 end = QDateTime::currentMSecsSinceEpoch();
        QVERIFY(window.waitForFinished(-1));
        const QVector<QPair<qint64, int>> told = toldBy(window.readAllStandardOutput());

        const auto numberIn = [](const ScriptDocument &document) {
            return document.model().step(0).property("value").toInt();
        };
        ScriptDocument document(m_catalogue);
        QCOMPARE(document.open(fileName), QString());
        int found = numberIn(document);
        Recovery recovery(document, folder.filePath("recovery"));
        const QVector<Recovery::Copy> copies = recovery.leftCopies();
        QCOMPARE(copies.size(), copiesIn(folder.filePath("recovery")).size());
        for (const Recovery::Copy &copy : copies) {
            QCOMPARE(recovery.restore(copy), QString());
            found = qMax(found, numberIn(document));
        }
        qint64 lost = 0; // The age of the oldest number that is lost.
        for (const auto &number : told) {
            if (number.second > found && lost == 0)
                lost = end - number.first;
        }
        longest = qMax(longest, lost);
        QVERIFY2(lost <= mostLost, qPrintable(QString::number(lost)));
    }
    qInfo("of %d windows, each lost what was typed in the last %lld ms at most", kills, longest);
}

void TestRecovery::isOffered()
{
    const QTemporaryDir folder;
    {
        KeptDocument kept(m_catalogue, folder.filePath("recovery"));
        QSignalSpy made(&kept.recovery, &Recovery::kept);
        kept.addStep("a");
        QVERIFY(made.wait());
    }
    QSettings settings(folder.filePath("settings.ini"), QSettings::IniFormat);
    MainWindow window(m_catalogue, settings);
    window.show();
    auto *bar = window.findChild<QWidget *>("recoveryBar");
    QVERIFY(bar->isVisible());
    const QList<QPushButton *> buttons = bar->findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        if (button->text() == "Restore")
            button->click();
    }
    QVERIFY(!bar->isVisible());
    QCOMPARE(window.document().model().rowCount(), 1);
    QVERIFY(window.isWindowModified());
}

void TestRecovery::isNotOfferedAfterClosing()
{
    WindowFixture fixture(m_catalogue);
    const QString copies = fixture.folder.filePath("recovery");
    fixture.place("list.clear");
    QTRY_COMPARE_WITH_TIMEOUT(copiesIn(copies).size(), 1, 60000);
    fixture.window.document().undoStack().setClean();
    QVERIFY(fixture.window.close());
    QTRY_VERIFY(copiesIn(copies).isEmpty());
}

int main(int argc, char **argv)
{
    if (StepHost::isRunWorker(argc, argv))
        StepHost::workOnRun(argc, argv);
    QApplication application(argc, argv);
    if (application.arguments().value(1) == QLatin1String(editorName))
        return editUntilKilled(application.arguments().value(2));
    if (application.arguments().value(1) == QLatin1String(typistName))
        return typeUntilKilled(application.arguments().value(2));
    TestRecovery test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_recovery.moc"
