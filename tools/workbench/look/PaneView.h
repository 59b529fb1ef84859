#pragma once

#include "Colors.h"

#include <QStyleOptionViewItem>

namespace Workbench
{
/// An item view of a pane, such as `PaneView<QListView>`, whose selection has its full colour only while the view has the
/// keyboard: among several panes that shows which one the keys are for.
template<typename View>
class PaneView : public View
{
public:
    using View::View;

    /// Gives way to other panes down to a heading and a line.
    QSize minimumSizeHint() const override
    {
        constexpr int lines = 3;
        const QSize size = View::minimumSizeHint();
        return {size.width(), qMin(size.height(), lines * this->fontMetrics().lineSpacing())};
    }

protected:
    QStyleOptionViewItem viewOptions() const override
    {
        QStyleOptionViewItem option = View::viewOptions();
        // Qt takes a view without the keyboard for inactive, but its palettes have the same colours for both.
        const QPalette &palette = this->palette();
        option.palette.setColor(QPalette::Inactive, QPalette::Highlight, Colors::resting(palette));
        option.palette.setColor(QPalette::Inactive, QPalette::HighlightedText,
                                palette.color(QPalette::Active, QPalette::Text));
        return option;
    }
};
} // namespace Workbench
