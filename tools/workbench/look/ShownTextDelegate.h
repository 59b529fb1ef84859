#pragma once

#include "host/values/QuotedText.h"

#include <QStyledItemDelegate>

namespace Workbench
{
/// Shows the texts of a list to choose from so that none looks like another one. What is chosen is the text as it is.
class ShownTextDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant &value, const QLocale &) const override
    {
        return StepHost::inOneLine(value.toString());
    }
};
} // namespace Workbench
