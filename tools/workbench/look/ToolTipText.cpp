#include "ToolTipText.h"

#include "host/values/QuotedText.h"

#include <QRegularExpression>
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
    const QString shown = StepHost::inLines(shortened(text));
    return Qt::mightBeRichText(shown) ? Qt::convertFromPlainText(shown) : shown;
}

QString menuText(const QString &text)
{
    return StepHost::inOneLine(shortened(text)).replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString toolBarText(QString text)
{
    static const QRegularExpression mark(QStringLiteral("\\(&\\w\\)|&|…"));
    return text.remove(mark);
}
} // namespace Workbench
