#include "CheckSelection.h"

#include "host/values/QuotedText.h"

#include <QRegularExpression>

#include <algorithm>
#include <vector>

namespace StepHost
{
namespace
{
/// A name that a user gives for checks: the id of one, a family, or a pattern for ids.
class CheckName
{
public:
    explicit CheckName(const QString &name)
        : m_name(name), m_pattern(QRegularExpression::wildcardToRegularExpression(name))
    {
    }

    const QString &text() const
    {
        return m_name;
    }

    bool isOf(const PluginCheck &check) const
    {
        return check.id == m_name || check.id.section(QLatin1Char('.'), 0, 0) == m_name
            || m_pattern.match(check.id).hasMatch();
    }

private:
    QString m_name;
    QRegularExpression m_pattern;
};

using CheckNames = std::vector<CheckName>;

bool isNamed(const PluginCheck &check, const CheckNames &names)
{
    return std::any_of(names.begin(), names.end(),
                       [&check](const CheckName &name) { return name.isOf(check); });
}

// The first of `names` that no check has; empty when there is none.
QString unknownName(const CheckNames &names)
{
    const QVector<PluginCheck> &checks = pluginChecks();
    for (const CheckName &name : names) {
        if (std::none_of(checks.begin(), checks.end(),
                         [&name](const PluginCheck &check) { return name.isOf(check); }))
            return name.text();
    }
    return QString();
}
} // namespace

Result<QVector<PluginCheck>> selectChecks(const QStringList &only, const QStringList &skip, bool hasBaseline)
{
    const CheckNames onlyNames(only.begin(), only.end());
    const CheckNames skipNames(skip.begin(), skip.end());
    const QString unknownOnly = unknownName(onlyNames);
    const QString unknownSkip = unknownName(skipNames);
    if (!unknownOnly.isNull())
        return failure(
            QStringLiteral("--only %1: there is no such check; --list shows them all").arg(unknownOnly));
    if (!unknownSkip.isNull())
        return failure(
            QStringLiteral("--skip %1: there is no such check; --list shows them all").arg(unknownSkip));
    QVector<PluginCheck> selected;
    for (const PluginCheck &check : pluginChecks()) {
        const bool isPossible = hasBaseline || !check.id.startsWith(QLatin1String("baseline."));
        if (isPossible && (only.isEmpty() || isNamed(check, onlyNames)) && !isNamed(check, skipNames))
            selected.append(check);
    }
    if (selected.isEmpty() && !hasBaseline && !only.isEmpty() && skip.isEmpty())
        return failure(
            QStringLiteral("--only %1: that compares with an older release; --baseline FILE names one")
                .arg(only.first()));
    return selected;
}
} // namespace StepHost
