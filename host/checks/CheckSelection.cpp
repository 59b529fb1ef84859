#include "CheckSelection.h"

#include "host/values/QuotedText.h"

#include <QRegularExpression>

#include <algorithm>

namespace StepHost
{
namespace
{
bool isNamed(const PluginCheck &check, const QString &name)
{
    if (check.id == name || check.id.section(QLatin1Char('.'), 0, 0) == name)
        return true;
    return QRegularExpression(QRegularExpression::wildcardToRegularExpression(name))
        .match(check.id)
        .hasMatch();
}

bool isNamed(const PluginCheck &check, const QStringList &names)
{
    return std::any_of(names.begin(), names.end(),
                       [&check](const QString &name) { return isNamed(check, name); });
}

// The first of `names` that no check has; empty when there is none.
QString unknownName(const QStringList &names)
{
    const QVector<PluginCheck> &checks = pluginChecks();
    for (const QString &name : names) {
        if (std::none_of(checks.begin(), checks.end(),
                         [&name](const PluginCheck &check) { return isNamed(check, name); }))
            return name;
    }
    return QString();
}
} // namespace

Result<QVector<PluginCheck>> selectChecks(const QStringList &only, const QStringList &skip, bool hasBaseline)
{
    const QString unknownOnly = unknownName(only);
    const QString unknownSkip = unknownName(skip);
    if (!unknownOnly.isNull())
        return failure(
            QStringLiteral("--only %1: there is no such check; --list shows them all").arg(unknownOnly));
    if (!unknownSkip.isNull())
        return failure(
            QStringLiteral("--skip %1: there is no such check; --list shows them all").arg(unknownSkip));
    QVector<PluginCheck> selected;
    for (const PluginCheck &check : pluginChecks()) {
        const bool isPossible = hasBaseline || !check.id.startsWith(QLatin1String("baseline."));
        if (isPossible && (only.isEmpty() || isNamed(check, only)) && !isNamed(check, skip))
            selected.append(check);
    }
    if (selected.isEmpty() && !hasBaseline && !only.isEmpty() && skip.isEmpty())
        return failure(
            QStringLiteral("--only %1: that compares with an older release; --baseline FILE names one")
                .arg(only.first()));
    return selected;
}
} // namespace StepHost
