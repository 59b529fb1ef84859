#include "FramedCheckBox.h"

#include "Colors.h"

#include <QPainter>
#include <QStyleOptionButton>

namespace Workbench
{
void drawCheckBoxFrame(QPainter &painter, const QRect &box, const QPalette &palette)
{
    if (!Colors::isDark(palette))
        return;
    painter.save();
    painter.setPen(Colors::subdued(palette));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(box.adjusted(0, 0, -1, -1));
    painter.restore();
}

void FramedCheckBox::paintEvent(QPaintEvent *event)
{
    QCheckBox::paintEvent(event);
    QStyleOptionButton option;
    initStyleOption(&option);
    QPainter painter(this);
    drawCheckBoxFrame(painter, style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, this),
                      palette());
}
} // namespace Workbench
