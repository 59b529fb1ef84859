/// Settings with place markers, and long ones, through every text of a step and through what a host makes of it.
///
/// The input is a type id and the step's settings in the order of its properties. A setting such as "800*%3" is "%3",
/// 800 times.

#include "FuzzInput.h"
#include "StepRun.h"
#include "host/plugins/StepRecord.h"
#include "host/plugins/StepTexts.h"
#include "host/running/RunReport.h"
#include "host/running/WarningCapture.h"
#include "tests/support/StepTable.h"

#include <QJsonDocument>
#include <QMetaProperty>
#include <QRegularExpression>

#include <algorithm>

namespace
{
constexpr int longest = 10000000;
constexpr int longestReported = 20000;

QString repeatedText(FuzzInput &input)
{
    constexpr int longestSetting = 20000;
    const QString text = input.text();
    const int star = text.indexOf('*');
    const int times = text.leftRef(star).toInt();
    const QString part = text.mid(star + 1);
    return star > 0 && times > 0 ? part.repeated(std::min(times, longestSetting / std::max(1, part.size())))
                                 : text;
}

void readSettings(FuzzInput &input, Operation &step)
{
    const QMetaObject *type = step.metaObject();
    for (int i = type->propertyOffset(); i < type->propertyCount(); ++i) {
        const QMetaProperty property = type->property(i);
        if (property.userType() == QMetaType::QString)
            property.write(&step, repeatedText(input));
        else
            property.write(&step,
                           property.userType() == QMetaType::Bool ? input.line() != "0"
                                                                  : QVariant(input.line().toInt()));
    }
}

bool hasDefaultModes(const Operation &step)
{
    const QVector<StepSetting> settings = stepRow(step.typeId()).settings;
    return std::all_of(settings.begin(), settings.end(), [&step](const StepSetting &setting) {
        return setting.defaultValue.userType() == QMetaType::QString
            || step.property(setting.name.toUtf8().constData()) == setting.defaultValue;
    });
}

QString shownSetting(const Operation &step, const QString &name)
{
    const QString text = step.property(name.toUtf8().constData()).toString();
    const bool isVariable = name != "value" && name != "index";
    return isVariable && !text.isEmpty() && !text.startsWith('$') ? '$' + text : text;
}

// What Qt makes of `text`, in which `{name}` stands for a setting, when its parts are put in one after the other. Null when
// that may be longer than the longest text.
QString chained(const QString &text, const Operation &step)
{
    static const QRegularExpression part(
        QString::fromUtf8("^([^:]+)(?=: )|\\{(\\w+)\\}|(?<=mode=)(0)|(asc)|(升序)"));
    QStringList parts;
    QString pattern;
    int end = 0;
    for (auto it = part.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        pattern += text.midRef(end, match.capturedStart() - end) + '%' + QString::number(parts.size() + 1);
        parts << (match.captured(2).isEmpty() ? match.captured() : shownSetting(step, match.captured(2)));
        end = match.capturedEnd();
    }
    QString result = pattern + text.midRef(end);
    for (const QString &next : qAsConst(parts)) {
        if (result.size() + qint64(result.count('%')) * next.size() > longest)
            return QString();
        result = result.arg(next);
    }
    return result;
}

bool deceives(const QString &text)
{
    const QVector<uint> codePoints = text.toUcs4();
    return std::any_of(codePoints.begin(), codePoints.end(), [](uint codePoint) {
        const QChar::Category category = QChar::category(codePoint);
        return codePoint != '\n' && codePoint != '\t'
            && (category == QChar::Other_Control || category == QChar::Other_Format
                || category == QChar::Other_Surrogate || category == QChar::Separator_Line
                || category == QChar::Separator_Paragraph);
    });
}

void requireText(const Operation &step, QString (Operation::*member)() const, const QString &pattern)
{
    const QString text = (step.*member)();
    require(text.size() <= longest, "a text is longer than a step makes it");
    const QString expected = hasDefaultModes(step) ? chained(pattern, step) : QString();
    require(expected.isNull() || text == expected, "a text is not what the chain makes");
    require(StepHost::stepText(step, member) == text, "a host takes another text");
    if (text.size() <= longestReported)
        require(!deceives(StepHost::shownStepText(step, member)), "a window shows what deceives");
}

void requireReport(const StepHost::Script &script)
{
    VariableScope scope;
    scope.declare("a", VarType::List);
    const StepHost::RunResult result = runScript(script, scope);
    require(result.end == StepHost::RunEnd::Completed, "a step threw");
    const std::vector<StepHost::ScriptVariable> variables = StepHost::variablesOf(scope);
    const StepHost::RunReport report{script, result, variables};
    const StepHost::Result<QByteArray> text = reportToText(report);
    const int lines = 6 + int(variables.size()) + result.steps.front().warnings.size();
    require(text && text->count('\n') == lines, "a report does not have a line for each thing it tells");
    require(!deceives(QString::fromUtf8(*text)), "a report shows what deceives");
    const StepHost::Result<QByteArray> json = reportToJson(report);
    require(json && QJsonDocument::fromJson(*json).isObject(), "a report in JSON is none");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    const QByteArray typeId = input.line();
    std::unique_ptr<Operation> step = cloneOf(typeId);
    if (!step)
        step = cloneOf(typeId.isEmpty() ? 0 : typeId.front());
    readSettings(input, *step);

    // Qt warns of texts without a marker for what is put in.
    const StepHost::WarningCapture quiet;
    const StepRow &row = stepRow(step->typeId());
    requireText(*step, &Operation::toString, row.summary);
    requireText(*step, &Operation::description, row.description);
    const QString summary = step->toString();
    const std::unique_ptr<Operation> copy(step->clone(nullptr));
    require(copy->toString() == summary, "a clone has another line");
    const std::unique_ptr<Operation> loaded = cloneOf(step->typeId().toUtf8());
    require(static_cast<bool>(StepHost::loadWholeRecord(*loaded, StepHost::recordOf(*step))),
            "a record does not load");
    require(loaded->toString() == summary && loaded->description() == step->description(),
            "a loaded step has other texts");
    if (summary.size() <= longestReported) {
        StepHost::Script script;
        script.steps.emplace_back();
        script.steps.back().operation = std::move(step);
        requireReport(script);
    }
    return 0;
}
