#pragma once

#include <QCheckBox>

namespace Workbench
{
/// Draws a frame around the check box in \a box where the style's own cannot be seen, which is on a dark \a palette.
void drawCheckBoxFrame(QPainter &painter, const QRect &box, const QPalette &palette);

/// A check box with such a frame.
class FramedCheckBox : public QCheckBox
{
    Q_OBJECT

public:
    using QCheckBox::QCheckBox;

protected:
    void paintEvent(QPaintEvent *event) override;
};
} // namespace Workbench
