#include "ProblemReport.h"

#include "host/values/JsonValue.h"
#include "host/values/JsonWriter.h"
#include "host/values/QuotedText.h"
#include "host/values/Suggestion.h"
#include "host/values/VarTypes.h"

#include <map>

namespace StepHost
{
namespace
{
/// Finds the variable that is meant by a name that there is not.
class MeantVariables
{
public:
    explicit MeantVariables(const Script &script)
    {
        for (const ScriptVariable &variable : script.variables)
            m_names.append(variable.name);
    }

    QString meantBy(const QString &missing)
    {
        constexpr std::size_t most =
            100; // Of more no reader makes use, and each is compared with all variables.
        const auto known = m_meant.find(missing);
        if (known != m_meant.end())
            return known->second;
        if (missing.isEmpty() || m_meant.size() >= most)
            return QString();
        return m_meant[missing] = nearestOf(missing, m_names);
    }

private:
    QStringList m_names;
    std::map<QString, QString> m_meant; // By order: names can be chosen to have one hash value.
};

QString typeOf(const ProblemReport &report, const ScriptProblem &problem)
{
    return report.script.steps[std::size_t(problem.row)].operation->typeId();
}

QString counted(int count, const QString &noun)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(noun, count == 1 ? QString() : QStringLiteral("s"));
}
} // namespace

QByteArray problemsToText(const ProblemReport &report, const TextLook &look)
{
    MeantVariables variables(report.script);
    QByteArray text;
    for (const ScriptProblem &problem : report.problems) {
        const QString place =
            QStringLiteral("step %1 (%2):").arg(problem.row + 1).arg(inOneLine(typeOf(report, problem)));
        text += inOneLine(report.file).toUtf8() + ": " + coloured(place.toUtf8(), TextColour::Caution, look)
            + ' ' + inOneLine(problem.problem.text).toUtf8();
        const QString meant = variables.meantBy(problem.problem.missing);
        if (!meant.isEmpty())
            text += " Did you mean " + quoted(meant).toUtf8() + '?';
        text += '\n';
    }
    const QString steps = counted(int(report.script.steps.size()), QStringLiteral("step"));
    const QString problems = report.problems.isEmpty()
        ? QStringLiteral("no problems")
        : counted(report.problems.size(), QStringLiteral("problem"));
    return text + (steps + QLatin1String(": ") + problems).toUtf8() + '\n';
}

QByteArray problemsToJson(const ProblemReport &report)
{
    MeantVariables variables(report.script);
    QByteArray bytes;
    JsonWriter json(bytes);
    json.openObject();
    writeText(json.key("file"), report.file);
    json.key("steps").number(qlonglong(report.script.steps.size()));
    json.key("problems").openArray();
    for (const ScriptProblem &problem : report.problems) {
        json.openObject(JsonWriter::InLine).key("step").number(problem.row + 1);
        writeText(json.key("type"), typeOf(report, problem));
        writeText(json.key("property"), problem.problem.property);
        writeText(json.key("text"), problem.problem.text);
        if (!problem.problem.missing.isEmpty()) {
            writeText(json.key("missing"), problem.problem.missing);
            json.key("missingType").text(varTypeName(problem.problem.missingType));
        }
        const QString meant = variables.meantBy(problem.problem.missing);
        if (!meant.isEmpty())
            writeText(json.key("suggestion"), meant);
        json.close();
    }
    json.close().close();
    return bytes + '\n';
}
} // namespace StepHost
