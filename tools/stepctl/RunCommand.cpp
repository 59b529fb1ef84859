#include "RunCommand.h"

#include "PluginWork.h"
#include "console/CommandLine.h"
#include "console/Console.h"
#include "console/ProgressLine.h"
#include "console/Terminal.h"

#include "host/running/RunReport.h"
#include "host/running/ScriptRunner.h"
#include "host/scripts/ScriptFile.h"
#include "host/scripts/StepProblems.h"
#include "host/scripts/VariableInput.h"
#include "host/values/QuotedText.h"
#include "host/values/Suggestion.h"
#include "host/values/VariableName.h"

#include <QSet>

#include <memory>
#include <optional>

using namespace StepHost;

namespace
{
struct RunArguments
{
    QString script;
    PluginOption plugins;
    QStringList lists;
    QStringList values;
    QString format = QStringLiteral("text");
    QString output = QStringLiteral("-");
    double timeLimit = 0;
    bool showBefore = false;
    bool quiet = false;
    bool full = false;
};

// NAME=VALUE, as given with an option.
struct Assignment
{
    QString name;
    QString value;
};

std::optional<Assignment> parseAssignment(const QString &text)
{
    const int separator = text.indexOf(QLatin1Char('='));
    if (separator < 0)
        return std::nullopt;
    return Assignment{text.left(separator), text.mid(separator + 1)};
}

// How a message about the `argument` of `option` begins.
QString shownArgument(const QString &option, const QString &argument)
{
    constexpr int shown = 100;
    const QString text = option + QLatin1Char(' ') + argument;
    return inOneLine(text.left(shown)) + (text.size() > shown ? QLatin1String("...: ") : QLatin1String(": "));
}

// Gives the script the variables of the command line.
Result<void> assignVariables(Script &script, const RunArguments &arguments)
{
    QSet<QString> given;
    bool usesStandardInput = arguments.script == QLatin1String("-");
    const auto assign = [&](bool isList, const QString &argument) -> Result<void> {
        const std::optional<Assignment> assignment = parseAssignment(argument);
        if (!assignment)
            return failure(isList ? QStringLiteral("this should be NAME=@FILE")
                                  : QStringLiteral("this should be NAME=VALUE"));
        const int fileMark = assignment->value.indexOf(QLatin1Char('@'));
        if (isList && fileMark < 0)
            return failure(QStringLiteral("this should be NAME=@FILE, with the mark @ before the file"));
        const QString name = withoutMark(assignment->name);
        if (given.contains(name))
            return failure(QStringLiteral("the variable %1 is given twice").arg(quoted(name)));
        given.insert(name);
        const QString fileName = assignment->value.mid(fileMark + 1);
        if (isList && fileName == QLatin1String("-")) {
            if (usesStandardInput)
                return failure(QStringLiteral("standard input can be read only once"));
            usesStandardInput = true;
        }
        return isList ? assignFile(script, assignment->name, fileName, assignment->value.left(fileMark))
                      : assignText(script, assignment->name, assignment->value);
    };
    for (const bool isList : {true, false}) {
        for (const QString &argument : isList ? arguments.lists : arguments.values) {
            const Result<void> assigned = assign(isList, argument);
            if (!assigned) {
                const QString option = isList ? QStringLiteral("--list") : QStringLiteral("--set");
                return failure(shownArgument(option, argument) + assigned.error());
            }
        }
    }
    return {};
}

// A variable that the script knows nothing of may be meant, or be another one mistyped.
void askForMeantVariables(Script &script, const RunArguments &arguments)
{
    QStringList unknown;
    const QStringList given = arguments.lists + arguments.values;
    for (const QString &argument : given) {
        const std::optional<Assignment> assignment = parseAssignment(argument);
        if (assignment && !script.findVariable(assignment->name))
            unknown.append(withoutMark(assignment->name));
    }
    if (unknown.isEmpty())
        return;
    QStringList known;
    for (const ScriptVariable &variable : script.variables)
        known.append(variable.name);
    const QVector<ScriptProblem> problems = StepProblems::ofScript(script);
    for (const ScriptProblem &problem : problems)
        known.append(problem.problem.missing);
    for (const QString &name : qAsConst(unknown)) {
        const QString meant = known.contains(name) ? QString() : nearestOf(name, known);
        if (!meant.isEmpty()) {
            say(QStringLiteral("the script does not use a variable %1, which is added; did you mean %2?")
                    .arg(quoted(name), quoted(meant)));
        }
    }
}

QString stepName(const Script &script, std::size_t index)
{
    return QStringLiteral("step %1 (%2)").arg(index + 1).arg(script.steps[index].operation->typeId());
}

RunResult runWatched(const Script &script, VariableScope &scope, FaultWatch &watch, bool showProgress)
{
    std::unique_ptr<ProgressLine> line;
    RunObserver observer;
    if (showProgress)
        line = std::make_unique<ProgressLine>();
    observer.starting = [&](int index) {
        const QString name = stepName(script, std::size_t(index));
        watch.setWork(QLatin1String("in ") + name);
        if (line)
            line->update(QStringLiteral("running: %1 of %2").arg(name).arg(script.steps.size()));
    };
    return runScript(script, scope, observer);
}

int run(const RunArguments &arguments, const StepCatalogue &catalogue, FaultWatch &watch, QByteArray &output)
{
    watch.setWork(QStringLiteral("while the script was read"));
    Result<Script> read = readScriptFile(arguments.script, catalogue);
    if (!read)
        return refuse(read.error());
    Script &script = *read;
    askForMeantVariables(script, arguments);
    const Result<void> assigned = assignVariables(script, arguments);
    if (!assigned)
        return refuse(assigned.error());

    VariableScope scope;
    declareVariables(script, scope);
    std::vector<ScriptVariable> before;
    if (arguments.showBefore)
        before = variablesOf(scope);
    const RunResult result = runWatched(script, scope, watch, !arguments.quiet && isErrorTerminal());
    if (result.end == RunEnd::StepFailed) {
        const std::size_t failed = result.steps.size() - 1 - result.count(StepOutcome::NotRun);
        if (result.steps[failed].ranOutOfMemory)
            return watch.refuseForMemory();
        return refuse(QStringLiteral("%1 threw an exception: %2")
                          .arg(stepName(script, failed), result.steps[failed].failure));
    }

    watch.setWork(QStringLiteral("while the result was made"));
    const std::vector<ScriptVariable> after = variablesOf(scope);
    const RunReport report{script, result, after, arguments.showBefore ? &before : nullptr,
                           resultLook(arguments.output, arguments.full)};
    const Result<QByteArray> written =
        arguments.format == QLatin1String("json") ? reportToJson(report) : reportToText(report);
    if (!written)
        return refuse(QStringLiteral("the result cannot be written: ") + written.error());
    output = *written;
    watch.setWork(QStringLiteral("while the script was deleted"));
    return result.count(StepOutcome::Skipped) > 0 ? ExitFinding : ExitSuccess;
}
} // namespace

void addRunCommand(CommandLine &commandLine)
{
    Command command =
        commandLine.addCommand("run", "Run a script and print its variables and what each step did");
    const auto arguments = std::make_shared<RunArguments>();

    command.addArgument(
        {"script", "SCRIPT", "The script, in JSON or in the binary form. - reads standard input"},
        arguments->script);
    arguments->plugins.addTo(command);
    command.addOption(
        {"--list", "NAME=@FILE",
         "Give the list NAME the lines of the UTF-8 text file FILE, one item a line, or the\n"
         "cells of a FILE that ends in .csv or .tsv and has one column; a declared table takes\n"
         "its rows. @- reads standard input. The list need not be declared. May be given more\n"
         "than once. NAME=OPTIONS@FILE says more, with commas between:\n"
         "encoding=utf-8, gb18030, utf-16 or latin-1; as=lines, cells, rows or column:N;\n"
         "separator=comma, semicolon, tab, bar or space; quotes=double, single or none; header,\n"
         "when the first row names the columns; types=text, auto, int, double or bool, one a\n"
         "column with + between; append, to what the script has."},
        arguments->lists);
    command.addOption(
        {"--set", "NAME=VALUE",
         "Give the variable NAME a value: text for a declared string, JSON of its type for any\n"
         "other declared variable. A variable that is not declared is added: with the type of\n"
         "VALUE when that is JSON, else as a string. May be given more than once."},
        arguments->values);
    command.addChoice({"--format", "FORMAT", "The form of the result: text (the default) or json"},
                      {"text", "json"}, arguments->format);
    command.addOption(
        {"--output", "FILE", "Write the result to FILE instead of standard output, which - stands for"},
        arguments->output);
    command.addNumber(
        {"--time-limit", "SECONDS",
         "End a run that takes longer, as when a step hangs, with status 2; no limit by default"},
        0.001, 86400.0, arguments->timeLimit);
    command.addFlag("--before", "Show the variables as they were before the run too", arguments->showBefore);
    command.addFlag("--full", "Show values whole on a terminal, where they are cut to its width otherwise",
                    arguments->full);
    command.addFlag("--quiet", "Show no progress line on a terminal", arguments->quiet);
    command.setFooter(
        "Exit status: 0 every step wrote, 1 a step was skipped,\n"
        "2 bad usage, bad script, a refused plug-in, a failed step or the end of a limit.\n"
        "When a plug-in crashes, the status is what the system gives a crash, and a line on standard\n"
        "error names the step. Without --isolate, _exit() in a plug-in ends the run with its status and\n"
        "without a line, and so does a kill. The result is written last, or not at all.\n"
        "On Linux, what the plug-ins left running ends with the run, and a line tells how many there "
        "were.\n\n"
        "Example:\n"
        "  stepctl run clean.json --list names=@names.txt --set limit=10 --format json");
    command.setAction([arguments] {
        const auto make = [&](const StepCatalogue &catalogue, FaultWatch &watch, QByteArray &output) {
            return run(*arguments, catalogue, watch, output);
        };
        return doPluginWork({arguments->plugins, make, arguments->output, arguments->timeLimit});
    });
}
