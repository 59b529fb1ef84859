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

constexpr CheckOutcome worstFirst[] = {CheckOutcome::Crashed, CheckOutcome::TimedOut, CheckOutcome::Failed,
                                       CheckOutcome::Warning, CheckOutcome::Skipped,  CheckOutcome::Passed};

QString whatItIs(const PluginReport &report)
{
    if (report.pluginId.isEmpty())
        return QString();
    return QStringLiteral(": %1 %2").arg(inOneLine(report.pluginId), inOneLine(report.version));
}

QString line(CheckOutcome outcome, const QString &what)
{
    return QStringLiteral("  %1 %2\n").arg(outcomeWord(outcome), -9).arg(what);
}

// Of those that passed only those that were waived, and what several checks tell alike once, unless all are asked for.
QString linesOf(const PluginReport &report, CheckOutcome outcome, bool isVerbose)
{
    struct Line
    {
        QString id;
        QString reason;
        int more = 0;
    };
    QVector<Line> lines;
    for (const CheckResult &result : report.results) {
        const bool isTold = isVerbose || outcome != CheckOutcome::Passed || !result.reason.isEmpty();
        if (result.outcome != outcome || !isTold)
            continue;
        auto *const same = std::find_if(lines.begin(), lines.end(),
                                        [&result](const Line &told) { return told.reason == result.reason; });
        if (isVerbose || same == lines.end())
            lines.append({result.id, result.reason});
        else
            ++same->more;
    }
    QString text;
    for (const Line &told : qAsConst(lines)) {
        const QString more = told.more > 0 ? QStringLiteral(" and %1 more").arg(told.more) : QString();
        const QString reason =
            told.reason.isEmpty() ? QString() : QLatin1String(": ") + inOneLine(told.reason);
        text += line(outcome, told.id + more + reason);
    }
    return text;
}

QString familyLines(const PluginReport &report)
{
    struct Family
    {
        QString name;
        int passed = 0;
        int all = 0;
    };
    QVector<Family> families;
    for (const CheckResult &result : report.results) {
        const QString name = result.id.section(QLatin1Char('.'), 0, 0);
        if (families.isEmpty() || families.last().name != name)
            families.append({name});
        ++families.last().all;
        if (result.outcome == CheckOutcome::Passed)
            ++families.last().passed;
    }
    QString text;
    for (const Family &family : qAsConst(families)) {
        const QString number = family.passed == family.all
            ? QString::number(family.all)
            : QStringLiteral("%1 of %2").arg(family.passed).arg(family.all);
        const QString unit = family.all == 1 ? QStringLiteral("check") : QStringLiteral("checks");
        if (family.passed > 0)
            text += line(CheckOutcome::Passed, QStringLiteral("%1: %2 %3").arg(family.name, number, unit));
    }
    return text;
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
        text += messageLine(report.fileName + whatItIs(report)) + QLatin1Char('\n');
        for (const CheckOutcome outcome : worstFirst) {
            if (outcome != CheckOutcome::Passed || !options.isOnlyFailed)
                text += linesOf(report, outcome, options.isVerbose);
        }
        if (!options.isOnlyFailed && !options.isVerbose)
            text += familyLines(report);
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
    json.key("stepctl").text(options.programVersion);
    json.key("verdict").text(verdictWord(verdictOf(reports, options.isStrict)));
    json.close();
    return bytes + '\n';
}

QString checkList()
{
    QString text;
    for (const PluginCheck &check : pluginChecks())
        text += check.id.leftJustified(34) + QLatin1String("  ") + check.protects + QLatin1Char('\n');
    return text;
}

QByteArray jsonCheckList()
{
    QByteArray bytes;
    JsonWriter json(bytes, JsonWriter::OnLines, 4);
    json.openObject().key("checks").openArray();
    for (const PluginCheck &check : pluginChecks()) {
        json.openObject();
        json.key("family").text(check.id.section(QLatin1Char('.'), 0, 0));
        json.key("id").text(check.id);
        json.key("protects").text(check.protects);
        json.close();
    }
    json.close().close();
    return bytes + '\n';
}
} // namespace StepHost
