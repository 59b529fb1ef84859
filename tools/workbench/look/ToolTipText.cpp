#include "ToolTipText.h"

#include <QTextDocument>

namespace Workbench
{
namespace
{
constexpr int maxLength = 1000;
}

QString shortened(const QString &text)
{
    return text.size() > maxLength ? text.left(maxLength) + QChar(0x2026) : text;
}

QString toolTipText(const QString &text)
{
    const QString shown = shortened(text);
    return Qt::mightBeRichText(shown) ? Qt::convertFromPlainText(shown) : shown;
}
} // namespace Workbench
