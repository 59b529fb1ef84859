#include "WindowFixture.h"

#include "tools/workbench/look/ChoiceDelegate.h"
#include "tools/workbench/values/ValueDialog.h"

#include "host/values/ItemValue.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QStandardItemModel>
#include <QTableView>

using namespace Workbench;

class TestValueDialog : public QObject
{
    Q_OBJECT

private slots:
    void selectsWhatItAdds();
    void undoes();
    void undoesATable();
    void importIsUndone();
    void asksBeforeItDiscards_data();
    void asksBeforeItDiscards();
    void choicesWaitForReturn_data();
    void choicesWaitForReturn();
};

namespace
{
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
    for (int i = 0; i < 3; ++i) {
        QTest::keyClick(dialog.view, Qt::Key_Return, Qt::ControlModifier);
        dialog.pressReturn();
    }
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

void TestValueDialog::importIsUndone()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("names.txt"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("x\ny\n");
    file.close();
    OpenDialog dialog(VarType::List, {"a"});
    dialog.importFile(file.fileName());
    QCOMPARE(dialog.value(), QVariantList({"x", "y"}));
    QTest::keyClick(dialog.view, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(dialog.value(), QVariantList{"a"});
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
