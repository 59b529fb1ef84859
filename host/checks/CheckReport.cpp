#include "CheckReport.h"

#include "host/values/JsonWriter.h"
#include "host/values/QuotedText.h"

#include <QFileInfo>
#include <QXmlStreamWriter>

#include <algorithm>

namespace StepHost
{
namespace
{
CheckVerdict verdictOf(const CheckResult &result)
{
    switch (result.outcome) {
    case CheckOutcome::Passed:
    case CheckOutcome::Warning:
    case CheckOutcome::Skipped:
        return CheckVerdict::Passed;
    case CheckOutcome::Failed:
        return result.id == pluginChecks().first().id ? CheckVerdict::NotLoadable : CheckVerdict::Failed;
    case CheckOutcome::Crashed:
    case CheckOutcome::TimedOut:
        break;
    }
    return CheckVerdict::Crashed;
}

CheckVerdict verdictOf(const PluginReport &report)
{
    CheckVerdict verdict = CheckVerdict::Passed;
    for (const CheckResult &result : report.results)
        verdict = std::max(verdict, verdictOf(result));
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

QString seconds(qint64 milliseconds)
{
    return QString::number(double(milliseconds) / 1000, 'f', 3);
}

// In one line there are no control characters nor halves of surrogate pairs, and XML has no place for these two either.
QString xmlText(const QString &text)
{
    QString result = inOneLine(text);
    for (QChar &c : result) {
        if (c == QChar(0xfffe) || c == QChar(0xffff))
            c = QChar::ReplacementCharacter;
    }
    return result;
}

void writeCase(QXmlStreamWriter &xml, const CheckResult &result)
{
    xml.writeStartElement(QStringLiteral("testcase"));
    xml.writeAttribute(QStringLiteral("classname"), result.id.section(QLatin1Char('.'), 0, 0));
    xml.writeAttribute(QStringLiteral("name"), result.id.section(QLatin1Char('.'), 1));
    xml.writeAttribute(QStringLiteral("time"), seconds(result.milliseconds));
    const QString reason = xmlText(result.reason);
    const auto writeFinding = [&](const QString &element) {
        xml.writeStartElement(element);
        xml.writeAttribute(QStringLiteral("message"), reason);
        if (element != QLatin1String("skipped")) {
            xml.writeAttribute(QStringLiteral("type"), outcomeWord(result.outcome));
            xml.writeCharacters(protects(result));
        }
        xml.writeEndElement();
    };
    switch (result.outcome) {
    case CheckOutcome::Passed:
        break;
    case CheckOutcome::Warning:
        xml.writeTextElement(QStringLiteral("system-out"), reason);
        break;
    case CheckOutcome::Skipped:
        writeFinding(QStringLiteral("skipped"));
        break;
    case CheckOutcome::Failed:
        writeFinding(QStringLiteral("failure"));
        break;
    case CheckOutcome::Crashed:
    case CheckOutcome::TimedOut:
        writeFinding(QStringLiteral("error"));
        break;
    }
    xml.writeEndElement();
}

void writeSuite(QXmlStreamWriter &xml, const PluginReport &report)
{
    qint64 milliseconds = 0;
    for (const CheckResult &result : report.results)
        milliseconds += result.milliseconds;
    xml.writeStartElement(QStringLiteral("testsuite"));
    xml.writeAttribute(QStringLiteral("name"), xmlText(QFileInfo(report.fileName).fileName()));
    xml.writeAttribute(QStringLiteral("tests"), QString::number(report.results.size()));
    xml.writeAttribute(QStringLiteral("failures"), QString::number(count(report, CheckOutcome::Failed)));
    xml.writeAttribute(
        QStringLiteral("errors"),
        QString::number(count(report, CheckOutcome::Crashed) + count(report, CheckOutcome::TimedOut)));
    xml.writeAttribute(QStringLiteral("skipped"), QString::number(count(report, CheckOutcome::Skipped)));
    xml.writeAttribute(QStringLiteral("time"), seconds(milliseconds));
    for (const CheckResult &result : report.results)
        writeCase(xml, result);
    xml.writeEndElement();
}
} // namespace

CheckVerdict verdictOf(const QVector<PluginReport> &reports)
{
    CheckVerdict verdict = CheckVerdict::Passed;
    for (const PluginReport &report : reports)
        verdict = std::max(verdict, verdictOf(report));
    return verdict;
}

QString verdictLine(const QVector<PluginReport> &reports)
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
    return verdictWord(verdictOf(reports)) + QLatin1String(": ") + parts.join(QLatin1String(", "));
}

QString textReport(const QVector<PluginReport> &reports)
{
    QString text;
    for (const PluginReport &report : reports) {
        text += messageLine(report.fileName) + QLatin1Char('\n');
        for (const CheckResult &result : report.results) {
            text += QStringLiteral("  %1 %2").arg(outcomeWord(result.outcome), -9).arg(result.id);
            if (!result.reason.isEmpty())
                text += QLatin1String(": ") + inOneLine(result.reason);
            text += QLatin1Char('\n');
        }
    }
    return text + verdictLine(reports) + QLatin1Char('\n');
}

QByteArray jsonReport(const QVector<PluginReport> &reports)
{
    QByteArray bytes;
    JsonWriter json(bytes, JsonWriter::OnLines, 4);
    json.openObject().key("plugins").openArray();
    for (const PluginReport &report : reports) {
        json.openObject().key("checks").openArray();
        for (const CheckResult &result : report.results) {
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
        json.key("verdict").text(verdictWord(verdictOf(report)));
        json.close();
    }
    json.close();
    json.key("verdict").text(verdictWord(verdictOf(reports)));
    json.close();
    return bytes + '\n';
}

QByteArray junitReport(const QVector<PluginReport> &reports)
{
    QByteArray report;
    QXmlStreamWriter xml(&report);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("testsuites"));
    for (const PluginReport &plugin : reports)
        writeSuite(xml, plugin);
    xml.writeEndElement();
    xml.writeEndDocument();
    return report;
}
} // namespace StepHost
