#include "LintCommand.h"

#include "PluginWork.h"
#include "console/CommandLine.h"
#include "console/Console.h"

#include "host/scripts/ProblemReport.h"
#include "host/scripts/ScriptFile.h"

#include <memory>

using namespace StepHost;

namespace
{
struct LintArguments
{
    QString script;
    QString format = QStringLiteral("text");
    PluginOption plugins;
};

int lint(const LintArguments &arguments, const StepCatalogue &catalogue, FaultWatch &watch,
         QByteArray &output)
{
    watch.setWork(QStringLiteral("while the script was read"));
    const Result<Script> script = readScriptFile(arguments.script, catalogue);
    if (!script)
        return refuse(script.error());
    watch.setWork(QStringLiteral("while the problems were looked for"));
    const ProblemReport report{arguments.script, *script, StepProblems::ofScript(*script)};
    output = arguments.format == QLatin1String("json")
        ? problemsToJson(report)
        : problemsToText(report, resultLook(QStringLiteral("-"), true));
    return report.problems.isEmpty() ? ExitSuccess : ExitFinding;
}
} // namespace

void addLintCommand(CommandLine &commandLine)
{
    Command command =
        commandLine.addCommand("lint", "Tell what the steps of a script lack, without running it");
    const auto arguments = std::make_shared<LintArguments>();

    command.addArgument(
        {"script", "SCRIPT", "The script, in JSON or in the binary form. - reads standard input"},
        arguments->script);
    command.addChoice({"--format", "FORMAT", "The form of the result: text (the default) or json"},
                      {"text", "json"}, arguments->format);
    arguments->plugins.addTo(command);
    command.setFooter(
        "The problems are those that the workbench lists, of the steps that are enabled and on the\n"
        "variables that the script declares. A step may run all the same: what it makes of its settings\n"
        "is its own affair.\n\n"
        "Exit status: 0 no problem, 1 a problem, 2 bad usage, a bad script or a refused plug-in.\n\n"
        "Example:\n"
        "  stepctl lint clean.json");
    command.setAction([arguments] {
        const auto make = [&](const StepCatalogue &catalogue, FaultWatch &watch, QByteArray &output) {
            return lint(*arguments, catalogue, watch, output);
        };
        return doPluginWork({arguments->plugins, make});
    });
}
