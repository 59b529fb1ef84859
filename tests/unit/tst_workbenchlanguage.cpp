#include "SpokenLanguage.h"
#include "WindowFixture.h"

#include "tools/workbench/settings/PropertyPane.h"
#include "tools/workbench/values/ImportDialog.h"
#include "tools/workbench/values/ValueDialog.h"
#include "tools/workbench/values/ValueViewer.h"
#include "tools/workbench/window/DifferenceDialog.h"

#include "tests/support/ErrorOf.h"
#include "tests/support/TestPaths.h"

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>

using namespace Workbench;

Q_DECLARE_METATYPE(VarType)

namespace
{
/// All that the cells of `view` show and say.
QStringList cellsOf(const QAbstractItemView &view)
{
    QStringList texts;
    const QAbstractItemModel *model = view.model();
    const int columns = model->columnCount();
    for (int column = 0; column < columns; ++column)
        texts << model->headerData(column, Qt::Horizontal).toString();
    for (int row = 0; row < model->rowCount(); ++row) {
        for (int column = 0; column < columns; ++column) {
            for (const int role : {int(Qt::DisplayRole), int(Qt::ToolTipRole), int(Qt::AccessibleTextRole),
                                   int(Qt::AccessibleDescriptionRole), int(ScriptModel::OutcomeTextRole)})
                texts << model->index(row, column).data(role).toString();
        }
    }
    return texts;
}

/// What `widget` by itself shows and says.
QStringList textsOfOne(const QWidget &widget)
{
    QStringList texts{widget.toolTip(),
                      widget.statusTip(),
                      widget.whatsThis(),
                      widget.accessibleName(),
                      widget.accessibleDescription(),
                      widget.windowTitle()};
    if (const auto *label = qobject_cast<const QLabel *>(&widget))
        texts << label->text();
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget))
        texts << button->text();
    if (const auto *field = qobject_cast<const QLineEdit *>(&widget))
        texts << field->placeholderText();
    if (const auto *tabs = qobject_cast<const QTabBar *>(&widget)) {
        for (int i = 0; i < tabs->count(); ++i)
            texts << tabs->tabText(i) << tabs->tabToolTip(i);
    }
    if (const auto *box = qobject_cast<const QComboBox *>(&widget)) {
        for (int i = 0; i < box->count(); ++i)
            texts << box->itemText(i);
    }
    if (const auto *bar = qobject_cast<const QStatusBar *>(&widget))
        texts << bar->currentMessage();
    if (const auto *view = qobject_cast<const QAbstractItemView *>(&widget))
        texts << cellsOf(*view);
    return texts;
}

/// Whether `widget` is a part of Qt's own, which speaks with Qt's translations.
bool isQts(const QObject &widget)
{
    const bool isLabel = widget.objectName().startsWith("qt_msgbox");
    return (widget.objectName().startsWith("qt_") && !isLabel)
        || qobject_cast<const QTabBar *>(widget.parent());
}

/// All texts of `root` and what it holds.
QStringList textsOf(const QWidget &root)
{
    QStringList texts = textsOfOne(root);
    for (const QWidget *widget : root.findChildren<QWidget *>()) {
        if (!isQts(*widget))
            texts << textsOfOne(*widget);
    }
    for (const QAction *action : root.findChildren<QAction *>()) {
        if (!isQts(*action))
            texts << action->text() << action->toolTip() << action->statusTip() << action->iconText();
    }
    return texts;
}

/// The first Latin word of `text` that is not a name; empty when there is none.
QString foreignWord(QString text)
{
    // What others have named is quoted, or is a file, a type id, a type or property of a script.
    static const QRegularExpression names(
        "JSON 语法错误（.*）|\"[^\"]*\"|“[^”]*”|(/[\\w$-]+)+(\\.json)?|\\$(signed "
        ")?\\w+|(list|fixture)\\.\\w+|"
        "[\\w-]+\\.json|\\[ListOp\\]|\\b("
        "Quillmap|JSON|CSV|UTF|GB18030|Latin|Base64|NUL|MiB|ms|asc|desc|ascending|index|listA|listB|mode|"
        "position|"
        "sourceVar|"
        "targetVar|value|fixtures|Fixture|Set|Ctrl|Shift|Alt|Del|Return|Space|Backspace|Up|Down|Left|Right|"
        "F\\d+|int|double|float|string|bool|list|table|null|true|false|QString|names|count|cells|missing)"
        "\\b");
    static const QRegularExpression word("[A-Za-z]{2,}");
    text.remove(names);
    return word.match(text).captured();
}

void verifyChinese(const QStringList &texts)
{
    for (const QString &text : texts)
        QVERIFY2(foreignWord(text).isEmpty(), qPrintable(foreignWord(text) + " in: " + text));
}
} // namespace

/// The window in Chinese, in which nothing is to be left in English.
class TestWorkbenchLanguage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void theWindow();
    void theSettings();
    void whatBecameOfARun();
    void dialogsOfValues_data();
    void dialogsOfValues();
    void questions();
    void barsAboutFiles();
    void errorsOfScripts_data();
    void errorsOfScripts();
    void endsOfSteps_data();
    void endsOfSteps();

private:
    StepHost::StepCatalogue m_catalogue;
    std::unique_ptr<SpokenLanguage> m_spoken;
    std::unique_ptr<WindowFixture> m;
};

void TestWorkbenchLanguage::initTestCase()
{
    const auto added = m_catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
    const auto fatal = m_catalogue.addPlugin(TestPaths::fixture("FatalSteps"));
    QVERIFY2(fatal, qPrintable(errorOf(fatal)));
}

void TestWorkbenchLanguage::init()
{
    m_spoken = std::make_unique<SpokenLanguage>("zh_CN");
    m = std::make_unique<WindowFixture>(m_catalogue);
    m->setVariable("names", QVariantList{"b", "a"}, VarType::List);
    m->setVariable("count", 1, VarType::Int);
    m->setVariable("cells", QVariantList{QVariantList{1}}, VarType::Table);
}

void TestWorkbenchLanguage::cleanup()
{
    m->window.document().undoStack().setClean();
    m.reset();
    m_spoken.reset();
}

void TestWorkbenchLanguage::theWindow()
{
    verifyChinese(textsOf(m->window));
    m->place("list.sort", {{"targetVar", "names"}});
    m->place("list.sort", {{"targetVar", "missing"}});
    m->place("list.remove", {{"targetVar", "count"}, {"index", "x"}});
    QApplication::processEvents();
    verifyChinese(textsOf(m->window));
}

void TestWorkbenchLanguage::theSettings()
{
    int row = 0;
    const QStringList types = m_catalogue.typeIds();
    for (const QString &type : types) {
        if (!type.startsWith("list."))
            continue;
        m->place(type);
        m->scriptPane()->setCurrentRow(row++);
        verifyChinese(textsOf(*m->window.findChild<PropertyPane *>()));
    }
}

void TestWorkbenchLanguage::whatBecameOfARun()
{
    m->place("list.sort", {{"targetVar", "names"}});
    m->place("list.sort");
    m->place("list.clear", {{"targetVar", "missing"}});
    m->place("list.clear", {{"targetVar", "names"}});
    m->window.document().setEnabled({3}, false);
    m->run();
    verifyChinese(textsOf(m->window));
    m->window.document().setEnabled({0}, false);
    verifyChinese(textsOf(m->window));
}

void TestWorkbenchLanguage::dialogsOfValues_data()
{
    QTest::addColumn<VarType>("type");
    QTest::addColumn<QVariantList>("value");
    QTest::newRow("list") << VarType::List << QVariantList{1, 1.5, "一", true, QVariant(), QVariantList{1}};
    QTest::newRow("table") << VarType::Table << QVariantList{QVariantList{1, "二"}, QVariantList{}};
}

void TestWorkbenchLanguage::dialogsOfValues()
{
    QFETCH(VarType, type);
    QFETCH(QVariantList, value);
    const ValueDialog dialog("names", type, value);
    verifyChinese(textsOf(dialog));
    const ImportDialog import("names.csv", "names,007\n\xC0\xEE,1\n", type);
    verifyChinese(textsOf(import));
    const ValueViewer viewer("names", value, QVariant(QVariantList{1, 2, "二"}));
    viewer.findChild<QTabWidget *>("tabs")->setCurrentIndex(2);
    verifyChinese(textsOf(viewer));
}

void TestWorkbenchLanguage::questions()
{
    const QString folder = m->folder.filePath("scripts");
    QVERIFY(QDir().mkdir(folder));
    QCOMPARE(m->window.document().save(folder + "/a.json"), QString());
    m->place("list.sort");
    QStringList texts;
    inNextDialog<QMessageBox>([&](QMessageBox *box) { texts << textsOf(*box); });
    QVERIFY(!m->window.close());
    QVERIFY(!texts.isEmpty());
    // Another program's file, then none at all.
    QFile file(folder + "/a.json");
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{}");
    file.close();
    inNextDialog<QMessageBox>([&](QMessageBox *box) { texts << textsOf(*box); });
    QApplication::setActiveWindow(&m->window);
    QTest::keyClick(&m->window, Qt::Key_S, Qt::ControlModifier);
    QVERIFY(QDir(folder).removeRecursively());
    QFile inTheWay(folder);
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    inNextDialog<QMessageBox>([&](QMessageBox *box) { texts << textsOf(*box); });
    QApplication::setActiveWindow(&m->window);
    QTest::keyClick(&m->window, Qt::Key_S, Qt::ControlModifier);
    verifyChinese(texts);
    verifyChinese(textsOf(m->window));
    const DifferenceDialog difference("a\n", "文件", "b\n", "窗口");
    verifyChinese(textsOf(difference));
}

void TestWorkbenchLanguage::barsAboutFiles()
{
    const QString fileName = m->folder.filePath("a.json");
    QCOMPARE(m->window.document().save(fileName), QString());
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{}");
    file.close();
    auto *bar = m->window.findChild<QWidget *>("fileBar");
    QTRY_VERIFY(bar->isVisible());
    verifyChinese(textsOf(*bar));
}

void TestWorkbenchLanguage::errorsOfScripts_data()
{
    QTest::addColumn<QByteArray>("script");
    const auto row = [](const char *script) { QTest::newRow(script) << QByteArray(script); };
    row("{");
    row("[]");
    row(R"({"step": []})");
    row(R"({"steps": 1})");
    row(R"({"steps": [{"type": "no.such.step"}]})");
    row(R"({"steps": [{}]})");
    row(R"({"steps": [{"type": "list.sort", "enabled": 1}]})");
    row(R"({"steps": [{"type": "list.sort", "targetVar": 3}]})");
    row(R"({"steps": [{"type": "list.sort", "other": 3}]})");
    row(R"({"steps": [], "steps": []})");
    row(R"({"variables": [{"name": "a", "type": "none"}]})");
    row(R"({"variables": [{"name": "", "type": "int"}]})");
    row(R"({"variables": [{"name": "$$a", "type": "int"}]})");
    row(R"({"variables": [{"name": "a", "type": "int"}, {"name": "a", "type": "int"}]})");
    row(R"({"variables": [{"name": "a", "type": "int", "value": "x"}]})");
    row(R"({"variables": [{"name": "a", "type": "table", "value": [1]}]})");
    row(R"({"variables": [{"name": "a", "type": "int", "value": 99999999999999999999}]})");
    row(R"({"variables": [{"name": "a", "type": "list", "value": [{"$none": 1}]}]})");
    row(R"({"variables": [{"name": "a", "type": "list", "value": [{"$int": 1.5}]}]})");
    row(R"({"variables": [{"name": "a", "type": "list", "value": [{"$short": 70000}]}]})");
    row(R"({"variables": [{"name": "a", "type": "list", "value": [{"$float": 16777217}]}]})");
    row(R"({"variables": [{"name": "a", "type": "list", "value": [{"$double": "x"}]}]})");
    row(R"({"variables": [{"name": "a", "type": "list", "value": [{"$QByteArray": "?"}]}]})");
    row(R"({"variables": [{"name": "a", "type": "list", "value": [{"$QStringList": 1}]}]})");
    row(R"({"variables": [{"name": "a", "type": "list", "value": [{"$QVariantMap": [1]}]}]})");
    row(R"({"variables": [{"name": "a", "type": "list", "value": [{"$null": 1}]}]})");
    row(R"({"variables": [{"name": "a", "type": "list", "value": [{"$opaque": 1}]}]})");
    QTest::newRow("NUL") << QByteArray("{}\0", 3);
    QTest::newRow("binary, cut off") << QByteArray("\x89QMS\r\n\x1A\n", 8);
    QTest::newRow("binary, damaged mark") << QByteArray("\x89QMS\n\x1A\n", 7);
    QTest::newRow("binary, other version") << QByteArray("\x89QMS\r\n\x1A\n\0\7", 10);
}

void TestWorkbenchLanguage::errorsOfScripts()
{
    QFETCH(QByteArray, script);
    const QString fileName = m->folder.filePath("broken.json");
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(script);
    file.close();
    m->window.document().undoStack().setClean();
    QStringList texts;
    inNextDialog<QMessageBox>([&](QMessageBox *box) { texts << textsOf(*box); });
    m->window.openFile(fileName);
    QVERIFY(texts.join('\n').contains("broken.json"));
    verifyChinese(texts);
}

void TestWorkbenchLanguage::endsOfSteps_data()
{
    QTest::addColumn<QString>("type");
    for (const char *type : {"fixture.abort", "fixture.exit", "fixture.kill", "fixture.terminate"})
        QTest::newRow(type) << type;
}

void TestWorkbenchLanguage::endsOfSteps()
{
    QFETCH(QString, type);
    m->place(type);
    m->run();
    QStringList texts;
    for (int row = 0; row < m->window.log().rowCount(); ++row)
        texts << m->window.log().index(row, LogModel::MessageColumn).data().toString();
    QVERIFY(texts.size() >= 2);
    verifyChinese(texts);
}

RUN_TEST_MAIN(QApplication, TestWorkbenchLanguage)
#include "tst_workbenchlanguage.moc"
