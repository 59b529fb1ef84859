#pragma once

#include <QColor>
#include <QPalette>

/// Colours with a meaning, to be read on the base colour of \a palette, be it light or dark.
namespace Workbench::Colors
{
inline bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Base).lightness() < 128;
}

inline QColor warning(const QPalette &palette)
{
    return isDark(palette) ? QColor(0xff, 0xb7, 0x4d) : QColor(0xb3, 0x54, 0x00);
}

inline QColor success(const QPalette &palette)
{
    return isDark(palette) ? QColor(0x81, 0xc7, 0x84) : QColor(0x2e, 0x7d, 0x32);
}

inline QColor changed(const QPalette &palette)
{
    return isDark(palette) ? QColor(0x64, 0xb5, 0xf6) : QColor(0x15, 0x5f, 0xa0);
}

inline QColor subdued(const QPalette &palette)
{
    QColor color = palette.color(QPalette::Text);
    color.setAlphaF(0.62);
    return color;
}

/// What is behind a selection in a view that the keys are not for now.
inline QColor resting(const QPalette &palette)
{
    const QColor &base = palette.color(QPalette::Active, QPalette::Base);
    return isDark(palette) ? base.lighter(220) : base.darker(115);
}
} // namespace Workbench::Colors
