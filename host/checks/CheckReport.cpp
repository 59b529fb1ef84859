#include "CheckReport.h"

#include "host/values/JsonWriter.h"
#include "host/values/QuotedText.h"

#include <algorithm>

namespace StepHost
{
namespace
{
CheckVerdict verdictOf(const CheckResult &result, bool isStrict)
{
    switch (result.outcome) {
    case CheckOutcome::Passed:
    case CheckOutcome::Skipped:
        return CheckVerdict::Passed;
    case CheckOutcome::Warning:
        return isStrict ? CheckVerdict::Failed : CheckVerdict::Passed;
    case CheckOutcome::Failed:
        return result.id == pluginChecks().first().id ? CheckVerdict::NotLoadable : CheckVerdict::Failed;
    case CheckOutcome::Crashed:
    case CheckOutcome::TimedOut:
        break;
    }
    return CheckVerdict::Crashed;
}

CheckVerdict verdictOf(const PluginReport &report, bool isStrict)
{
    CheckVerdict verdict = CheckVerdict::Passed;
    for (const CheckResult &result : report.results)
        verdict = std::max(verdict, verdictOf(result, isStrict));
    return verdict;
}

QString verdictWord(CheckVerdict verdict)
{
    switch (verdict) {
    case CheckVerdict::Passed:
        return QStringLiteral("passed");
    case CheckVerdict::Failed:
        return QStringLiteral("failed");
    case CheckVerdict::NotLoadable:
        return QStringLiteral("not loadable");
    case CheckVerdict::Crashed:
        return QStringLiteral("crashed");
    }
    return QString();
}

int count(const PluginReport &report, CheckOutcome outcome)
{
    return int(std::count_if(report.results.begin(), report.results.end(),
                             [outcome](const CheckResult &result) { return result.outcome == outcome; }));
}

QString protects(const CheckResult &result)
{
    const PluginCheck *check = findPluginCheck(result.id);
    return check ? check->protects : QString();
}

} // namespace

CheckVerdict verdictOf(const QVector<PluginReport> &reports, bool isStrict)
{
    CheckVerdict verdict = CheckVerdict::Passed;
    for (const PluginReport &report : reports)
        verdict = std::max(verdict, verdictOf(report, isStrict));
    return verdict;
}

QString verdictLine(const QVector<PluginReport> &reports, bool isStrict)
{
    QStringList parts;
    for (const CheckOutcome outcome : {CheckOutcome::Passed, CheckOutcome::Warning, CheckOutcome::Skipped,
                                       CheckOutcome::Failed, CheckOutcome::Crashed, CheckOutcome::TimedOut}) {
        int number = 0;
        for (const PluginReport &report : reports)
            number += count(report, outcome);
        if (number > 0)
            parts.append(QStringLiteral("%1 %2").arg(number).arg(outcomeWord(outcome)));
    }
    return verdictWord(verdictOf(reports, isStrict)) + QLatin1String(": ") + parts.join(QLatin1String(", "));
}

QString textReport(const QVector<PluginReport> &reports, const CheckReportOptions &options)
{
    QString text;
    for (const PluginReport &report : reports) {
        text += messageLine(report.fileName) + QLatin1Char('\n');
        for (const CheckResult &result : report.results) {
            if (options.isOnlyFailed && result.outcome == CheckOutcome::Passed)
                continue;
            text += QStringLiteral("  %1 %2").arg(outcomeWord(result.outcome), -9).arg(result.id);
            if (!result.reason.isEmpty())
                text += QLatin1String(": ") + inOneLine(result.reason);
            text += QLatin1Char('\n');
        }
    }
    return text + verdictLine(reports, options.isStrict) + QLatin1Char('\n');
}

QByteArray jsonReport(const QVector<PluginReport> &reports, const CheckReportOptions &options)
{
    QByteArray bytes;
    JsonWriter json(bytes, JsonWriter::OnLines, 4);
    json.openObject().key("plugins").openArray();
    for (const PluginReport &report : reports) {
        json.openObject().key("checks").openArray();
        for (const CheckResult &result : report.results) {
            if (options.isOnlyFailed && result.outcome == CheckOutcome::Passed)
                continue;
            json.openObject();
            json.key("id").text(result.id);
            json.key("milliseconds").number(result.milliseconds);
            json.key("outcome").text(outcomeWord(result.outcome));
            json.key("protects").text(protects(result));
            json.key("reason").text(result.reason);
            json.close();
        }
        json.close();
        json.key("file").text(report.fileName);
        json.key("id").text(report.pluginId);
        json.key("verdict").text(verdictWord(verdictOf(report, options.isStrict)));
        json.key("version").text(report.version);
        json.close();
    }
    json.close();
    json.key("seed").number(qint64(options.seed));
    json.key("verdict").text(verdictWord(verdictOf(reports, options.isStrict)));
    json.close();
    return bytes + '\n';
}

} // namespace StepHost
