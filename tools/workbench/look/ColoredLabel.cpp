#include "ColoredLabel.h"

#include <QEvent>

namespace Workbench
{
ColoredLabel::ColoredLabel(Color color, QWidget *parent) : QLabel(parent), m_color(color)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    applyColor();
}

void ColoredLabel::applyColor()
{
    // Of this palette only the one colour counts; the others go on coming from the parent.
    QPalette colored;
    colored.setColor(QPalette::WindowText, m_color(palette()));
    setPalette(colored);
}

void ColoredLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && palette().color(foregroundRole()) != m_color(palette()))
        applyColor();
}
} // namespace Workbench
