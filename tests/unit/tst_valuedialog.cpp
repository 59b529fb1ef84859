#include "WindowFixture.h"

#include "tools/workbench/look/ChoiceDelegate.h"
#include "tools/workbench/values/ImportDialog.h"
#include "tools/workbench/values/ValueDialog.h"
#include "tools/workbench/values/ValueViewer.h"

#include "host/values/ItemValue.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QTabWidget>
#include <QTableView>
#include <QToolButton>

using namespace Workbench;

class TestValueDialog : public QObject
{
    Q_OBJECT

private slots:
    void selectsWhatItAdds();
    void undoes();
    void undoesATable();
    void importIsUndone();
    void commands_data();
    void commands();
    void returnGoesDown();
    void showsYesAndNo();
    void showsTypesOfCells();
    void finds();
    void pastesFromOthers_data();
    void pastesFromOthers();
    void copiesForOthers();
    void imports_data();
    void imports();
    void importTakesTypesOfColumns();
    void importAppends();
    void importSaysWhatIsWrong();
    void importKeepsTheFolder();
    void viewsValues_data();
    void viewsValues();
    void viewsDifferences();
    void viewsLargeValues();
    void asksBeforeItDiscards_data();
    void asksBeforeItDiscards();
    void choicesWaitForReturn_data();
    void choicesWaitForReturn();
};

namespace
{
QVariantList rowsOf(const QVector<QVariantList> &rows)
{
    QVariantList value;
    for (const QVariantList &row : rows)
        value.append(QVariant(row));
    return value;
}

struct OpenDialog : ValueDialog
{
    OpenDialog(VarType type, const QVariantList &value) : ValueDialog("names", type, value)
    {
        show();
        QApplication::setActiveWindow(this);
        view = findChild<QTableView *>("values");
        view->setFocus();
        view->setCurrentIndex(view->model()->index(0, 0));
    }

    /// Selects the cells "row,column" or from "row,column:row,column".
    void select(const QString &cells) const
    {
        const auto at = [this](const QString &cell) {
            return view->model()->index(cell.section(',', 0, 0).toInt(), cell.section(',', 1).toInt());
        };
        const QModelIndex first = at(cells.section(':', 0, 0));
        view->selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
        view->selectionModel()->select(QItemSelection(first, at(cells.section(':', -1))),
                                       QItemSelectionModel::ClearAndSelect);
    }

    void pressReturn()
    {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QApplication::processEvents();
    }

    QTableView *view;
};
} // namespace

void TestValueDialog::selectsWhatItAdds()
{
    OpenDialog dialog(VarType::List, {"a", "b"});
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(dialog.view, Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(dialog.value().size(), 5);
    QCOMPARE(dialog.view->selectionModel()->selectedRows().size(), 1);
    QTest::keyClick(dialog.view, Qt::Key_Delete, Qt::ControlModifier);
    QCOMPARE(dialog.value(), QVariantList({"a", "", "", "b"}));
}

void TestValueDialog::undoes()
{
    OpenDialog dialog(VarType::List, {"b", "a"});
    const auto undo = [&] { QTest::keyClick(dialog.view, Qt::Key_Z, Qt::ControlModifier); };
    QTest::keyClick(dialog.view, Qt::Key_F2);
    static_cast<QLineEdit *>(QApplication::focusWidget())->setText("c");
    dialog.pressReturn();
    QCOMPARE(dialog.value(), QVariantList({"c", "a"}));
    QTest::keyClick(dialog.view, Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClick(dialog.view, Qt::Key_T, Qt::ControlModifier);
    QTest::keyClick(dialog.view, Qt::Key_Up, Qt::AltModifier);
    QTest::keyClick(dialog.view, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(dialog.view, Qt::Key_Delete, Qt::ControlModifier);
    QCOMPARE(dialog.value(), QVariantList());
    undo();
    QCOMPARE(dialog.value().size(), 2);
    undo();
    undo();
    QCOMPARE(dialog.value(), QVariantList({"c", "a"}));
    undo();
    QCOMPARE(dialog.value(), QVariantList({"b", "a"}));
    QTest::keyClick(dialog.view, Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(dialog.value(), QVariantList({"c", "a"}));
}

void TestValueDialog::undoesATable()
{
    const QVariantList rows{QVariant(QVariantList{1, 2})};
    OpenDialog dialog(VarType::Table, rows);
    QTest::keyClick(dialog.view, Qt::Key_Right, Qt::ControlModifier);
    QTest::keyClick(dialog.view, Qt::Key_Backspace, Qt::ControlModifier);
    dialog.view->setCurrentIndex(dialog.view->model()->index(0, 0));
    QTest::keyClick(dialog.view, Qt::Key_Delete, Qt::ControlModifier);
    QCOMPARE(dialog.value(), QVariantList());
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(dialog.view, Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(StepHost::ItemValue::same(dialog.value(), rows));
}

// The keys follow the selection "row,column:row,column"; then the value is looked at, and undone.
void TestValueDialog::commands_data()
{
    QTest::addColumn<bool>("isTable");
    QTest::addColumn<QVariantList>("value");
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QVariantList>("result");
    const QVariantList list{"a", 2, true};
    const QVariantList table = rowsOf({{"a", 1}, {"b", 2}, {"c"}});
    const auto row = [&](const char *name, const QStringList &keys, const QVariantList &result) {
        QTest::newRow(name) << false << list << keys << result;
    };
    const auto cells = [&](const char *name, const QStringList &keys, const QVector<QVariantList> &result) {
        QTest::newRow(name) << true << table << keys << rowsOf(result);
    };
    row("add above", {"1,0", "Ctrl+Shift+Return", "Ctrl+A"}, {"a", "", 2, true});
    row("add below", {"1,0", "Ctrl+Return", "Ctrl+A"}, {"a", 2, "", true});
    row("Delete removes items", {"0,0:1,0", "Del"}, {true});
    row("sort", {"0,0", "Ctrl+T"}, {true, 2, "a"});
    row("sort backwards", {"0,0", "Ctrl+Shift+T"}, {"a", 2, true});
    row("cut and paste", {"0,0:1,0", "Ctrl+X", "0,0", "Ctrl+V"}, {"a", 2});
    row("copy and paste below the end", {"0,0:1,0", "Ctrl+C", "2,0", "Ctrl+V"}, {"a", 2, "a", 2});
    row("paste one into many", {"1,0", "Ctrl+C", "0,0:2,0", "Ctrl+V"}, {"2", 2, 2});
    row("fill", {"1,0:2,0", "Ctrl+D"}, {"a", 2, 2});
    row("fill nothing", {"1,0", "Ctrl+D"}, list);
    row("move", {"2,0", "Alt+Up"}, {"a", true, 2});
    cells("Delete empties cells", {"0,0:1,1", "Del"}, {{"", QVariant()}, {"", QVariant()}, {"c"}});
    cells("Delete behind the end of a row", {"2,1", "Del"}, {{"a", 1}, {"b", 2}, {"c"}});
    cells("sort by a column", {"1,1", "Ctrl+T"}, {{"c"}, {"a", 1}, {"b", 2}});
    cells("sort backwards", {"1,0", "Ctrl+Shift+T"}, {{"c"}, {"b", 2}, {"a", 1}});
    cells("cut and paste", {"0,1:1,1", "Ctrl+X", "1,0", "Ctrl+V"},
          {{"a", QVariant()}, {"1", QVariant()}, {"2"}});
    cells("paste makes room", {"0,0:1,1", "Ctrl+C", "2,1", "Ctrl+V"},
          {{"a", 1}, {"b", 2}, {"c", "a", 1}, {QVariant(), "b", 2}});
    cells("fill", {"0,0:2,1", "Ctrl+D"}, {{"a", 1}, {"a", 1}, {"a", 1}});
    cells("move", {"0,0", "Alt+Down"}, {{"b", 2}, {"a", 1}, {"c"}});
    cells("add row above", {"0,0", "Ctrl+Shift+Return", "Ctrl+A"},
          {{QVariant(), QVariant()}, {"a", 1}, {"b", 2}, {"c"}});
}

void TestValueDialog::commands()
{
    QFETCH(bool, isTable);
    QFETCH(QVariantList, value);
    QFETCH(QStringList, keys);
    QFETCH(QVariantList, result);
    OpenDialog dialog(isTable ? VarType::Table : VarType::List, value);
    for (const QString &key : qAsConst(keys)) {
        if (key.at(0).isDigit()) {
            dialog.select(key);
            continue;
        }
        const int code = QKeySequence(key)[0];
        QTest::keyClick(dialog.view, Qt::Key(code & ~Qt::KeyboardModifierMask),
                        Qt::KeyboardModifiers(code & Qt::KeyboardModifierMask));
    }
    const auto isLike = [&](const QVariantList &expected) {
        return StepHost::ItemValue::same(dialog.value(), expected);
    };
    QVERIFY2(isLike(result), qPrintable(StepHost::ItemValue::editText(dialog.value())));
    for (int i = 0; i < keys.size(); ++i)
        QTest::keyClick(dialog.view, Qt::Key_Z, Qt::ControlModifier);
    QVERIFY2(isLike(value), qPrintable(StepHost::ItemValue::editText(dialog.value())));
    for (int i = 0; i < keys.size(); ++i)
        QTest::keyClick(dialog.view, Qt::Key_Y, Qt::ControlModifier);
    QVERIFY2(isLike(result), qPrintable(StepHost::ItemValue::editText(dialog.value())));
}

void TestValueDialog::returnGoesDown()
{
    OpenDialog dialog(VarType::List, {"a", "b"});
    const auto row = [&] { return dialog.view->currentIndex().row(); };
    QTest::keyClick(dialog.view, Qt::Key_F2);
    static_cast<QLineEdit *>(QApplication::focusWidget())->setText("c");
    dialog.pressReturn();
    QCOMPARE(row(), 1);
    QCOMPARE(dialog.value(), QVariantList({"c", "b"}));
    QTest::keyClick(dialog.view, Qt::Key_Return);
    QCOMPARE(row(), 1);
    QTest::keyClick(dialog.view, Qt::Key_Return, Qt::ShiftModifier);
    QCOMPARE(row(), 0);
    QVERIFY(dialog.isVisible());
}

void TestValueDialog::showsYesAndNo()
{
    OpenDialog dialog(VarType::Table, rowsOf({{true, "x", 1}}));
    const QModelIndex yes = dialog.view->model()->index(0, 0);
    QCOMPARE(yes.data().toString(), QString("Yes"));
    QCOMPARE(yes.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QTest::keyClick(dialog.view, Qt::Key_Space);
    QCOMPARE(yes.data().toString(), QString("No"));
    QTest::keyClick(dialog.view, Qt::Key_F2);
    static_cast<QLineEdit *>(QApplication::focusWidget())->setText("yes");
    dialog.pressReturn();
    QCOMPARE(yes.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QVERIFY(!yes.siblingAtColumn(1).data(Qt::CheckStateRole).isValid());
    QVERIFY(!yes.siblingAtColumn(1).data(Qt::TextAlignmentRole).isValid());
    QVERIFY(yes.siblingAtColumn(2).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight);
}

void TestValueDialog::showsTypesOfCells()
{
    OpenDialog dialog(VarType::Table, rowsOf({{"7", 7}}));
    auto *type = dialog.findChild<QToolButton *>("type");
    QCOMPARE(type->text(), QString("Type: Text"));
    dialog.select("0,1");
    QCOMPARE(type->text(), QString("Type: Integer"));
    dialog.select("0,0");
    type->menu()->actions().at(1)->trigger();
    QCOMPARE(type->text(), QString("Type: Integer"));
    QVERIFY(StepHost::ItemValue::same(dialog.value(), rowsOf({{7, 7}})));
}

void TestValueDialog::finds()
{
    OpenDialog dialog(VarType::Table, rowsOf({{"Anna", "x"}, {"b", 15}, {"c", "anna"}}));
    const auto place = [&] {
        const QModelIndex at = dialog.view->currentIndex();
        return QPoint(at.column(), at.row());
    };
    QTest::keyClick(dialog.view, Qt::Key_F, Qt::ControlModifier);
    auto *find = dialog.findChild<QLineEdit *>("find");
    auto *found = dialog.findChild<QLabel *>("found");
    QVERIFY(find->hasFocus());
    QTest::keyClicks(find, "ANN");
    QTest::keyClick(find, Qt::Key_Return);
    QCOMPARE(place(), QPoint(1, 2));
    QTest::keyClick(find, Qt::Key_Return);
    QCOMPARE(place(), QPoint(0, 0));
    QTest::keyClick(find, Qt::Key_Return, Qt::ShiftModifier);
    QCOMPARE(place(), QPoint(1, 2));
    find->setText("15");
    QTest::keyClick(find, Qt::Key_F3);
    QCOMPARE(place(), QPoint(1, 1));
    find->setText("nobody");
    QTest::keyClick(find, Qt::Key_Return);
    QCOMPARE(place(), QPoint(1, 1));
    QCOMPARE(found->text(), QString("Not found"));
    QTest::keyClick(find, Qt::Key_Escape);
    QVERIFY(!find->isVisible());
    QVERIFY(dialog.isVisible());
}

void TestValueDialog::pastesFromOthers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariantList>("value");
    const auto row = [](const char *text, const QVector<QVariantList> &rows) {
        QTest::newRow(text) << QString(text) << rowsOf(rows);
    };
    row("x", {{"x", 2}});
    row("3", {{"3", 2}});
    row("x\t3\n", {{"x", 3}});
    row("x\tno number\n", {{"x", "no number"}});
    row("a\t1\tyes\r\nb\t2.5\tno\r\n", {{"a", 1, "yes"}, {"b", 2.5, "no"}});
    row("a\t1\t007\nb\t2\t10", {{"a", 1, "007"}, {"b", 2, "10"}});
    row("a\t1\t1\nb\t2\t", {{"a", 1, 1}, {"b", 2, QVariant()}});
    row("\"two\nlines\"\t1", {{"two\nlines", 1}});
    row("\"no end\t1", {{"\"no end", 1}});
    row("", {{"1", 2}});
}

void TestValueDialog::pastesFromOthers()
{
    QFETCH(QString, text);
    QFETCH(QVariantList, value);
    QGuiApplication::clipboard()->setText(text);
    OpenDialog dialog(VarType::Table, rowsOf({{"1", 2}}));
    QTest::keyClick(dialog.view, Qt::Key_V, Qt::ControlModifier);
    QVERIFY2(StepHost::ItemValue::same(dialog.value(), value),
             qPrintable(StepHost::ItemValue::editText(dialog.value())));
}

void TestValueDialog::copiesForOthers()
{
    OpenDialog dialog(VarType::Table, rowsOf({{"a\tb", 1.5}, {true, QVariant()}}));
    dialog.select("0,0:1,1");
    QTest::keyClick(dialog.view, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), QString("\"a\tb\"\t1.5\ntrue\t"));
}

void TestValueDialog::importIsUndone()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("names.txt"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("x\ny\n");
    file.close();
    OpenDialog dialog(VarType::List, {"a"});
    inNextDialog<ImportDialog>([](ImportDialog *import) { import->accept(); });
    dialog.importFile(file.fileName());
    QCOMPARE(dialog.value(), QVariantList({"x", "y"}));
    QApplication::setActiveWindow(&dialog);
    QTest::keyClick(dialog.view, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(dialog.value(), QVariantList{"a"});
}

namespace
{
/// A dialog about a file, with the ways to choose in it.
struct OpenImport : ImportDialog
{
    OpenImport(const QString &fileName, const QByteArray &bytes, VarType type = VarType::List)
        : ImportDialog(fileName, bytes, type)
    {
        show();
        preview = findChild<QTableView *>("preview");
        message = findChild<QLabel *>("message");
    }

    void choose(const QString &name, const QString &text)
    {
        auto *box = findChild<QComboBox *>(name);
        QVERIFY2(box && box->isEnabled() && box->findText(text) >= 0, qPrintable(name + ": " + text));
        box->setCurrentIndex(box->findText(text));
        emit box->activated(box->currentIndex());
    }

    bool canImport() const
    {
        const QList<QPushButton *> buttons = findChildren<QPushButton *>();
        return std::any_of(buttons.begin(), buttons.end(), [](const QPushButton *button) {
            return button->text() == "Import" && button->isEnabled();
        });
    }

    QTableView *preview;
    void selectColumn(int column) const
    {
        preview->selectionModel()->setCurrentIndex(preview->model()->index(0, column),
                                                   QItemSelectionModel::ClearAndSelect
                                                       | QItemSelectionModel::Columns);
    }

    QLabel *message;
};

} // namespace

// The choices are "name=text" with bars between.
void TestValueDialog::imports_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isTable");
    QTest::addColumn<QString>("choices");
    QTest::addColumn<QVariantList>("value");
    const QByteArray staff = "name;no\nA;007\nB;12\n";
    QTest::newRow("lines") << "a.txt" << QByteArray("b\n007\n") << false << "" << QVariantList{"b", "007"};
    QTest::newRow("numbers") << "a.txt" << QByteArray("2\n10\n") << false << "" << QVariantList{2, 10};
    QTest::newRow("one column") << "a.csv" << QByteArray("b\n\"c,d\"\n") << false << ""
                                << QVariantList{"b", "c,d"};
    QTest::newRow("three columns are rows") << "a.csv" << QByteArray("a,b,c\nd,e,f\n") << false << ""
                                            << rowsOf({{"a", "b", "c"}, {"d", "e", "f"}});
    QTest::newRow("all cells, asked for")
        << "a.csv" << QByteArray("a,b\nc,d\n") << false << "shape=All cells, row by row"
        << QVariantList{"a", "b", "c", "d"};
    QTest::newRow("another column") << "a.csv" << staff << false << "shape=One column|column=2"
                                    << QVariantList{"no", "007", "12"};
    QTest::newRow("header") << "a.csv" << QByteArray("no\n7\n") << false << "" << QVariantList{7};
    QTest::newRow("header, chosen") << "a.csv" << staff << true << "header"
                                    << rowsOf({{"A", "007"}, {"B", "12"}});
    QTest::newRow("separator") << "a.csv" << QByteArray("a;b|c\n") << true << "separator=Vertical bar"
                               << rowsOf({{"a;b", "c"}});
    QTest::newRow("quotation marks") << "a.csv" << QByteArray("\"a\",b\n") << true << "quotes=None"
                                     << rowsOf({{"\"a\"", "b"}});
    QTest::newRow("GB18030, guessed")
        << "a.txt" << QByteArray("\xC0\xEE\n") << false << "" << QVariantList{"李"};
    QTest::newRow("Latin-1, chosen") << "a.txt" << QByteArray("\xC0\xEE\n") << false << "encoding=Latin-1"
                                     << QVariantList{"Àî"};
}

void TestValueDialog::imports()
{
    QFETCH(QString, fileName);
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isTable);
    QFETCH(QString, choices);
    QFETCH(QVariantList, value);
    OpenImport dialog(fileName, bytes, isTable ? VarType::Table : VarType::List);

    const QStringList chosen = choices.split('|', Qt::SkipEmptyParts);
    for (const QString &choice : chosen) {
        const QString name = choice.section('=', 0, 0);
        if (name == "header")
            dialog.findChild<QCheckBox *>(name)->setChecked(true);
        else if (name == "column")
            dialog.findChild<QSpinBox *>(name)->setValue(choice.section('=', 1).toInt());
        else
            dialog.choose(name, choice.section('=', 1));
    }
    QVERIFY(dialog.canImport());
    dialog.accept();
    QVERIFY2(!dialog.isVisible(), qPrintable(dialog.message->text()));
    QVERIFY2(StepHost::ItemValue::same(dialog.value(), value),
             qPrintable(StepHost::ItemValue::summary(dialog.value())));
}

void TestValueDialog::importTakesTypesOfColumns()
{
    OpenImport dialog("a.csv", "007,1\n8,2\n", VarType::Table);
    QCOMPARE(dialog.preview->model()->headerData(0, Qt::Horizontal).toString(),
             QString("1\nautomatic: Text"));
    QCOMPARE(dialog.preview->model()->headerData(1, Qt::Horizontal).toString(),
             QString("2\nautomatic: Integer"));
    dialog.selectColumn(0);
    dialog.choose("columnType", "Integer");
    QCOMPARE(dialog.preview->model()->headerData(0, Qt::Horizontal).toString(), QString("1\nInteger"));
    QCOMPARE(dialog.preview->selectionModel()->selectedColumns().size(), 1);
    dialog.selectColumn(1);
    dialog.choose("columnType", "Text");
    dialog.accept();
    QCOMPARE(dialog.message->text(), QString());
    QVERIFY2(StepHost::ItemValue::same(dialog.value(), rowsOf({{7, "1"}, {8, "2"}})),
             qPrintable(StepHost::ItemValue::editText(dialog.value())));
}

void TestValueDialog::importAppends()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("a.txt"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("b\n");
    file.close();
    OpenDialog dialog(VarType::List, {"a"});
    inNextDialog<ImportDialog>([](ImportDialog *import) {
        import->findChild<QComboBox *>("place")->setCurrentIndex(1);
        import->accept();
    });
    dialog.importFile(file.fileName());
    QCOMPARE(dialog.value(), QVariantList({"a", "b"}));
    inNextDialog<ImportDialog>([](ImportDialog *import) { import->reject(); });
    dialog.importFile(file.fileName());
    QCOMPARE(dialog.value(), QVariantList({"a", "b"}));
    dialog.hide();
}

void TestValueDialog::importSaysWhatIsWrong()
{
    OpenImport encoding("a.txt", "a\nb\xE9\n");
    QVERIFY(encoding.message->text().contains("Latin-1"));
    QVERIFY(encoding.canImport());
    encoding.choose("encoding", "UTF-8");
    QCOMPARE(encoding.message->text(), QString("line 2, character 2 is not UTF-8 text"));
    QVERIFY(!encoding.canImport());
    encoding.choose("encoding", "Latin-1");
    QVERIFY(!encoding.message->isVisible());
    QVERIFY(encoding.canImport());

    OpenImport quotes("a.csv", "a,\"b\n");
    QVERIFY(quotes.message->text().startsWith("line 1, column 2: "));
    QVERIFY(!quotes.canImport());

    // Behind the rows that are shown.
    OpenImport types("a.txt", QByteArray("1\n").repeated(200) + "x\n");
    types.choose("columnType", "Integer");
    QVERIFY(types.canImport());
    types.accept();
    QVERIFY(types.isVisible());
    QVERIFY2(types.message->text().startsWith("row 201, column 1: "), qPrintable(types.message->text()));
}

void TestValueDialog::importKeepsTheFolder()
{
    const QTemporaryDir folder;
    QSettings settings(folder.filePath("settings.ini"), QSettings::IniFormat);
    OpenDialog dialog(VarType::List, {"a"});
    dialog.setSettings(settings);
    dialog.exportFile(folder.filePath("none/a.txt"));
    QVERIFY(settings.allKeys().isEmpty());
    dialog.exportFile(folder.filePath("a.txt"));
    QCOMPARE(settings.value("values/folder").toString(), QFileInfo(folder.path()).absoluteFilePath());
}

void TestValueDialog::viewsValues_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QStringList>("cells"); // Of the first row; empty for a text.
    QTest::newRow("list") << QVariant(QVariantList{true, "b"}) << QStringList{"Yes", "Yes/no"};
    QTest::newRow("rows") << QVariant(rowsOf({{true, "b"}, {1}})) << QStringList{"Yes", "b"};
    QTest::newRow("empty list") << QVariant(QVariantList()) << QStringList();
    QTest::newRow("text") << QVariant(QString("a\n").repeated(500)) << QStringList();
    QTest::newRow("number") << QVariant(1.5) << QStringList();
}

void TestValueDialog::viewsValues()
{
    QFETCH(QVariant, value);
    QFETCH(QStringList, cells);
    ValueViewer viewer("x", value, std::nullopt);
    viewer.show();
    QApplication::setActiveWindow(&viewer);
    QCOMPARE(viewer.findChild<QTabWidget *>("tabs")->count(), 1);
    if (auto *text = viewer.findChild<QPlainTextEdit *>("text")) {
        QVERIFY(text->isReadOnly());
        QCOMPARE(text->toPlainText(), value.toString());
        return;
    }
    auto *view = viewer.findChild<QTableView *>("values");
    QCOMPARE(view->model()->rowCount(), value.toList().size());
    for (int column = 0; column < cells.size(); ++column) {
        const QModelIndex cell = view->model()->index(0, column);
        QCOMPARE(cell.data().toString(), cells.at(column));
        view->setCurrentIndex(cell);
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Delete, Qt::Key_F2, Qt::Key_X})
            QTest::keyClick(view, key);
        QVERIFY(view->hasFocus());
        QCOMPARE(cell.data().toString(), cells.at(column));
        QVERIFY(!view->model()->setData(cell, "new"));
    }
    QTest::keyClick(view, Qt::Key_F, Qt::ControlModifier);
    QVERIFY(viewer.findChild<QLineEdit *>("find")->hasFocus());
}

void TestValueDialog::viewsDifferences()
{
    ValueViewer viewer("x", QVariantList{"b", "new", 2, "c"}, QVariant(QVariantList{"a", "b", 1, "c"}));
    viewer.show();
    auto *tabs = viewer.findChild<QTabWidget *>("tabs");
    QCOMPARE(tabs->count(), 3);
    QVERIFY(!viewer.findChild<QTableView *>("difference"));
    tabs->setCurrentIndex(1);
    QCOMPARE(tabs->widget(1)->findChild<QTableView *>("values")->model()->index(0, 0).data().toString(),
             QString("a"));
    tabs->setCurrentIndex(2);
    auto *view = viewer.findChild<QTableView *>("difference");
    QCOMPARE(viewer.findChild<QLabel *>("summary")->text(), QString("1 added, 1 removed, 1 changed"));
    QStringList rows;
    const auto look = [&] {
        rows.clear();
        for (int row = 0; row < view->model()->rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < view->model()->columnCount(); ++column)
                cells.append(view->model()->index(row, column).data().toString());
            rows.append(cells.join('|'));
        }
    };
    look();
    QCOMPARE(rows,
             QStringList({"removed|0|a||", "|1|b|0|b", "changed|2|1|1|new", "added|||2|2", "|3|c|3|c"}));
    viewer.findChild<QCheckBox *>("only")->setChecked(true);
    look();
    QCOMPARE(rows, QStringList({"removed|0|a||", "changed|2|1|1|new", "added|||2|2"}));
    tabs->setCurrentIndex(0);
    tabs->setCurrentIndex(2);
    QCOMPARE(viewer.findChildren<QTableView *>("difference").size(), 1);
}

void TestValueDialog::viewsLargeValues()
{
    const int count = qEnvironmentVariableIntValue("QUILLMAP_LARGE") > 0
        ? qEnvironmentVariableIntValue("QUILLMAP_LARGE")
        : 100000;
    QVariantList before;
    for (int i = 0; i < count; ++i)
        before.append(QString("item %1").arg(qint64(i) * 7919 % 1000003));
    QVariantList after = before;
    std::sort(after.begin(), after.end(),
              [](const QVariant &a, const QVariant &b) { return a.toString() < b.toString(); });
    QElapsedTimer clock;
    clock.start();
    ValueViewer viewer("x", after, QVariant(before));
    viewer.show();
    QApplication::processEvents();
    const qint64 opened = clock.restart();
    auto *tabs = viewer.findChild<QTabWidget *>("tabs");
    auto *view = tabs->widget(0)->findChild<QTableView *>("values");
    QVERIFY(view->isVisible());
    QCOMPARE(view->model()->rowCount(), count);
    qint64 scrolled = 0;
    for (int i = 0; i <= 50; ++i) {
        clock.restart();
        view->verticalScrollBar()->setValue(int(qint64(view->verticalScrollBar()->maximum()) * i / 50));
        QApplication::processEvents();
        scrolled = qMax(scrolled, clock.elapsed());
    }
    clock.restart();
    tabs->setCurrentIndex(2);
    QApplication::processEvents();
    const qint64 compared = clock.elapsed();
    QCOMPARE(viewer.findChild<QTableView *>("difference")->model()->rowCount(), count);
    qInfo("%d items: opened in %lld ms, longest stall while scrolling %lld ms, compared in %lld ms", count,
          opened, scrolled, compared);
}

void TestValueDialog::asksBeforeItDiscards_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("isOpen");
    QTest::addColumn<int>("result");
    QTest::newRow("Keep") << "Keep" << false << int(QDialog::Accepted);
    QTest::newRow("Discard") << "Discard" << false << int(QDialog::Rejected);
    QTest::newRow("Cancel") << "Cancel" << true << int(QDialog::Rejected);
}

void TestValueDialog::asksBeforeItDiscards()
{
    QFETCH(QString, answer);
    {
        OpenDialog unchanged(VarType::List, {"a"});
        QTest::keyClick(unchanged.view, Qt::Key_Escape);
        QVERIFY(!unchanged.isVisible());
    }
    OpenDialog dialog(VarType::List, {"a"});
    QTest::keyClick(dialog.view, Qt::Key_Delete, Qt::ControlModifier);
    bool isAsked = false;
    inNextDialog<QMessageBox>([&](QMessageBox *box) {
        isAsked = true;
        press(box, answer);
    });
    QTest::keyClick(dialog.view, Qt::Key_Escape);
    QVERIFY(isAsked);
    QTEST(dialog.isVisible(), "isOpen");
    QTEST(dialog.result(), "result");
    dialog.hide();
}

void TestValueDialog::choicesWaitForReturn_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("chosen");
    QTest::newRow("Return") << Qt::Key_Return << 2;
    QTest::newRow("Escape") << Qt::Key_Escape << 0;
}

void TestValueDialog::choicesWaitForReturn()
{
    QFETCH(Qt::Key, key);
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), 0);
    ChoiceDelegate delegate({{0, "zero"}, {1, "one"}, {2, "two"}});
    QTableView view;
    view.setModel(&model);
    view.setItemDelegate(&delegate);
    view.show();
    QApplication::setActiveWindow(&view);
    view.setCurrentIndex(model.index(0, 0));
    view.edit(model.index(0, 0));
    const QPointer<QComboBox> combo = view.findChild<QComboBox *>();
    QVERIFY(combo);
    QTest::keyClick(combo, Qt::Key_Down);
    QTest::keyClick(combo, Qt::Key_Down);
    QApplication::processEvents();
    QVERIFY(combo);
    QCOMPARE(combo->currentIndex(), 2);
    QCOMPARE(model.index(0, 0).data(Qt::EditRole).toInt(), 0);
    QTest::keyClick(combo, key);
    QApplication::processEvents();
    QTEST(model.index(0, 0).data(Qt::EditRole).toInt(), "chosen");
}

QTEST_MAIN(TestValueDialog)
#include "tst_valuedialog.moc"
