#include "CheckCommand.h"
#include "ConvertCommand.h"
#include "NewPluginCommand.h"
#include "PaletteCommand.h"
#include "RunCommand.h"

#include <QCoreApplication>
#include <QTextCodec>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#include <qt_windows.h>
#endif

namespace
{
// Arguments, file names and output are UTF-8, whatever the locale says, and a line ends in a line feed.
void useSameTextsEverywhere()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#ifdef Q_OS_WIN
    SetConsoleOutputCP(CP_UTF8);
    for (std::FILE *stream : {stdin, stdout, stderr})
        _setmode(_fileno(stream), _O_BINARY);
#endif
}

// The way CLI11 takes them: as UTF-8, the last one first, without the program's name.
std::vector<std::string> reversedArguments()
{
    std::vector<std::string> arguments;
    const QStringList given = QCoreApplication::arguments().mid(1);
    std::transform(given.rbegin(), given.rend(), std::back_inserter(arguments),
                   [](const QString &argument) { return argument.toStdString(); });
    return arguments;
}
} // namespace

int main(int argc, char *argv[])
{
    useSameTextsEverywhere();
    if (isCheckWorker(argc, argv))
        return runCheckWorker(argc, argv);
    const QCoreApplication application(argc, argv);

    CLI::App app("Runs and inspects step scripts and step plug-ins of the Quillmap automation host.",
                 "stepctl");
    app.set_version_flag("--version", "stepctl " STEPCTL_VERSION);
    app.require_subcommand(0, 1);
    app.allow_windows_style_options(false); // A slash begins a path on every system.
    app.footer("Exit status: 0 all is well, 1 a step was skipped or there are findings,\n"
               "2 bad usage, bad input or a refused plug-in.\n\n"
               "Example:\n"
               "  stepctl run clean.json --list names=@names.txt");

    Action action;
    addRunCommand(app, action);
    addPaletteCommand(app, action);
    addDescribeCommand(app, action);
    addCheckCommand(app, action);
    addConvertCommand(app, action);
    addNewPluginCommand(app, action);

    try {
        app.parse(reversedArguments());
    } catch (const CLI::ParseError &error) {
        const bool isAnswer = app.exit(error, std::cout, std::cerr) == 0;
        return isAnswer ? ExitSuccess : ExitRefused;
    }
    if (!action) {
        std::cerr << "stepctl: a subcommand is required\n\n" << app.help();
        return ExitRefused;
    }
    return action();
}
