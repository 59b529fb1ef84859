// Draws the workbench with a script that has run, for the documentation.
//
//   workbenchscreenshot LANGUAGE PLUGIN SCRIPT PNG [dark]

#include "host/plugins/StepCatalogue.h"
#include "host/running/RunWorker.h"
#include "tools/workbench/look/Language.h"
#include "tools/workbench/window/MainWindow.h"
#include "tools/workbench/window/ScriptPane.h"

#include <QApplication>
#include <QEventLoop>
#include <QSettings>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QTextStream>

namespace
{
constexpr int selectedRow = 0;

int refuse(const QString &reason)
{
    QTextStream(stderr) << "workbenchscreenshot: " << reason << '\n';
    return 2;
}

QPalette darkPalette()
{
    QPalette palette(QColor(0x35, 0x38, 0x3c), QColor(0x2b, 0x2d, 0x30));
    palette.setColor(QPalette::Base, QColor(0x1e, 0x1f, 0x22));
    palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x28, 0x2b));
    palette.setColor(QPalette::PlaceholderText, QColor(0x9a, 0x9d, 0xa2));
    palette.setColor(QPalette::Highlight, QColor(0x2e, 0x5f, 0x9e));
    return palette;
}

void run(Workbench::RunSession &session)
{
    QEventLoop loop;
    QObject::connect(&session, &Workbench::RunSession::changed, &loop, [&] {
        if (!session.isRunning())
            loop.quit();
    });
    session.runAll();
    loop.exec();
}
} // namespace

int main(int argc, char **argv)
{
    if (StepHost::isRunWorker(argc, argv))
        StepHost::workOnRun(argc, argv);
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 5)
        return refuse(QStringLiteral("call it as: workbenchscreenshot LANGUAGE PLUGIN SCRIPT PNG [dark]"));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    if (arguments.value(5) == QLatin1String("dark"))
        QApplication::setPalette(darkPalette());
    Workbench::Language::install(application, arguments.at(1));

    StepHost::StepCatalogue catalogue;
    const auto added = catalogue.addPlugin(arguments.at(2));
    if (!added)
        return refuse(added.error().reason);
    const QTemporaryDir folder;
    QSettings settings(folder.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    Workbench::MainWindow window(catalogue, settings);
    const QString error = window.document().open(arguments.at(3));
    if (!error.isEmpty())
        return refuse(error);
    window.show();
    run(window.session());
    window.findChild<Workbench::ScriptPane *>()->setCurrentRow(selectedRow);
    QApplication::processEvents();
    if (!window.grab().save(arguments.at(4), "PNG"))
        return refuse(QStringLiteral("%1 cannot be written").arg(arguments.at(4)));
    return 0;
}
