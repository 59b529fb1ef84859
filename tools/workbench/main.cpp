#include "host/running/RunWorker.h"
#include "host/running/StepTrial.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/document/PluginStart.h"
#include "tools/workbench/look/Language.h"
#include "tools/workbench/window/CommandLine.h"
#include "tools/workbench/window/MainWindow.h"

#include <QApplication>
#include <QLocale>
#include <QSettings>
#include <QTextStream>

namespace
{
constexpr int exitRefused = 2;

void nameApplication()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Quillmap"));
    QCoreApplication::setApplicationName(QStringLiteral("workbench"));
    QCoreApplication::setApplicationVersion(QStringLiteral(WORKBENCH_VERSION));
}

Workbench::CommandLine commandLine(int argc, char **argv)
{
    // Ends before QApplication begins, which would take options for itself and wants a display.
    const QCoreApplication application(argc, argv);
    return Workbench::readCommandLine(QCoreApplication::arguments(), QLocale().uiLanguages());
}

void printError(const QString &text)
{
    QTextStream(stderr) << "workbench: " << StepHost::messageLine(text) << '\n';
}

/// Shows the window that \a line asks for. Returns the program's status.
int work(const Workbench::CommandLine &line)
{
    QByteArrayList arguments = line.qtArguments;
    std::vector<char *> argv;
    for (QByteArray &argument : arguments)
        argv.push_back(argument.data());
    int argc = int(argv.size());
    argv.push_back(nullptr);

    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv.data());
    Workbench::Language::install(application, line.language);

    // Before the window, which holds steps of the plug-ins.
    StepHost::StepCatalogue catalogue;
    const QStringList reasons = Workbench::PluginStart::load(catalogue, line.plugins);
    QSettings settings;
    StepHost::StepTrial trial(catalogue);
    Workbench::MainWindow window(catalogue, settings);
    window.document().setTrial(trial);
    for (const QString &reason : reasons) {
        window.log().appendWarning(reason);
        printError(reason);
    }
    window.show();
    if (!line.script.isEmpty())
        window.openFile(line.script);
    return QApplication::exec();
}
} // namespace

int main(int argc, char **argv)
{
    if (StepHost::isRunWorker(argc, argv))
        StepHost::workOnRun(argc, argv, Workbench::Language::installInherited);
    nameApplication();
    const Workbench::CommandLine line = commandLine(argc, argv);
    switch (line.task) {
    case Workbench::CommandLine::Task::Tell:
        QTextStream(stdout) << line.text;
        return 0;
    case Workbench::CommandLine::Task::Refuse:
        printError(line.text);
        return exitRefused;
    case Workbench::CommandLine::Task::Work:
        break;
    }
    return work(line);
}
