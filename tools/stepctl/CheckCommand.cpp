#include "CheckCommand.h"

#include "IconRenderer.h"
#include "QuitOnSignal.h"
#include "console/CommandLine.h"
#include "console/Console.h"
#include "console/ProgressLine.h"
#include "console/Terminal.h"
#include "host/checks/CheckReport.h"
#include "host/checks/CheckSelection.h"
#include "host/checks/Waivers.h"
#include "host/files/InputFile.h"
#include "host/plugins/PluginSearch.h"
#include "host/running/StartedProcesses.h"

#include <QCoreApplication>
#include <QFileInfo>
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
    QStringList skip;
    QStringList scripts;
    QString waivers;
    QString baseline;
    QString format = QStringLiteral("text");
    int seed = 1;
    int jobs = qMax(1, QThread::idealThreadCount());
    double timeLimit = 30;
    bool list = false;
    bool inProcess = false;
    bool quiet = false;
    bool onlyFailed = false;
    bool strict = false;
    bool verbose = false;
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

// Whatever plug-ins there are beside the one under check, its author's scripts may use.
QStringList companionsOf(const CheckArguments &arguments)
{
    QStringList files = findPlugins(QCoreApplication::applicationDirPath()).files;
    for (const QString &plugin : arguments.plugins)
        files.append(QFileInfo(plugin).absoluteFilePath());
    return files;
}

Result<QVector<Waiver>> waiversOf(const CheckArguments &arguments)
{
    if (arguments.waivers.isEmpty())
        return QVector<Waiver>();
    const Result<QByteArray> bytes = readInputFile(arguments.waivers);
    const Result<QVector<Waiver>> waivers =
        bytes ? readWaivers(QString::fromUtf8(*bytes)) : failure(bytes.error());
    return waivers ? waivers : failure(arguments.waivers + QLatin1String(": ") + waivers.error());
}

QByteArray reportIn(const QString &format, const QVector<PluginReport> &reports,
                    const CheckReportOptions &options)
{
    if (format == QLatin1String("json"))
        return jsonReport(reports, options);
    if (format == QLatin1String("junit"))
        return junitReport(reports, options);
    return textReport(reports, options).toUtf8();
}

int list(const QString &format)
{
    if (format == QLatin1String("junit"))
        return refuse(QStringLiteral("--list: its form is text or json"));
    const QByteArray checks = format == QLatin1String("json") ? jsonCheckList() : checkList().toUtf8();
    return writeResult(checks, QString()) ? ExitSuccess : ExitRefused;
}

// What is wrong with how the arguments go together; empty when nothing is.
QString mistakeIn(const CheckArguments &arguments)
{
    if (arguments.plugins.isEmpty())
        return QStringLiteral("check: name at least one plug-in");
    if (!arguments.baseline.isEmpty() && arguments.plugins.size() > 1)
        return QStringLiteral("--baseline: name one plug-in, which is compared with the older release");
    if (!arguments.baseline.isEmpty() && arguments.inProcess)
        return QStringLiteral("--baseline: two releases of a plug-in are not loaded into one process; leave "
                              "out --in-process");
    return QString();
}

int check(const CheckArguments &arguments)
{
    if (arguments.list)
        return list(arguments.format);
    if (const QString mistake = mistakeIn(arguments); !mistake.isEmpty())
        return refuse(mistake);
    const Result<QVector<PluginCheck>> checks =
        selectChecks(arguments.only, arguments.skip, !arguments.baseline.isEmpty());
    if (!checks)
        return refuse(checks.error());
    Result<QVector<Waiver>> waivers = waiversOf(arguments);
    if (!waivers)
        return refuse(waivers.error());

    CheckRunOptions options;
    if (!arguments.inProcess) {
        options.program = QCoreApplication::applicationFilePath();
        options.arguments = QStringList{QLatin1String(workerName)};
    }
    options.seed = unsigned(arguments.seed);
    for (const QString &script : arguments.scripts)
        options.scripts.append(QFileInfo(script).absoluteFilePath());
    options.companions = companionsOf(arguments);
    options.baseline = arguments.baseline;
    options.jobs = arguments.jobs;
    options.timeLimit = qMax(1, int(arguments.timeLimit * 1000));
    std::unique_ptr<ProgressLine> line;
    if (!arguments.quiet && isErrorTerminal()) {
        line = std::make_unique<ProgressLine>();
        options.progress = [&line](int done, int total) {
            line->update(QStringLiteral("checking: %1/%2").arg(done).arg(total));
        };
    }
    const QuitOnSignal quitting;
    const StartedProcesses started; // Also those that leave the tree of their check.
    QVector<PluginReport> reports = checkPlugins(arguments.plugins, *checks, options);
    line.reset();
    quitting.raiseAgain();
    applyWaivers(reports, *waivers);
    const CheckReportOptions reportOptions{arguments.onlyFailed, arguments.strict, options.seed,
                                           arguments.verbose, QStringLiteral(STEPCTL_VERSION)};
    if (!writeResult(reportIn(arguments.format, reports, reportOptions), QString()))
        return ExitRefused;
    return exitStatus(verdictOf(reports, arguments.strict));
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
                       "more than once, and have a pattern: '*.texts'."},
                      arguments->only);
    command.addOption(
        {"--skip", "ID", "Leave out the check, the family or the pattern ID. May be given more than once."},
        arguments->skip);
    command.addOption(
        {"--script", "FILE",
         "Run the steps of the script FILE, too, when running is checked. It may use the steps of all\n"
         "installed plug-ins. May be given more than once."},
        arguments->scripts);
    command.addOption(
        {"--baseline", "OLD",
         "Compare the plug-in with its older release OLD: whether scripts and records of that one are\n"
         "read and run as they were"},
        arguments->baseline);
    command.addOption({"--waive", "FILE",
                       "Let what the lines of FILE name count as passed: CHECK \"part of the reason\": why"},
                      arguments->waivers);
    command.addNumber({"--seed", "N", "Choose what is chosen at random by the number N; 1 by default"}, 1,
                      2147483647, arguments->seed);
    command.addFlag("--only-failed", "Report only what did not pass", arguments->onlyFailed);
    command.addFlag("--verbose", "Report each check that passed, too, and not only its family",
                    arguments->verbose);
    command.addFlag("--strict", "Count a warning as a failure", arguments->strict);
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
