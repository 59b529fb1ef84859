#include "CheckCommand.h"
#include "ConvertCommand.h"
#include "DiffCommand.h"
#include "ExplainCommand.h"
#include "Isolation.h"
#include "LintCommand.h"
#include "NewPluginCommand.h"
#include "PaletteCommand.h"
#include "RunCommand.h"
#include "console/CommandLine.h"

#include <QCoreApplication>
#include <QTextCodec>

#include <cstdio>

#include <fcntl.h>

#ifdef Q_OS_WIN
#include <io.h>
#include <qt_windows.h>
#else
#include <unistd.h>
#endif

namespace
{
// Whoever started this program may have closed one of the three, and then the next file to be opened would take its place.
// Reading from it, or writing a result to it, fails as it would have.
void keepStandardDescriptors()
{
#ifndef Q_OS_WIN
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) < 0)
            open("/dev/null", descriptor == STDOUT_FILENO ? O_RDONLY : O_WRONLY);
    }
#endif
}

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
} // namespace

int main(int argc, char *argv[])
{
    keepStandardDescriptors();
    useSameTextsEverywhere();
    Isolation::becomeWorker(argc, argv);
    if (isCheckWorker(argc, argv))
        return runCheckWorker(argc, argv);
    const QCoreApplication application(argc, argv);

    CommandLine commandLine(
        "stepctl", "Runs and inspects step scripts and step plug-ins of the Quillmap automation host.",
        "stepctl " STEPCTL_VERSION);
    commandLine.setFooter(
        "Exit status: 0 all is well, 1 a step was skipped or there are findings or differences,\n"
        "2 bad usage, bad input or a refused plug-in.\n\n"
        "Example:\n"
        "  stepctl run clean.json --list names=@names.txt");

    addRunCommand(commandLine);
    addLintCommand(commandLine);
    addDiffCommand(commandLine);
    addPaletteCommand(commandLine);
    addDescribeCommand(commandLine);
    addCheckCommand(commandLine);
    addExplainCommand(commandLine);
    addConvertCommand(commandLine);
    addNewPluginCommand(commandLine);
    return commandLine.run();
}
