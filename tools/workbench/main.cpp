#include "host/plugins/PluginSearch.h"
#include "host/plugins/StepCatalogue.h"
#include "host/running/StartedProcesses.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/look/Language.h"
#include "tools/workbench/window/MainWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QLocale>
#include <QSettings>
#include <QTextStream>

namespace
{
int refuse(const QString &reason)
{
    QTextStream(stderr) << "workbench: " << StepHost::messageLine(reason) << '\n';
    return 2;
}

/// Adds the plug-ins \a files to \a catalogue, or else those that are found. Returns the reasons of refusals.
QStringList addPlugins(StepHost::StepCatalogue &catalogue, QStringList files)
{
    QStringList reasons;
    if (files.isEmpty()) {
        const StepHost::FoundPlugins found = StepHost::findPlugins(QCoreApplication::applicationDirPath());
        files = found.files;
        if (files.isEmpty()) {
            reasons.append(QCoreApplication::translate("Workbench::main", "There is no plug-in in %1.")
                               .arg(found.searched.join(QLatin1String(", "))));
        }
    }
    for (const QString &file : qAsConst(files)) {
        const auto result = catalogue.addPlugin(file);
        if (!result)
            reasons.append(result.error().reason);
    }
    return reasons;
}
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Quillmap"));
    QCoreApplication::setApplicationName(QStringLiteral("workbench"));
    QCoreApplication::setApplicationVersion(QStringLiteral(WORKBENCH_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Place, edit, run and save steps by hand.\n\n"
                       "Example: workbench --lang zh_CN examples/names/clean.json"));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("script"), QStringLiteral("The script to open."),
                                 QStringLiteral("[script]"));
    const QCommandLineOption languageOption(
        QStringLiteral("lang"),
        QStringLiteral("The language of the texts: %1. By default the system's.")
            .arg(Workbench::Language::codes().join(QLatin1String(" or "))),
        QStringLiteral("code"));
    const QCommandLineOption pluginOption(
        QStringLiteral("plugin"),
        QStringLiteral("Load this plug-in; may be given more than once. By default those that are found."),
        QStringLiteral("file"));
    parser.addOptions({languageOption, pluginOption});
    parser.process(application);

    const QString language = parser.isSet(languageOption)
        ? parser.value(languageOption)
        : Workbench::Language::codeFor(QLocale().uiLanguages());
    if (!Workbench::Language::codes().contains(language)) {
        return refuse(QStringLiteral("there is no language \"%1\"; there are %2")
                          .arg(language, Workbench::Language::codes().join(QLatin1String(", "))));
    }
    const QStringList scripts = parser.positionalArguments();
    if (scripts.size() > 1)
        return refuse(QStringLiteral("only one script can be opened"));
    Workbench::Language::install(application, language);

    // Before the window, which holds steps of the plug-ins.
    StepHost::StepCatalogue catalogue;
    const QStringList reasons = addPlugins(catalogue, parser.values(pluginOption));
    QSettings settings;
    Workbench::MainWindow window(catalogue, settings);
    for (const QString &reason : reasons)
        window.log().appendWarning(reason);
    window.show();
    if (!scripts.isEmpty())
        window.openFile(scripts.first());
    return QApplication::exec();
}
