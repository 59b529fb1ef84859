#include "SpokenLanguage.h"
#include "WindowFixture.h"

#include "tools/workbench/settings/PropertyPane.h"

#include "tests/support/ErrorOf.h"
#include "tests/support/TestPaths.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QScreen>
#include <QStyleOptionButton>
#include <QTabBar>
#include <QToolButton>
#include <QtTest>

using namespace Workbench;

namespace
{
QPalette darkPalette()
{
    QPalette palette(QColor(0x35, 0x38, 0x3c), QColor(0x2b, 0x2d, 0x30));
    palette.setColor(QPalette::Base, QColor(0x1e, 0x1f, 0x22));
    return palette;
}

/// What \a widget shows of its window.
QImage pictureOf(QWidget *widget)
{
    QWidget *window = widget->window();
    return window->grab(QRect(widget->mapTo(window, QPoint()), widget->size())).toImage();
}

/// How far the pixels of \a image are apart, from 0 for a plain area to 255 for black on white.
int contrastOf(const QImage &image)
{
    int darkest = 255;
    int lightest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            darkest = qMin(darkest, qGray(image.pixel(x, y)));
            lightest = qMax(lightest, qGray(image.pixel(x, y)));
        }
    }
    return lightest - darkest;
}
} // namespace

class TestWorkbenchLooks : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void hintsAreToBeRead_data();
    void hintsAreToBeRead();
    void partsOfRowsAreToBeSeen_data();
    void partsOfRowsAreToBeSeen();
    void checkBoxesAreToBeSeen_data();
    void checkBoxesAreToBeSeen();
    void warningsAreWhole();
    void firstWindowFitsTheScreen();
    void nothingIsCut_data();
    void nothingIsCut();

private:
    StepHost::StepCatalogue m_catalogue;
};

void TestWorkbenchLooks::initTestCase()
{
    const auto added = m_catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
}

void TestWorkbenchLooks::cleanup()
{
    QApplication::setPalette(QPalette());
}

void TestWorkbenchLooks::hintsAreToBeRead_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("default") << QPalette();
    QTest::newRow("dark") << darkPalette();
}

void TestWorkbenchLooks::hintsAreToBeRead()
{
    QFETCH(QPalette, palette);
    WindowFixture fixture(m_catalogue);
    fixture.place("list.clear");
    // While the window is there, as when the desktop goes dark in the evening.
    QApplication::setPalette(palette);
    QApplication::processEvents();
    auto *hint = fixture.window.findChild<PropertyPane *>()->findChild<QLabel *>("hint");
    QVERIFY(!hint->text().isEmpty());
    QVERIFY2(contrastOf(pictureOf(hint)) > 100, qPrintable(QString::number(contrastOf(pictureOf(hint)))));
}

namespace
{
/// A part of a row of the script.
struct RowPart
{
    const char *name;
    int row;
    QRect rect; ///< In the row; a left side below 0 counts from the row's right side.
};

const RowPart rowParts[] = {
    {"warning", 0, QRect(100, 32, 150, 14)},
    {"outcome that was skipped", 0, QRect(-60, 5, 50, 25)},
    {"outcome that wrote", 1, QRect(-60, 5, 50, 25)},
    {"checked box", 1, QRect(3, 3, 22, 28)},
    {"number", 1, QRect(30, 5, 40, 25)},
    {"unchecked box", 2, QRect(3, 3, 22, 28)},
    {"outcome of a disabled step", 2, QRect(-60, 5, 50, 25)},
    {"mark of the focus", 3, QRect(100, 0, 100, 4)},
};
} // namespace

void TestWorkbenchLooks::partsOfRowsAreToBeSeen_data()
{
    hintsAreToBeRead_data();
}

void TestWorkbenchLooks::partsOfRowsAreToBeSeen()
{
    QFETCH(QPalette, palette);
    WindowFixture fixture(m_catalogue);
    fixture.setVariable("names", QVariantList{"b", "a"}, VarType::List);
    for (const char *list : {"missing", "names", "names", "names"})
        fixture.place("list.sort", {{"targetVar", list}});
    fixture.window.document().setEnabled({2}, false);
    fixture.run();
    ScriptPane *pane = fixture.scriptPane();
    pane->setCurrentRow(3);
    pane->setFocus();
    pane->clearSelection();
    QApplication::setPalette(palette);
    QApplication::processEvents();
    for (const RowPart &part : rowParts) {
        const QRect row = pane->visualRect(fixture.script().index(part.row));
        QRect rect = part.rect.translated(0, row.top());
        if (rect.left() < 0)
            rect.moveLeft(row.right() + rect.left());
        const int contrast = contrastOf(pane->viewport()->grab(rect).toImage());
        QVERIFY2(contrast > 50, qPrintable(QString("%1: %2").arg(part.name).arg(contrast)));
    }
}

void TestWorkbenchLooks::checkBoxesAreToBeSeen_data()
{
    hintsAreToBeRead_data();
}

void TestWorkbenchLooks::checkBoxesAreToBeSeen()
{
    QFETCH(QPalette, palette);
    QApplication::setPalette(palette);
    WindowFixture fixture(m_catalogue);
    fixture.place("list.sort", {{"ascending", false}});
    fixture.scriptPane()->setCurrentRow(0);
    QApplication::processEvents();
    auto *box = fixture.window.findChild<PropertyPane *>()->findChild<QCheckBox *>();
    QVERIFY(!box->isChecked());
    QStyleOptionButton option;
    option.initFrom(box);
    const QRect indicator = box->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, box);
    const QImage image = box->grab(indicator).toImage();
    QVERIFY2(contrastOf(image) > 50, qPrintable(QString::number(contrastOf(image))));
}

namespace
{
/// The rows of \a image that differ from its first column, as runs from top to bottom.
QVector<QPair<int, int>> textLines(const QImage &image)
{
    QVector<QPair<int, int>> lines;
    for (int y = 0; y < image.height(); ++y) {
        bool isText = false;
        for (int x = 1; x < image.width() && !isText; ++x)
            isText = qAbs(qGray(image.pixel(x, y)) - qGray(image.pixel(0, y))) > 40;
        if (isText && (lines.isEmpty() || lines.last().second < y - 1))
            lines.append({y, y});
        else if (isText)
            lines.last().second = y;
    }
    return lines;
}
} // namespace

void TestWorkbenchLooks::warningsAreWhole()
{
    StepHost::StepCatalogue catalogue;
    QVERIFY(catalogue.addPlugin(TestPaths::fixture("HostileSteps")));
    WindowFixture fixture(catalogue);
    // Its warning has two lines.
    fixture.place("fixture.escape");
    fixture.place("fixture.escape");
    fixture.run();
    ScriptPane *pane = fixture.scriptPane();
    fixture.window.resize(900, 700);
    pane->clearSelection();
    QApplication::processEvents();
    QRect row = pane->visualRect(fixture.script().index(0)); // The other one has the mark of the focus.
    // Right of the icon and left of the outcome.
    row.setLeft(row.left() + 120);
    row.setRight(row.right() - 100);
    const QImage image = pane->viewport()->grab(row).toImage();
    const QVector<QPair<int, int>> lines = textLines(image);
    QCOMPARE(lines.size(), 3);
    QVERIFY2(lines.last().second < image.height() - 2, qPrintable(QString::number(lines.last().second)));
}

void TestWorkbenchLooks::firstWindowFitsTheScreen()
{
    WindowFixture fixture(m_catalogue);
    fixture.place("list.sort", {{"targetVar", "names"}});
    fixture.run();
    const QSize screen = fixture.window.screen()->availableSize();
    QVERIFY2(fixture.window.width() <= screen.width() && fixture.window.height() <= screen.height(),
             qPrintable(QString::number(fixture.window.width())));
    // The script is the widest pane, and high enough for some steps.
    for (const char *name : {"paletteTree", "settingsDock"}) {
        const auto *pane = fixture.window.findChild<QWidget *>(name);
        QVERIFY2(pane->width() < fixture.scriptPane()->width(), name);
    }
    const int rowHeight = fixture.scriptPane()->visualRect(fixture.script().index(0)).height();
    QVERIFY(fixture.scriptPane()->viewport()->height() >= 2 * rowHeight);
}

namespace
{
QByteArray nameOf(const QWidget *widget)
{
    return widget->metaObject()->className() + QByteArray(" ") + widget->objectName().toUtf8();
}

/// Whether \a widget has the room that its text takes.
bool hasRoom(const QWidget *widget)
{
    const auto *label = qobject_cast<const QLabel *>(widget);
    if (label && label->wordWrap())
        return label->height() >= label->heightForWidth(label->width());
    const auto *button = qobject_cast<const QAbstractButton *>(widget);
    if (label || (button && !button->text().isEmpty()))
        return widget->width() >= widget->minimumSizeHint().width()
            && widget->height() >= widget->minimumSizeHint().height();
    const QFontMetrics metrics(widget->font());
    if (const auto *field = qobject_cast<const QLineEdit *>(widget)) {
        // Beside the text there may be an icon on either side.
        const int icons = field->findChildren<QToolButton *>().size() * field->height();
        return field->width() - icons >= metrics.horizontalAdvance(field->placeholderText());
    }
    if (const auto *tabs = qobject_cast<const QTabBar *>(widget)) {
        for (int i = 0; i < tabs->count(); ++i) {
            if (tabs->tabRect(i).width() < metrics.horizontalAdvance(tabs->tabText(i)))
                return false;
        }
    }
    const auto *header = qobject_cast<const QHeaderView *>(widget);
    for (int i = 0; header && header->orientation() == Qt::Horizontal && i < header->count(); ++i) {
        const QString text = header->model()->headerData(i, Qt::Horizontal).toString();
        if (header->sectionSize(i) < metrics.horizontalAdvance(text))
            return false;
    }
    return true;
}
} // namespace

void TestWorkbenchLooks::nothingIsCut_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QPalette>("palette");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("pane");
    // A screen of 1280 x 720 at 100, 150 and 200 %.
    for (const QSize size : {QSize(1280, 720), QSize(853, 480), QSize(640, 360)}) {
        for (const char *language : {"en", "zh_CN"}) {
            for (const char *pane : {"variablesDock", "logDock", "problemsDock", "searchDock"}) {
                QTest::addRow("%s, %d, %s", language, size.width(), pane)
                    << language << QPalette() << size << pane;
            }
        }
    }
    QTest::newRow("dark") << "en" << darkPalette() << QSize(640, 360) << "variablesDock";
}

void TestWorkbenchLooks::nothingIsCut()
{
    QFETCH(QString, language);
    QFETCH(QPalette, palette);
    QFETCH(QSize, size);
    QFETCH(QString, pane);
    const SpokenLanguage spoken(language);
    QApplication::setPalette(palette);
    WindowFixture fixture(m_catalogue);
    fixture.setVariable("names", QVariantList{"b", "a"}, VarType::List);
    fixture.place("list.remove", {{"targetVar", "missing"}});
    fixture.run();
    fixture.scriptPane()->setCurrentRow(0);
    fixture.window.findChild<QWidget *>(pane)->raise();
    fixture.window.resize(size);
    QApplication::processEvents();
    QVERIFY2(fixture.window.width() <= size.width() && fixture.window.height() <= size.height(),
             qPrintable(QString("%1 x %2").arg(fixture.window.width()).arg(fixture.window.height())));
    const QList<QWidget *> widgets = fixture.window.findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        // Nor does it matter what lies behind another pane.
        if (!widget->isVisible() || widget->visibleRegion().isEmpty())
            continue;
        QVERIFY2(hasRoom(widget), nameOf(widget));
        // What a layout puts side by side does not overlap.
        const QLayout *layout = widget->layout();
        for (int i = 0; layout && i < layout->count(); ++i) {
            for (int j = 0; j < i; ++j) {
                const QWidget *one = layout->itemAt(i)->widget();
                const QWidget *other = layout->itemAt(j)->widget();
                if (one && other && one->isVisible() && other->isVisible())
                    QVERIFY2(!one->geometry().intersects(other->geometry()), nameOf(one) + nameOf(other));
            }
        }
    }
}

RUN_TEST_MAIN(QApplication, TestWorkbenchLooks)
#include "tst_workbenchlooks.moc"
