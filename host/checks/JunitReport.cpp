#include "CheckReport.h"

#include "host/values/QuotedText.h"

#include <QFileInfo>
#include <QHash>
#include <QSysInfo>
#include <QXmlStreamWriter>

#include <algorithm>

namespace StepHost
{
namespace
{
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

void writeFinding(QXmlStreamWriter &xml, const QString &element, const CheckResult &result)
{
    xml.writeStartElement(element);
    xml.writeAttribute(QStringLiteral("message"), xmlText(result.reason));
    if (element != QLatin1String("skipped")) {
        xml.writeAttribute(QStringLiteral("type"), outcomeWord(result.outcome));
        xml.writeCharacters(protects(result));
    }
    xml.writeEndElement();
}

void writeCase(QXmlStreamWriter &xml, const QString &suite, const CheckResult &result, bool isStrict)
{
    xml.writeStartElement(QStringLiteral("testcase"));
    xml.writeAttribute(QStringLiteral("classname"),
                       suite + QLatin1Char('.') + result.id.section(QLatin1Char('.'), 0, 0));
    xml.writeAttribute(QStringLiteral("name"), result.id.section(QLatin1Char('.'), 1));
    xml.writeAttribute(QStringLiteral("time"), seconds(result.milliseconds));
    switch (result.outcome) {
    case CheckOutcome::Passed:
        break;
    case CheckOutcome::Warning:
        if (isStrict)
            writeFinding(xml, QStringLiteral("failure"), result);
        break;
    case CheckOutcome::Skipped:
        writeFinding(xml, QStringLiteral("skipped"), result);
        break;
    case CheckOutcome::Failed:
        writeFinding(xml, QStringLiteral("failure"), result);
        break;
    case CheckOutcome::Crashed:
    case CheckOutcome::TimedOut:
        writeFinding(xml, QStringLiteral("error"), result);
        break;
    }
    xml.writeEndElement();
}

void writeProperty(QXmlStreamWriter &xml, const QString &name, const QString &value)
{
    xml.writeEmptyElement(QStringLiteral("property"));
    xml.writeAttribute(QStringLiteral("name"), name);
    xml.writeAttribute(QStringLiteral("value"), xmlText(value));
}

// What passed with a warning has no place in a test case that all readers know.
QString warningsOf(const PluginReport &report)
{
    QString text;
    for (const CheckResult &result : report.results) {
        if (result.outcome == CheckOutcome::Warning)
            text += QStringLiteral("%1: %2\n").arg(result.id, xmlText(result.reason));
    }
    return text;
}

// The elements and attributes that both the Ant and the Jenkins form of JUnit reports know, in their order.
void writeSuite(QXmlStreamWriter &xml, int number, const QString &name, const PluginReport &report,
                const CheckReportOptions &options)
{
    qint64 milliseconds = 0;
    for (const CheckResult &result : report.results)
        milliseconds += result.milliseconds;
    const int failures =
        count(report, CheckOutcome::Failed) + (options.isStrict ? count(report, CheckOutcome::Warning) : 0);
    xml.writeStartElement(QStringLiteral("testsuite"));
    xml.writeAttribute(QStringLiteral("name"), name);
    xml.writeAttribute(QStringLiteral("id"), QString::number(number));
    xml.writeAttribute(QStringLiteral("package"), xmlText(report.fileName));
    xml.writeAttribute(QStringLiteral("timestamp"),
                       report.started.toUTC().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")));
    xml.writeAttribute(QStringLiteral("hostname"), QSysInfo::machineHostName());
    xml.writeAttribute(QStringLiteral("tests"), QString::number(report.results.size()));
    xml.writeAttribute(QStringLiteral("failures"), QString::number(failures));
    xml.writeAttribute(
        QStringLiteral("errors"),
        QString::number(count(report, CheckOutcome::Crashed) + count(report, CheckOutcome::TimedOut)));
    xml.writeAttribute(QStringLiteral("skipped"), QString::number(count(report, CheckOutcome::Skipped)));
    xml.writeAttribute(QStringLiteral("time"), seconds(milliseconds));
    xml.writeStartElement(QStringLiteral("properties"));
    writeProperty(xml, QStringLiteral("plugin"), report.pluginId);
    writeProperty(xml, QStringLiteral("version"), report.version);
    writeProperty(xml, QStringLiteral("seed"), QString::number(options.seed));
    writeProperty(xml, QStringLiteral("stepctl"), options.programVersion);
    xml.writeEndElement();
    for (const CheckResult &result : report.results)
        writeCase(xml, name, result, options.isStrict);
    xml.writeTextElement(QStringLiteral("system-out"), warningsOf(report));
    xml.writeTextElement(QStringLiteral("system-err"), QString());
    xml.writeEndElement();
}
} // namespace

QByteArray junitReport(const QVector<PluginReport> &reports, const CheckReportOptions &options)
{
    QByteArray report;
    QXmlStreamWriter xml(&report);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("testsuites"));
    QHash<QString, int> known;
    for (int i = 0; i < reports.size(); ++i) {
        // Plug-ins in different folders may have the same file name.
        QString name = xmlText(QFileInfo(reports.at(i).fileName).fileName());
        if (name.trimmed().isEmpty())
            name = QStringLiteral("unnamed");
        const int number = ++known[name];
        if (number > 1)
            name += QStringLiteral("#%1").arg(number);
        writeSuite(xml, i, name, reports.at(i), options);
    }
    xml.writeEndElement();
    xml.writeEndDocument();
    return report;
}
} // namespace StepHost
