#pragma once

#include <QLabel>

namespace Workbench
{
/// A plain text in one of Colors, which follows the palette, be it changed to a dark one.
class ColoredLabel : public QLabel
{
    Q_OBJECT

public:
    using Color = QColor (*)(const QPalette &palette);

    explicit ColoredLabel(Color color, QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    void applyColor();

    Color m_color;
};
} // namespace Workbench
