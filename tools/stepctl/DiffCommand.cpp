#include "DiffCommand.h"

#include "PluginWork.h"
#include "console/CommandLine.h"
#include "console/Console.h"

#include "host/scripts/DifferenceReport.h"
#include "host/scripts/ScriptFile.h"

#include <memory>

using namespace StepHost;

namespace
{
struct DiffArguments
{
    QString before;
    QString after;
    QString format = QStringLiteral("text");
    bool full = false;
    PluginOption plugins;
};

int diff(const DiffArguments &arguments, const StepCatalogue &catalogue, FaultWatch &watch,
         QByteArray &output)
{
    watch.setWork(QStringLiteral("while the scripts were read"));
    const Result<Script> before = readScriptFile(arguments.before, catalogue);
    if (!before)
        return refuse(before.error());
    const Result<Script> after = readScriptFile(arguments.after, catalogue);
    if (!after)
        return refuse(after.error());
    watch.setWork(QStringLiteral("while the scripts were compared"));
    const Result<ScriptDifference> difference = differenceOf(*before, *after);
    if (!difference)
        return refuse(QStringLiteral("the scripts cannot be compared: ") + difference.error());
    const DifferenceReport report{*before, *after, *difference};
    output = arguments.format == QLatin1String("json")
        ? differenceToJson(report)
        : differenceToText(report, resultLook(QStringLiteral("-"), arguments.full));
    return difference->variables.empty() && difference->steps.empty() ? ExitSuccess : ExitFinding;
}

int readAndDiff(const DiffArguments &arguments)
{
    const QLatin1String standardInput("-");
    if (arguments.before == standardInput && arguments.after == standardInput)
        return refuse(QStringLiteral("diff: standard input can be read only once"));
    const auto make = [&](const StepCatalogue &catalogue, FaultWatch &watch, QByteArray &output) {
        return diff(arguments, catalogue, watch, output);
    };
    return doPluginWork({arguments.plugins, make});
}
} // namespace

void addDiffCommand(CommandLine &commandLine)
{
    Command command = commandLine.addCommand("diff", "Compare two scripts, step by step");
    const auto arguments = std::make_shared<DiffArguments>();

    command.addArgument(
        {"before", "A", "The first script, in JSON or in the binary form. - reads standard input"},
        arguments->before);
    command.addArgument(
        {"after", "B", "The second script, in the same form or the other. - reads standard input"},
        arguments->after);
    command.addChoice({"--format", "FORMAT", "The form of the result: text (the default) or json"},
                      {"text", "json"}, arguments->format);
    command.addFlag("--full", "Show values whole on a terminal, where they are cut to its width otherwise",
                    arguments->full);
    arguments->plugins.addTo(command);
    command.setFooter(
        "Shown is what B has and A has not, and the other way round: variables and steps that were\n"
        "added, removed, moved or changed, with their places in A and in B, and each setting as it was\n"
        "and as it is. What is only written differently is no difference.\n\n"
        "Exit status: 0 the scripts are the same, 1 they differ, 2 bad usage, a bad script or a refused\n"
        "plug-in.\n\n"
        "Example:\n"
        "  stepctl diff clean.json clean.qms");
    command.setAction([arguments] { return readAndDiff(*arguments); });
}
