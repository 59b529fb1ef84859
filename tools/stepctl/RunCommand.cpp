#include "RunCommand.h"

#include "Console.h"
#include "PluginWork.h"
#include "ProgressLine.h"

#include "host/InputFile.h"
#include "host/QuotedText.h"
#include "host/RunReport.h"
#include "host/ScriptFile.h"
#include "host/ScriptRunner.h"
#include "host/VariableInput.h"

#include <QSet>

#include <memory>

using namespace StepHost;

namespace
{
struct RunArguments
{
    std::string script;
    PluginOption plugins;
    std::vector<std::string> lists;
    std::vector<std::string> values;
    std::string format = "text";
    std::string output;
    double timeLimit = 0;
    bool showBefore = false;
    bool quiet = false;
};

// NAME=VALUE, as given with an option.
struct Assignment
{
    QString name;
    QString value;
};

bool parseAssignment(const std::string &argument, Assignment &assignment)
{
    const QString text = QString::fromStdString(argument);
    const int separator = text.indexOf(QLatin1Char('='));
    if (separator < 0)
        return false;
    assignment = {text.left(separator), text.mid(separator + 1)};
    return true;
}

QString assignListFile(Script &script, const Assignment &assignment)
{
    const InputFile file = readInputFile(assignment.value.mid(1));
    if (!file)
        return file.error;
    const LinesResult items = readLines(file.bytes);
    if (!items)
        return assignment.value.mid(1) + QLatin1String(": ") + items.error;
    return assignList(script, assignment.name, items.lines);
}

// How a message about the `argument` of `option` begins.
QString shownArgument(const std::string &option, const std::string &argument)
{
    constexpr int shown = 100;
    const QString text = QString::fromStdString(option + ' ' + argument);
    return inOneLine(text.left(shown)) + (text.size() > shown ? QLatin1String("...: ") : QLatin1String(": "));
}

// Gives the script the variables of the command line. Returns an empty text or what is wrong.
QString assignVariables(Script &script, const RunArguments &arguments)
{
    QSet<QString> given;
    bool usesStandardInput = false;
    const auto assign = [&](const std::string &option, const std::string &argument) {
        const bool isList = option == "--list";
        const QString shown = shownArgument(option, argument);
        Assignment assignment;
        if (!parseAssignment(argument, assignment))
            return shown
                + (isList ? QLatin1String("this should be NAME=@FILE")
                          : QLatin1String("this should be NAME=VALUE"));
        if (isList && !assignment.value.startsWith(QLatin1Char('@')))
            return shown + QLatin1String("this should be NAME=@FILE, with the mark @ before the file");
        const QString name = withoutMark(assignment.name);
        if (given.contains(name))
            return shown + QStringLiteral("the variable %1 is given twice").arg(quoted(name));
        given.insert(name);
        if (isList && assignment.value == QLatin1String("@-")) {
            if (usesStandardInput)
                return shown + QLatin1String("standard input can be read only once");
            usesStandardInput = true;
        }
        const QString error = isList ? assignListFile(script, assignment)
                                     : assignText(script, assignment.name, assignment.value);
        return error.isEmpty() ? QString() : shown + error;
    };
    for (const std::string &argument : arguments.lists) {
        const QString error = assign("--list", argument);
        if (!error.isEmpty())
            return error;
    }
    for (const std::string &argument : arguments.values) {
        const QString error = assign("--set", argument);
        if (!error.isEmpty())
            return error;
    }
    return QString();
}

QString stepName(const Script &script, std::size_t index)
{
    return QStringLiteral("step %1 (%2)").arg(index + 1).arg(script.steps[index].operation->typeId());
}

RunResult runWatched(const Script &script, VariableScope &scope, FaultWatch &watch, bool showProgress)
{
    std::unique_ptr<ProgressLine> line;
    RunObserver observer;
    observer.starting = [&](int index) {
        watch.setWork(QLatin1String("in ") + stepName(script, std::size_t(index)));
    };
    if (showProgress) {
        line = std::make_unique<ProgressLine>("running: step");
        observer.progress = [&line](int done, int total) { line->update(done, total); };
    }
    return runScript(script, scope, observer);
}

int run(const RunArguments &arguments, const StepCatalogue &catalogue, FaultWatch &watch, QByteArray &output)
{
    watch.setWork(QStringLiteral("while the script was read"));
    ScriptResult read = readScriptFile(QString::fromStdString(arguments.script), catalogue);
    if (!read)
        return refuse(read.error);
    Script &script = read.script;
    const QString error = assignVariables(script, arguments);
    if (!error.isEmpty())
        return refuse(error);

    VariableScope scope;
    declareVariables(script, scope);
    std::vector<ScriptVariable> before;
    if (arguments.showBefore)
        before = variablesOf(scope);
    const RunResult result = runWatched(script, scope, watch, !arguments.quiet && isErrorTerminal());
    if (result.end == RunEnd::StepFailed) {
        const std::size_t failed = result.steps.size() - 1 - result.count(StepOutcome::NotRun);
        return refuse(QStringLiteral("%1 threw an exception: %2")
                          .arg(stepName(script, failed), result.steps[failed].failure));
    }

    watch.setWork(QStringLiteral("while the result was made"));
    const std::vector<ScriptVariable> after = variablesOf(scope);
    const RunReport report{script, result, after, arguments.showBefore ? &before : nullptr};
    const WriteResult written = arguments.format == "json" ? reportToJson(report) : reportToText(report);
    if (!written)
        return refuse(QStringLiteral("the result cannot be written: ") + written.error);
    output = written.bytes;
    watch.setWork(QStringLiteral("while the script was deleted"));
    return result.count(StepOutcome::Skipped) > 0 ? ExitFinding : ExitSuccess;
}
} // namespace

void addRunCommand(CLI::App &app, Action &action)
{
    CLI::App *command =
        app.add_subcommand("run", "Run a script and print its variables and what each step did");
    const auto arguments = std::make_shared<RunArguments>();

    command->add_option("script", arguments->script, "The script, in JSON or in the binary form")
        ->type_name("SCRIPT")
        ->required();
    arguments->plugins.addTo(*command);
    command
        ->add_option("--list", arguments->lists,
                     "Give the list NAME the lines of the UTF-8 text file FILE, one item a line; @- reads\n"
                     "standard input. The list need not be declared. May be given more than once.")
        ->type_name("NAME=@FILE")
        ->allow_extra_args(false);
    command
        ->add_option("--set", arguments->values,
                     "Give the variable NAME a value: text for a declared string, JSON of its type for any\n"
                     "other declared variable. A variable that is not declared is added: with the type of\n"
                     "VALUE when that is JSON, else as a string. May be given more than once.")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
    command->add_option("--format", arguments->format, "The form of the result: text (the default) or json")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"text", "json"}));
    command->add_option("--output", arguments->output, "Write the result to FILE instead of standard output")
        ->type_name("FILE");
    command
        ->add_option("--time-limit", arguments->timeLimit,
                     "End a run that takes longer, as when a step hangs, with status 2; no limit by default")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.001, 86400.0));
    command->add_flag("--before", arguments->showBefore,
                      "Show the variables as they were before the run too");
    command->add_flag("--quiet", arguments->quiet, "Show no progress line on a terminal");
    command->footer(
        "Exit status: 0 every step wrote, 1 a step was skipped,\n"
        "2 bad usage, bad script, a refused plug-in, a failed step or the end of the time limit.\n"
        "When a plug-in crashes, the status is what the system gives a crash, and a line on standard\n"
        "error names the step. The result is written last, or not at all.\n\n"
        "Example:\n"
        "  stepctl run clean.json --list names=@names.txt --set limit=10 --format json");
    command->callback([&action, arguments] {
        action = [arguments] {
            const auto make = [&](const StepCatalogue &catalogue, FaultWatch &watch, QByteArray &output) {
                return run(*arguments, catalogue, watch, output);
            };
            return doPluginWork(
                {arguments->plugins, make, QString::fromStdString(arguments->output), arguments->timeLimit});
        };
    });
}
