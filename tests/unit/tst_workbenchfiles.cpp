#include "WindowFixture.h"

#include "tests/support/ErrorOf.h"
#include "tests/support/TestPaths.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>

using namespace Workbench;

namespace
{
QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not to be read");
}

/// Writes the file as most programs do: another one takes its place.
void replaceFile(const QString &fileName, const QByteArray &content)
{
    QSaveFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    QVERIFY(file.commit());
}

const char foreignScript[] = R"({"steps": [{"type": "list.sort"}, {"type": "list.sort"}]})";
} // namespace

class TestWorkbenchFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void asksBeforeReplacingWhatOthersWrote_data();
    void asksBeforeReplacingWhatOthersWrote();
    void savesOnItsOwnFileUnasked();
    void tellsOfAFileThatOthersChanged();
    void showsTheDifference();
    void reloads();
    void keepsItsOwn();
    void offersAnotherPlace();
    void staysOpenWhenItCannotSave();

private:
    void takeThePlaceAway();

    QWidget *bar() const
    {
        return m->window.findChild<QWidget *>("fileBar");
    }

    StepHost::StepCatalogue m_catalogue;
    std::unique_ptr<WindowFixture> m;
    QString m_fileName;
};

void TestWorkbenchFiles::initTestCase()
{
    const auto added = m_catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
}

void TestWorkbenchFiles::init()
{
    m = std::make_unique<WindowFixture>(m_catalogue);
    m->place("list.clear");
    m_fileName = m->folder.filePath("script.json");
    QCOMPARE(m->window.document().save(m_fileName), QString());
    m->place("list.merge");
}

void TestWorkbenchFiles::cleanup()
{
    m.reset();
}

void TestWorkbenchFiles::asksBeforeReplacingWhatOthersWrote_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("replaced");
    QTest::newRow("Cancel") << "Cancel" << false;
    QTest::newRow("Replace") << "Replace" << true;
}

void TestWorkbenchFiles::asksBeforeReplacingWhatOthersWrote()
{
    QFETCH(QString, button);
    QFETCH(bool, replaced);
    replaceFile(m_fileName, foreignScript);
    bool isAsked = false;
    inNextDialog<QMessageBox>([&](QMessageBox *box) {
        isAsked = box->text().contains("script.json");
        press(box, button);
    });
    QTest::keyClick(&m->window, Qt::Key_S, Qt::ControlModifier);
    QVERIFY(isAsked);
    QCOMPARE(contentOf(m_fileName).contains("list.merge"), replaced);
    QCOMPARE(contentOf(m_fileName) == foreignScript, !replaced);
    QCOMPARE(m->window.isWindowModified(), !replaced);
}

void TestWorkbenchFiles::savesOnItsOwnFileUnasked()
{
    QTest::keyClick(&m->window, Qt::Key_S, Qt::ControlModifier);
    QVERIFY(contentOf(m_fileName).contains("list.merge"));
    // The same content is no change, whoever wrote it; and what is gone cannot be lost.
    replaceFile(m_fileName, contentOf(m_fileName));
    QTest::keyClick(&m->window, Qt::Key_S, Qt::ControlModifier);
    QVERIFY(QFile::remove(m_fileName));
    QTest::keyClick(&m->window, Qt::Key_S, Qt::ControlModifier);
    QVERIFY(contentOf(m_fileName).contains("list.merge"));
}

void TestWorkbenchFiles::tellsOfAFileThatOthersChanged()
{
    QVERIFY(!bar()->isVisible());
    replaceFile(m_fileName, foreignScript);
    QTRY_VERIFY(bar()->isVisible());
    QVERIFY(bar()->accessibleName().contains("script.json"));
    // And of a file that they only write into.
    m->window.document().file().acceptContent();
    bar()->hide();
    QFile file(m_fileName);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Append));
    file.write("\n");
    file.close();
    QTRY_VERIFY(bar()->isVisible());
}

void TestWorkbenchFiles::showsTheDifference()
{
    replaceFile(m_fileName, foreignScript);
    QTRY_VERIFY(bar()->isVisible());
    QString text;
    inNextDialog<QDialog>(
        [&](QDialog *dialog) { text = dialog->findChild<QPlainTextEdit *>("difference")->toPlainText(); });
    for (QPushButton *button : bar()->findChildren<QPushButton *>()) {
        if (button->text() == "Show difference")
            button->click();
    }
    QVERIFY2(text.contains("− "), qPrintable(text));
    QVERIFY2(text.contains("list.sort"), qPrintable(text));
    QVERIFY2(text.contains("list.merge"), qPrintable(text));
}

void TestWorkbenchFiles::reloads()
{
    replaceFile(m_fileName, foreignScript);
    QTRY_VERIFY(bar()->isVisible());
    const auto reload = [this](const QString &answer) {
        inNextDialog<QMessageBox>([&](QMessageBox *box) { press(box, answer); });
        for (QPushButton *button : bar()->findChildren<QPushButton *>()) {
            if (button->text() == "Reload")
                button->click();
        }
    };
    reload("Cancel");
    QCOMPARE(m->script().step(1).typeId(), QString("list.merge"));
    reload("Reload");
    QCOMPARE(m->script().step(1).typeId(), QString("list.sort"));
    QVERIFY(!bar()->isVisible());
    QVERIFY(!m->window.isWindowModified());
}

void TestWorkbenchFiles::keepsItsOwn()
{
    m->window.document().undoStack().setClean();
    replaceFile(m_fileName, foreignScript);
    QTRY_VERIFY(bar()->isVisible());
    for (QPushButton *button : bar()->findChildren<QPushButton *>()) {
        if (button->text() == "Keep mine")
            button->click();
    }
    QVERIFY(!bar()->isVisible());
    QVERIFY(m->window.isWindowModified());
    QTest::keyClick(&m->window, Qt::Key_S, Qt::ControlModifier);
    QVERIFY(contentOf(m_fileName).contains("list.merge"));
}

/// Saves the script in a folder, and puts a file in place of the folder.
void TestWorkbenchFiles::takeThePlaceAway()
{
    const QString folder = m->folder.filePath("scripts");
    QVERIFY(QDir().mkdir(folder));
    QCOMPARE(m->window.document().save(folder + "/kept.json"), QString());
    QVERIFY(QDir(folder).removeRecursively());
    QFile file(folder);
    QVERIFY(file.open(QIODevice::WriteOnly));
    m->place("list.sort");
}

void TestWorkbenchFiles::offersAnotherPlace()
{
    takeThePlaceAway();
    const QString other = m->folder.filePath("other.json");
    QString text;
    bool isWritable = false;
    inNextDialog<QMessageBox>([&](QMessageBox *box) {
        text = box->text();
        inNextDialog<QFileDialog>([&](QFileDialog *dialog) {
            isWritable = QFileInfo(dialog->directory().path()).isWritable();
            dialog->findChild<QLineEdit *>("fileNameEdit")->setText(other);
            static_cast<QDialog *>(dialog)->accept();
        });
        press(box, QString::fromUtf8("Save as…"));
    });
    QTest::keyClick(&m->window, Qt::Key_S, Qt::ControlModifier);
    QVERIFY2(text.contains("kept.json: Not a directory"), qPrintable(text));
    QVERIFY(isWritable);
    QVERIFY(contentOf(other).contains("list.sort"));
    QCOMPARE(m->window.document().fileName(), other);
    QVERIFY(!m->window.isWindowModified());
    QCOMPARE(m->window.log().index(0, LogModel::MessageColumn).data().toString(), text);
}

void TestWorkbenchFiles::staysOpenWhenItCannotSave()
{
    takeThePlaceAway();
    inNextDialog<QMessageBox>([&](QMessageBox *box) {
        inNextDialog<QMessageBox>([&](QMessageBox *failure) { press(failure, "Cancel"); });
        press(box, "Save");
    });
    QVERIFY(!m->window.close());
    QVERIFY(m->window.isVisible());
    QVERIFY(m->window.isWindowModified());
    QCOMPARE(m->script().step(2).typeId(), QString("list.sort"));
}

RUN_TEST_MAIN(QApplication, TestWorkbenchFiles)
#include "tst_workbenchfiles.moc"
