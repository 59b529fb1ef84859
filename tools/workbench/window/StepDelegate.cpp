#include "StepDelegate.h"

#include "tools/workbench/document/ScriptModel.h"
#include "tools/workbench/look/Colors.h"
#include "tools/workbench/look/FramedCheckBox.h"

#include <QApplication>
#include <QIcon>
#include <QMouseEvent>
#include <QPainter>

namespace Workbench
{
namespace
{
constexpr int padding = 6;
constexpr int iconSize = 28;
constexpr int markSize = 11;

/// Where the parts of a row are drawn.
struct RowLayout
{
    QRect checkBox;
    QRect mark;
    QRect number;
    QRect icon;
    QRect outcome;
    QRect summary;
    QRect warnings;

    RowLayout(const QStyleOptionViewItem &option, int outcomeWidth)
    {
        const QRect row = option.rect.adjusted(padding, padding / 2, -padding, -padding / 2);
        const int lineHeight = qMax(iconSize, option.fontMetrics.height());
        const QStyle &style = option.widget ? *option.widget->style() : *QApplication::style();
        const int boxWidth = style.pixelMetric(QStyle::PM_IndicatorWidth, &option, option.widget);
        const int boxHeight = style.pixelMetric(QStyle::PM_IndicatorHeight, &option, option.widget);
        const QRect line(row.left(), row.top(), row.width(), lineHeight);

        checkBox = QRect(line.left(), line.top() + (lineHeight - boxHeight) / 2, boxWidth, boxHeight);
        const int numberWidth = option.fontMetrics.horizontalAdvance(QStringLiteral("0000"));
        mark =
            QRect(checkBox.right() + padding, line.top() + (lineHeight - markSize) / 2, markSize, markSize);
        number = QRect(mark.right() + 1, line.top(), numberWidth, lineHeight);
        icon = QRect(number.right() + padding, line.top() + (lineHeight - iconSize) / 2, iconSize, iconSize);
        outcome = QRect(line.right() - outcomeWidth, line.top(), outcomeWidth, lineHeight);
        const int summaryLeft = icon.right() + padding + 2;
        summary = QRect(summaryLeft, line.top(), outcome.left() - padding - summaryLeft, lineHeight);
        warnings =
            QRect(summaryLeft, line.bottom() + 1, line.right() - summaryLeft, row.bottom() - line.bottom());
    }
};

StepHost::StepOutcome outcomeOf(const QModelIndex &index)
{
    return StepHost::StepOutcome(index.data(ScriptModel::OutcomeRole).toInt());
}

/// The sign in front of an outcome, so that it is not told by its colour alone.
QString outcomeSign(StepHost::StepOutcome outcome)
{
    switch (outcome) {
    case StepHost::StepOutcome::Wrote:
        return QStringLiteral("✓ ");
    case StepHost::StepOutcome::Skipped:
        return QStringLiteral("⚠ ");
    case StepHost::StepOutcome::Failed:
        return QStringLiteral("✗ ");
    default:
        return QString();
    }
}

QString outcomeText(const QModelIndex &index)
{
    if (index.data(ScriptModel::NextRole).toBool())
        return StepDelegate::tr("next");
    if (index.data(ScriptModel::RunningRole).toBool())
        return StepDelegate::tr("running…");
    if (!index.data(ScriptModel::ProblemsRole).toStringList().isEmpty()
        && outcomeOf(index) == StepHost::StepOutcome::NotRun)
        return QStringLiteral("○");
    const QString text = outcomeSign(outcomeOf(index)) + index.data(ScriptModel::OutcomeTextRole).toString();
    return index.data(ScriptModel::OutdatedRole).toBool() ? QStringLiteral("(%1)").arg(text) : text;
}

QColor outcomeColor(const QModelIndex &index, const QPalette &palette)
{
    if (index.data(ScriptModel::NextRole).toBool())
        return Colors::changed(palette);
    if (index.data(ScriptModel::OutdatedRole).toBool())
        return Colors::subdued(palette);
    switch (outcomeOf(index)) {
    case StepHost::StepOutcome::Wrote:
        return Colors::success(palette);
    case StepHost::StepOutcome::Skipped:
    case StepHost::StepOutcome::Failed:
        return Colors::warning(palette);
    default:
        return Colors::subdued(palette);
    }
}

// A dot for a breakpoint, an arrow for the step that a run waits before.
void drawMarks(QPainter *painter, const QRect &rect, const QModelIndex &index, const QPalette &palette)
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(palette.color(QPalette::Base), 1));
    if (index.data(ScriptModel::BreakpointRole).toBool()) {
        painter->setBrush(Colors::warning(palette));
        painter->drawEllipse(rect);
    }
    if (index.data(ScriptModel::NextRole).toBool()) {
        const QRectF arrow = QRectF(rect).adjusted(0, 1, 1, -1);
        painter->setBrush(Colors::changed(palette));
        painter->drawPolygon(
            QPolygonF({arrow.topLeft(), QPointF(arrow.right(), arrow.center().y()), arrow.bottomLeft()}));
    }
    painter->restore();
}

QString elided(const QStyleOptionViewItem &option, const QString &text, int width)
{
    // A longer text is not seen anyway, and measuring it would take its time.
    return option.fontMetrics.elidedText(text.left(1000), Qt::ElideRight, width);
}
} // namespace

StepDelegate::StepDelegate(QObject *parent) : QStyledItemDelegate(parent) { }

void StepDelegate::paint(QPainter *painter, const QStyleOptionViewItem &viewOption,
                         const QModelIndex &index) const
{
    QStyleOptionViewItem option = viewOption;
    initStyleOption(&option, index);
    // For views, Qt has made line separators of the line feeds.
    const QString summary = option.text.replace(QChar(QChar::LineSeparator), QChar(0x21b5));
    const QIcon icon = option.icon;
    const QString outcome = outcomeText(index);
    const RowLayout layout(option, option.fontMetrics.horizontalAdvance(outcome));
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const bool isEnabled = option.checkState == Qt::Checked;
    const QPalette &palette = option.palette;
    const QColor selectedText =
        palette.color(option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive,
                      QPalette::HighlightedText);

    QStyle &style = option.widget ? *option.widget->style() : *QApplication::style();
    painter->save();
    style.drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, option.widget);

    QStyleOptionViewItem box = option;
    box.rect = layout.checkBox;
    box.state &= ~QStyle::State_HasFocus;
    box.state |= isEnabled ? QStyle::State_On : QStyle::State_Off;
    style.drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &box, painter, option.widget);
    drawCheckBoxFrame(*painter, layout.checkBox, palette);

    drawMarks(painter, layout.mark, index, palette);
    painter->setFont(option.font);
    painter->setPen(isSelected ? selectedText : Colors::subdued(palette));
    painter->drawText(layout.number, Qt::AlignRight | Qt::AlignVCenter,
                      index.data(ScriptModel::NumberRole).toString());
    icon.paint(painter, layout.icon, Qt::AlignCenter, isEnabled ? QIcon::Normal : QIcon::Disabled);

    const QPalette::ColorGroup group = isEnabled ? QPalette::Active : QPalette::Disabled;
    painter->setPen(isSelected ? selectedText : palette.color(group, QPalette::Text));
    painter->drawText(layout.summary, Qt::AlignLeft | Qt::AlignVCenter,
                      elided(option, summary, layout.summary.width()));
    painter->setPen(isSelected ? selectedText : outcomeColor(index, palette));
    painter->drawText(layout.outcome, Qt::AlignRight | Qt::AlignVCenter, outcome);

    const bool isOutdated = index.data(ScriptModel::OutdatedRole).toBool();
    const QColor warningColor = isOutdated ? Colors::subdued(palette) : Colors::warning(palette);
    QRect line = layout.warnings;
    line.setHeight(option.fontMetrics.lineSpacing());
    const auto drawLines = [&](const QStringList &texts, const QColor &color) {
        painter->setPen(isSelected ? selectedText : color);
        for (const QString &text : texts) {
            painter->drawText(line, Qt::AlignLeft | Qt::AlignVCenter, elided(option, text, line.width()));
            line.translate(0, line.height());
        }
    };
    drawLines(index.data(ScriptModel::WarningsRole).toStringList(), warningColor);
    drawLines(index.data(ScriptModel::ProblemsRole).toStringList(), Colors::subdued(palette));
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        painter->setPen(QPen(isSelected ? selectedText : palette.color(QPalette::Text), 1, Qt::DashLine));
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(option.rect.adjusted(1, 1, -2, -2));
    }
    painter->restore();
}

QSize StepDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const int lines = index.data(ScriptModel::LineCountRole).toInt();
    const int lineHeight = qMax(iconSize, option.fontMetrics.height());
    return QSize(200, lineHeight + lines * option.fontMetrics.lineSpacing() + padding);
}

bool StepDelegate::editorEvent(QEvent *event, QAbstractItemModel *model,
                               const QStyleOptionViewItem &viewOption, const QModelIndex &index)
{
    if (event->type() == QEvent::MouseButtonRelease) {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        QStyleOptionViewItem option = viewOption;
        initStyleOption(&option, index);
        const RowLayout layout(option, 0);
        const QRect box = layout.checkBox.adjusted(-padding, -padding, padding / 2, padding);
        const QRect mark = layout.mark.united(layout.number);
        if (mouse->button() != Qt::LeftButton)
            return false;
        if (mark.contains(mouse->pos()))
            return model->setData(index, !index.data(ScriptModel::BreakpointRole).toBool(),
                                  ScriptModel::BreakpointRole);
        if (!box.contains(mouse->pos()))
            return false;
        const bool isChecked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        return model->setData(index, int(isChecked ? Qt::Unchecked : Qt::Checked), Qt::CheckStateRole);
    }
    return false;
}
} // namespace Workbench
