#include "CheckCommand.h"

#include "CommandLine.h"
#include "Console.h"
#include "IconRenderer.h"
#include "ProgressLine.h"
#include "host/checks/CheckReport.h"

#include <QCoreApplication>
#include <QThread>

#include <cstring>
#include <memory>

using namespace StepHost;

namespace
{
constexpr char workerName[] = "check-worker";

// Exit statuses of `check` beside those of all subcommands.
constexpr int exitNotLoadable = 3;
constexpr int exitCrashed = 4;

struct CheckArguments
{
    QStringList plugins;
    QStringList only;
    QString format = QStringLiteral("text");
    int jobs = qMax(1, QThread::idealThreadCount());
    double timeLimit = 30;
    bool list = false;
    bool inProcess = false;
    bool quiet = false;
};

int exitStatus(CheckVerdict verdict)
{
    switch (verdict) {
    case CheckVerdict::Passed:
        return ExitSuccess;
    case CheckVerdict::Failed:
        return ExitFinding;
    case CheckVerdict::NotLoadable:
        return exitNotLoadable;
    case CheckVerdict::Crashed:
        break;
    }
    return exitCrashed;
}

QByteArray checkList()
{
    QByteArray text;
    for (const PluginCheck &check : pluginChecks())
        text += check.id.leftJustified(34).toUtf8() + "  " + check.protects.toUtf8() + '\n';
    return text;
}

// Whether `name` is the id of `check` or its family.
bool isNamed(const PluginCheck &check, const QString &name)
{
    return check.id == name || check.id.section(QLatin1Char('.'), 0, 0) == name;
}

// The checks that the names in `wanted` select, in the order of the table; all without names. Returns an empty text, or
// which name there is not.
QString selectChecks(const QStringList &wanted, QVector<PluginCheck> &selected)
{
    QStringList unknown = wanted;
    for (const PluginCheck &check : pluginChecks()) {
        bool isWanted = wanted.isEmpty();
        for (const QString &name : wanted) {
            if (isNamed(check, name)) {
                isWanted = true;
                unknown.removeAll(name);
            }
        }
        if (isWanted)
            selected.append(check);
    }
    return unknown.isEmpty()
        ? QString()
        : QStringLiteral("--only %1: there is no such check; --list shows them all").arg(unknown.first());
}

QByteArray reportIn(const QString &format, const QVector<PluginReport> &reports)
{
    if (format == QLatin1String("json"))
        return jsonReport(reports);
    if (format == QLatin1String("junit"))
        return junitReport(reports);
    return textReport(reports).toUtf8();
}

int check(const CheckArguments &arguments)
{
    if (arguments.list)
        return writeResult(checkList(), QString()) ? ExitSuccess : ExitRefused;
    if (arguments.plugins.isEmpty())
        return refuse(QStringLiteral("check: name at least one plug-in"));
    QVector<PluginCheck> checks;
    const QString error = selectChecks(arguments.only, checks);
    if (!error.isEmpty())
        return refuse(error);

    CheckRunOptions options;
    if (!arguments.inProcess) {
        options.program = QCoreApplication::applicationFilePath();
        options.arguments = QStringList{QLatin1String(workerName)};
    }
    options.jobs = arguments.jobs;
    options.timeLimit = qMax(1, int(arguments.timeLimit * 1000));
    std::unique_ptr<ProgressLine> line;
    if (!arguments.quiet && isErrorTerminal()) {
        line = std::make_unique<ProgressLine>("checking:");
        options.progress = [&line](int done, int total) { line->update(done, total); };
    }
    const QVector<PluginReport> reports = checkPlugins(arguments.plugins, checks, options);
    line.reset();
    if (!writeResult(reportIn(arguments.format, reports), QString()))
        return ExitRefused;
    return exitStatus(verdictOf(reports));
}
} // namespace

void addCheckCommand(CommandLine &commandLine)
{
    Command command = commandLine.addCommand("check", "Check whether plug-ins keep the step contract");
    const auto arguments = std::make_shared<CheckArguments>();

    command.addArguments({"plugins", "PLUGIN", "The plug-ins to check"}, arguments->plugins);
    command.addFlag("--list", "List the checks and what each protects, and do none", arguments->list);
    command.addOption({"--only", "ID",
                       "Do only the check ID, or the checks of the family ID, such as clone. May be given\n"
                       "more than once."},
                      arguments->only);
    command.addNumber(
        {"--jobs", "N", "How many checks run at the same time; as many as there are processors by default"},
        1, 256, arguments->jobs);
    command.addNumber(
        {"--time-limit", "SECONDS", "End a check that takes longer, and count it as hung; 30 by default"},
        0.001, 86400.0, arguments->timeLimit);
    command.addChoice({"--format", "FORMAT", "The form of the report: text (the default), json or junit"},
                      {"text", "json", "junit"}, arguments->format);
    command.addFlag("--in-process",
                    "Do the checks in this process, one by one and without a time limit, for a debugger",
                    arguments->inProcess);
    command.addFlag("--quiet", "Show no progress line on a terminal", arguments->quiet);
    command.setFooter(
        "Each check runs in a process of its own, so that a crash or a hang of the plug-in is a\n"
        "result and not the end.\n\n"
        "Exit status: 0 all passed, 1 a check failed, 2 bad usage, 3 a plug-in does not load,\n"
        "4 a check crashed or hung.\n\n"
        "Example:\n"
        "  stepctl check libMyPlugin.so --only persistence --jobs 4");
    command.setAction([arguments] { return check(*arguments); });
}

bool isCheckWorker(int argc, char *const argv[])
{
    return argc > 1 && std::strcmp(argv[1], workerName) == 0;
}

int runCheckWorker(int argc, char *argv[])
{
    constexpr int expectedArguments = 5;
    const bool draws = argc == expectedArguments && std::strncmp(argv[3], "icon.", 5) == 0;
    const std::unique_ptr<QCoreApplication> application =
        draws ? createDrawingApplication(argc, argv) : std::make_unique<QCoreApplication>(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != expectedArguments)
        return ExitRefused;
    return StepHost::runCheckWorker(arguments.at(2), arguments.at(3), arguments.at(4), iconRenderer())
        ? ExitSuccess
        : ExitRefused;
}
