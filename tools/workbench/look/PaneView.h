#pragma once

#include "Colors.h"

#include <QStyleOptionViewItem>

namespace Workbench
{
/// An item view, such as `PaneView<QListView>`, whose selection has its full colour only while the view has the
/// keyboard: among several panes that shows which one the keys are for.
template<typename View>
class PaneView : public View
{
public:
    using View::View;

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
