#include "ScriptCheck.h"

#include "FuzzInput.h"
#include "host/plugins/StepRecord.h"
#include "host/running/RunReport.h"
#include "host/running/ScriptRunner.h"
#include "host/scripts/BinaryScript.h"
#include "tests/support/ReferenceSteps.h"
#include "tests/support/TestPaths.h"

#include <algorithm>
#include <iterator>

namespace
{
constexpr int largeSize = 2000;

// How many elements the value holds, those of inner lists included; a number above the limit when it is more.
int elementCount(const QVariant &value, int limit)
{
    if (value.userType() != QMetaType::QVariantList)
        return 1;
    int count = 1;
    const QVariantList list = value.toList();
    for (const QVariant &element : list) {
        if (count > limit)
            break;
        count += elementCount(element, limit - count);
    }
    return count;
}

bool isLarge(const VariableScope &scope)
{
    int count = 0;
    const QStringList names = scope.names();
    for (const QString &name : names)
        count += elementCount(scope.get('$' + name), largeSize);
    return count > largeSize;
}

bool isSameVariable(const StepHost::ScriptVariable &left, const StepHost::ScriptVariable &right)
{
    return left.name == right.name && left.type == right.type && isSameValue(left.value, right.value);
}

bool isSameStep(const StepHost::ScriptStep &left, const StepHost::ScriptStep &right)
{
    return left.enabled == right.enabled && left.operation->typeId() == right.operation->typeId()
        && StepHost::recordOf(*left.operation) == StepHost::recordOf(*right.operation);
}

const StepHost::StepCatalogue &listSteps()
{
    static StepHost::StepCatalogue catalogue;
    if (catalogue.typeIds().isEmpty()) {
        const auto added = catalogue.addPlugin(TestPaths::listPlugin());
        require(static_cast<bool>(added), added ? "" : qPrintable(added.error().reason));
    }
    return catalogue;
}

void requireSameScript(const StepHost::Script &left, const StepHost::Script &right)
{
    require(std::equal(left.variables.begin(), left.variables.end(), right.variables.begin(),
                       right.variables.end(), isSameVariable),
            "a script has other variables after writing and reading");
    require(
        std::equal(left.steps.begin(), left.steps.end(), right.steps.begin(), right.steps.end(), isSameStep),
        "a script has other steps after writing and reading");
}

// Of each input one of the tails is tried, so that it is read but once more.
void requireEndsThere(const QByteArray &bytes, const StepHost::Script &script, const ScriptForm &form)
{
    static const QByteArray tails[] = {QByteArray(1, '\0'), "x",    "}",    "{}", ",", "//",
                                       "\xef\xbb\xbf",      "\x1a", "\xa0", " \n"};
    const QByteArray &tail = tails[qChecksum(bytes.constData(), uint(bytes.size())) % std::size(tails)];
    const bool isBlank =
        std::all_of(tail.begin(), tail.end(), [&](char c) { return form.blanks.contains(c); });
    const StepHost::Result<StepHost::Script> longer = form.read(bytes + tail, listSteps());
    require(static_cast<bool>(longer) == isBlank, "something may stand behind a script, or blanks may not");
    if (isBlank)
        requireSameScript(script, *longer);
}

void requireRuns(const StepHost::Script &script)
{
    VariableScope scope;
    declareVariables(script, scope);
    StepHost::RunObserver observer;
    observer.shouldStop = [&scope] { return isLarge(scope); };
    const StepHost::RunResult result = runScript(script, scope, observer);
    require(result.end != StepHost::RunEnd::StepFailed, "a step threw");
    require(result.steps.size() == script.steps.size(), "a run does not tell what became of each step");

    const std::vector<StepHost::ScriptVariable> variables = StepHost::variablesOf(scope);
    const StepHost::RunReport report{script, result, variables};
    const StepHost::Result<QByteArray> text = reportToText(report);
    const StepHost::Result<QByteArray> json = reportToJson(report);
    require(text || !text.error().isEmpty(), "a report in text is neither there nor refused");
    require(json || !json.error().isEmpty(), "a report in JSON is neither there nor refused");
}
} // namespace

void requireKeepsAndRuns(const QByteArray &bytes, const ScriptForm &form)
{
    const StepHost::Result<StepHost::Script> first = form.read(bytes, listSteps());
    if (!first) {
        require(!first.error().isEmpty(), "a script is refused without a reason");
        return;
    }

    requireEndsThere(bytes, *first, form);
    const StepHost::Result<QByteArray> written = form.write(*first);
    // The typed form of a value is deeper than the plain one, so a script may be too deep to be written.
    if (written) {
        const StepHost::Result<StepHost::Script> again = form.read(*written, listSteps());
        require(static_cast<bool>(again), "a written script does not read");
        requireSameScript(*first, *again);
    }
    requireRuns(*first);
}
