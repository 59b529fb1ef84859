#include "RunReport.h"

#include "host/values/JsonValue.h"
#include "host/values/QuotedText.h"
#include "host/values/VarTypes.h"
#include "host/values/VariableName.h"

namespace StepHost
{
namespace
{
const StepOutcome countedOutcomes[] = {StepOutcome::Wrote, StepOutcome::Skipped, StepOutcome::Disabled,
                                       StepOutcome::Failed, StepOutcome::NotRun};

QByteArray padded(const QString &text, int width)
{
    return text.leftJustified(width).toUtf8();
}

QString appendVariableLines(QByteArray &text, const std::vector<ScriptVariable> &variables)
{
    for (const ScriptVariable &variable : variables) {
        text +=
            "  " + padded(varTypeName(variable.type), 6) + "  " + inOneLine(variable.name).toUtf8() + " = ";
        const QString error = appendVariableAsJson(text, variable.value, variable.type);
        if (!error.isEmpty())
            return QStringLiteral("the value of %1 %2").arg(quoted(variable.name), error);
        text += '\n';
    }
    return QString();
}

void appendStepLines(QByteArray &text, const RunReport &report)
{
    const int numberWidth = QString::number(report.script.steps.size()).size();
    const QByteArray indent(2 + numberWidth + 2 + 8 + 2, ' ');
    for (std::size_t i = 0; i < report.script.steps.size(); ++i) {
        const StepResult &result = report.result.steps[i];
        text += "  " + QByteArray::number(qulonglong(i) + 1).rightJustified(numberWidth) + "  "
            + padded(outcomeName(result.outcome), 8) + "  "
            + inOneLine(report.script.steps[i].operation->toString()).toUtf8() + '\n';
        for (const QString &warning : result.warnings)
            text += indent + inOneLine(warning).toUtf8() + '\n';
        if (!result.failure.isEmpty())
            text += indent + inOneLine(result.failure).toUtf8() + '\n';
    }
}

QByteArray countLine(const RunResult &result)
{
    QByteArray line = QByteArray::number(qulonglong(result.steps.size()))
        + (result.steps.size() == 1 ? " step: " : " steps: ");
    QStringList counts;
    for (const StepOutcome outcome : countedOutcomes) {
        const int count = result.count(outcome);
        if (count > 0)
            counts.append(QString::number(count) + QLatin1Char(' ') + outcomeName(outcome));
    }
    if (counts.isEmpty())
        return "no steps\n";
    return line + counts.join(QLatin1String(", ")).toUtf8() + '\n';
}

void appendStep(QByteArray &json, const Operation &operation, const StepResult &result)
{
    json += "{\"type\": ";
    appendTextAsJson(json, operation.typeId());
    json += ", \"summary\": ";
    appendTextAsJson(json, operation.toString());
    json += ", \"outcome\": ";
    appendTextAsJson(json, outcomeName(result.outcome));
    json += ", \"warnings\": [";
    for (int i = 0; i < result.warnings.size(); ++i) {
        if (i > 0)
            json += ", ";
        appendTextAsJson(json, result.warnings.at(i));
    }
    json += ']';
    if (!result.failure.isEmpty()) {
        json += ", \"failure\": ";
        appendTextAsJson(json, result.failure);
    }
    json += '}';
}
} // namespace

std::vector<ScriptVariable> variablesOf(const VariableScope &scope)
{
    std::vector<ScriptVariable> variables;
    const QStringList names = scope.names();
    variables.reserve(names.size());
    for (const QString &name : names) {
        const QString reference = referenceTo(name);
        variables.push_back({name, scope.typeOf(reference), scope.get(reference)});
    }
    return variables;
}

WriteResult reportToJson(const RunReport &report)
{
    WriteResult json;
    json.bytes = "{\n";
    if (report.before) {
        json.bytes += "  \"before\": ";
        json.error = appendVariables(json.bytes, *report.before);
        if (!json)
            return json;
        json.bytes += ",\n";
    }
    json.bytes += "  \"variables\": ";
    json.error = appendVariables(json.bytes, report.variables);
    if (!json)
        return json;
    json.bytes += ",\n  \"steps\": [";
    for (std::size_t i = 0; i < report.script.steps.size(); ++i) {
        json.bytes += i == 0 ? "\n    " : ",\n    ";
        appendStep(json.bytes, *report.script.steps[i].operation, report.result.steps[i]);
    }
    json.bytes += report.script.steps.empty() ? "]\n}\n" : "\n  ]\n}\n";
    return json;
}

WriteResult reportToText(const RunReport &report)
{
    WriteResult text;
    if (report.before) {
        text.bytes += "Variables before\n";
        text.error = appendVariableLines(text.bytes, *report.before);
        if (!text)
            return text;
        text.bytes += '\n';
    }
    text.bytes += "Steps\n";
    appendStepLines(text.bytes, report);
    text.bytes += report.before ? "\nVariables after\n" : "\nVariables\n";
    text.error = appendVariableLines(text.bytes, report.variables);
    text.bytes += '\n' + countLine(report.result);
    return text;
}
} // namespace StepHost
