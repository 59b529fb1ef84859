#include "TextFunctions.h"

#include <QDebug>
#include <QVariant>

void warnSkipped(const char *lead, const QString &text, const char *trail)
{
    // The qWarning() macro would add file, line and function in debug builds.
    QMessageLogger().warning() << lead << text << trail;
}

QString displayName(const QString &name)
{
    const QLatin1Char mark('$');
    return name.isEmpty() || name.startsWith(mark) ? name : mark + name;
}

std::optional<QString> resolveText(const QString &text, const VariableScope &scope)
{
    if (text.size() < 2 || !text.startsWith(QLatin1Char('$')))
        return text;
    const QVariant value = scope.get(text);
    if (!value.canConvert<QString>())
        return std::nullopt;
    return value.toString();
}
