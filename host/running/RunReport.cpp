#include "RunReport.h"

#include "host/plugins/StepTexts.h"
#include "host/scripts/ScriptJson.h"
#include "host/values/JsonValue.h"
#include "host/values/JsonWriter.h"
#include "host/values/QuotedText.h"
#include "host/values/VarTypes.h"
#include "host/values/VariableName.h"

namespace StepHost
{
namespace
{
const StepOutcome countedOutcomes[] = {StepOutcome::Wrote, StepOutcome::Skipped, StepOutcome::Disabled,
                                       StepOutcome::Failed, StepOutcome::NotRun};

TextColour colourOf(StepOutcome outcome)
{
    switch (outcome) {
    case StepOutcome::Wrote:
        return TextColour::Good;
    case StepOutcome::Failed:
        return TextColour::Bad;
    default:
        return TextColour::Caution;
    }
}

QByteArray padded(const QString &text, int width)
{
    return text.leftJustified(width).toUtf8();
}

// What stands behind `json`, the value of `variable`, when not all of it is shown.
QString remarkOn(const ScriptVariable &variable, const QString &json)
{
    const bool isList = variable.value.userType() == QMetaType::QVariantList;
    const int count = isList ? variable.value.toList().size() : json.size();
    const QString noun = !isList          ? QStringLiteral("characters")
        : variable.type == VarType::Table ? QStringLiteral("rows")
                                          : QStringLiteral("elements");
    return QStringLiteral(" ... (%1 %2)").arg(count).arg(noun);
}

Result<void> appendVariableLines(QByteArray &text, const std::vector<ScriptVariable> &variables,
                                 const TextLook &look)
{
    for (const ScriptVariable &variable : variables) {
        const QString lead = QLatin1String("  ") + varTypeName(variable.type).leftJustified(6)
            + QLatin1String("  ") + inOneLine(variable.name) + QLatin1String(" = ");
        QByteArray value;
        JsonWriter json(value, JsonWriter::InLine);
        const Result<void> written = writeVariableValue(json, variable.value, variable.type);
        if (!written)
            return failure(QStringLiteral("the value of %1 %2").arg(quoted(variable.name), written.error()));
        QString shown = inOneLine(QString::fromUtf8(value));
        if (look.columns > 0)
            shown = cutToColumns(shown, look.columns - columnsOf(lead), remarkOn(variable, shown));
        text += lead.toUtf8() + shown.toUtf8() + '\n';
    }
    return {};
}

void appendStepLines(QByteArray &text, const RunReport &report)
{
    const int numberWidth = QString::number(report.script.steps.size()).size();
    const QByteArray indent(2 + numberWidth + 2 + 8 + 2, ' ');
    for (std::size_t i = 0; i < report.script.steps.size(); ++i) {
        const StepResult &result = report.result.steps[i];
        text += "  " + QByteArray::number(qulonglong(i) + 1).rightJustified(numberWidth) + "  "
            + coloured(padded(outcomeName(result.outcome), 8), colourOf(result.outcome), report.look) + "  "
            + inOneLine(takenText(report.script.steps[i].operation->toString())).toUtf8() + '\n';
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

void writeStep(JsonWriter &json, const Operation &operation, const StepResult &result)
{
    json.openObject(JsonWriter::InLine);
    writeText(json.key("type"), operation.typeId());
    writeText(json.key("summary"), takenText(operation.toString()));
    json.key("outcome").text(outcomeName(result.outcome));
    json.key("warnings").openArray();
    for (const QString &warning : result.warnings)
        writeText(json, warning);
    json.close();
    if (!result.failure.isEmpty())
        writeText(json.key("failure"), result.failure);
    json.close();
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

Result<QByteArray> reportToJson(const RunReport &report)
{
    QByteArray bytes;
    JsonWriter json(bytes);
    json.openObject();
    Result<void> written;
    if (report.before)
        written = writeVariables(json.key("before"), *report.before);
    if (written)
        written = writeVariables(json.key("variables"), report.variables);
    if (!written)
        return failure(written.error());
    json.key("steps").openArray();
    for (std::size_t i = 0; i < report.script.steps.size(); ++i)
        writeStep(json, *report.script.steps[i].operation, report.result.steps[i]);
    json.close().close();
    return bytes + '\n';
}

Result<QByteArray> reportToText(const RunReport &report)
{
    QByteArray text;
    Result<void> written;
    if (report.before) {
        text += "Variables before\n";
        written = appendVariableLines(text, *report.before, report.look);
        text += '\n';
    }
    text += "Steps\n";
    appendStepLines(text, report);
    text += report.before ? "\nVariables after\n" : "\nVariables\n";
    if (written)
        written = appendVariableLines(text, report.variables, report.look);
    if (!written)
        return failure(written.error());
    return text + '\n' + countLine(report.result);
}
} // namespace StepHost
