#include "DifferenceDialog.h"

#include "host/values/QuotedText.h"
#include "tools/workbench/document/LineDifference.h"
#include "tools/workbench/look/Colors.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace Workbench
{
namespace
{
constexpr int linesAround = 3;
constexpr int maxLineLength = 500;

/// Whether each of \a lines is to be shown: it differs, or one near it does.
QVector<bool> shownLines(const QVector<DifferenceLine> &lines)
{
    QVector<bool> shown(lines.size(), false);
    for (int i = 0; i < lines.size(); ++i) {
        if (lines.at(i).side == DifferenceLine::Both)
            continue;
        const int last = qMin(i + linesAround, lines.size() - 1);
        for (int near = qMax(0, i - linesAround); near <= last; ++near)
            shown[near] = true;
    }
    return shown;
}

void showLines(QPlainTextEdit &view, const QVector<DifferenceLine> &lines)
{
    const QVector<bool> shown = shownLines(lines);
    QTextCursor cursor(view.document());
    for (int i = 0; i < lines.size(); ++i) {
        if (!shown.at(i)) {
            if (i == 0 || shown.at(i - 1))
                cursor.insertText(QStringLiteral("⋯\n"), QTextCharFormat());
            continue;
        }
        const DifferenceLine &line = lines.at(i);
        QTextCharFormat format;
        QString mark = QStringLiteral("  ");
        if (line.side == DifferenceLine::First) {
            format.setForeground(Colors::warning(view.palette()));
            mark = QStringLiteral("− ");
        } else if (line.side == DifferenceLine::Second) {
            format.setForeground(Colors::success(view.palette()));
            mark = QStringLiteral("+ ");
        }
        const QString text = StepHost::bounded(StepHost::inOneLine(line.text), maxLineLength);
        cursor.insertText(mark + text + QLatin1Char('\n'), format);
    }
}
} // namespace

DifferenceDialog::DifferenceDialog(const QString &first, const QString &firstName, const QString &second,
                                   const QString &secondName, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Difference"));
    auto *caption =
        new QLabel(first == second ? tr("Both are the same script; only the way it is written differs.")
                                   : tr("− only in %1\n+ only in %2").arg(firstName, secondName));
    caption->setTextFormat(Qt::PlainText);
    auto *view = new QPlainTextEdit;
    view->setObjectName(QStringLiteral("difference"));
    view->setAccessibleName(tr("Difference"));
    view->setReadOnly(true);
    view->setLineWrapMode(QPlainTextEdit::NoWrap);
    view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    showLines(*view, lineDifference(first.split(QLatin1Char('\n')), second.split(QLatin1Char('\n'))));
    view->moveCursor(QTextCursor::Start);

    auto *buttons = new QDialogButtonBox;
    buttons->addButton(tr("Close"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(caption);
    layout->addWidget(view, 1);
    layout->addWidget(buttons);
    resize(700, 420);
}
} // namespace Workbench
