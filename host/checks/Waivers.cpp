#include "Waivers.h"

#include "host/values/QuotedText.h"

#include <QRegularExpression>

namespace StepHost
{
namespace
{
bool isFor(const Waiver &waiver, const CheckResult &result)
{
    const bool isFinding = result.outcome == CheckOutcome::Failed || result.outcome == CheckOutcome::Warning;
    return isFinding && result.id == waiver.checkId && result.reason.contains(waiver.part);
}

void apply(CheckResult &result, QVector<Waiver> &waivers)
{
    for (Waiver &waiver : waivers) {
        if (!isFor(waiver, result))
            continue;
        waiver.isUsed = true;
        result.outcome = CheckOutcome::Passed;
        result.reason = QStringLiteral("waived, %1 (%2)").arg(waiver.why, result.reason);
    }
}
} // namespace

Result<QVector<Waiver>> readWaivers(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("\\A([a-z-]+\\.[a-z-]+)(?:\\s+\"([^\"]*)\")?\\s*:\\s*(\\S.*)\\z"));
    QVector<Waiver> waivers;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        const QString line = lines.at(i).trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const QRegularExpressionMatch match = form.match(line);
        if (!match.hasMatch())
            return failure(
                QStringLiteral(
                    "line %1: %2 is not a check, a part of its reason in quotes, a colon and why it is "
                    "waived")
                    .arg(QString::number(i + 1), quoted(line)));
        if (!findPluginCheck(match.captured(1)))
            return failure(QStringLiteral("line %1: there is no check %2")
                               .arg(QString::number(i + 1), quoted(match.captured(1))));
        waivers.append({match.captured(1), match.captured(2), match.captured(3)});
    }
    return waivers;
}

void applyWaivers(QVector<PluginReport> &reports, QVector<Waiver> &waivers)
{
    for (PluginReport &report : reports) {
        for (CheckResult &result : report.results)
            apply(result, waivers);
    }
    for (PluginReport &report : reports) {
        for (CheckResult &result : report.results) {
            for (const Waiver &waiver : qAsConst(waivers)) {
                if (!waiver.isUsed && waiver.checkId == result.id && result.outcome == CheckOutcome::Passed) {
                    result.outcome = CheckOutcome::Warning;
                    result.reason =
                        QStringLiteral("it is waived, %1, but there is nothing to waive").arg(waiver.why);
                }
            }
        }
    }
}
} // namespace StepHost
