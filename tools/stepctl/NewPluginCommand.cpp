#include "NewPluginCommand.h"

#include "console/CommandLine.h"
#include "console/Console.h"

#include "host/skeleton/PluginSkeleton.h"
#include "host/values/QuotedText.h"

#include <memory>

using namespace StepHost;

namespace
{
struct NewPluginArguments
{
    QString folder;
    PluginSkeleton skeleton; // Without its steps.
    QStringList steps;
    QString language;
};

int writeNewPlugin(const NewPluginArguments &arguments)
{
    PluginSkeleton skeleton = arguments.skeleton;
    if (arguments.language == QLatin1String("en"))
        skeleton.language = SkeletonLanguage::English;
    for (const QString &step : arguments.steps)
        skeleton.steps.append({step.section(QLatin1Char('='), 0, 0), step.section(QLatin1Char('='), 1)});

    const Result<QStringList> files = writePluginSkeleton(skeleton, arguments.folder);
    if (!files)
        return refuse(files.error());
    QString text =
        QStringLiteral("Wrote %1 files in %2:\n").arg(files->size()).arg(inOneLine(arguments.folder));
    for (const QString &file : *files)
        text += QLatin1String("  ") + file + QLatin1Char('\n');
    text += QStringLiteral("README.md tells how to build and test them.\n");
    return writeResult(text.toUtf8(), QString()) ? ExitSuccess : ExitRefused;
}
} // namespace

void addNewPluginCommand(CommandLine &commandLine)
{
    Command command = commandLine.addCommand("new-plugin", "Write the sources of a new step plug-in");
    const auto arguments = std::make_shared<NewPluginArguments>();
    PluginSkeleton &skeleton = arguments->skeleton;

    command.addArgument({"folder", "DIR", "The folder to make; there must not be one yet"},
                        arguments->folder);
    command.addOption(
        {"--name", "NAME", "The name of the plug-in, of its library and its class; made of DIR unless given"},
        skeleton.name);
    command.addOption({"--id", "ID", "The plug-in id; com.example.NAME unless given"}, skeleton.pluginId);
    command.addOption({"--prefix", "PREFIX",
                       "What the type ids begin with, without the dot; the first word of NAME unless given"},
                      skeleton.prefix);
    command.addOption({"--category", "TEXT", "The category of the steps; PREFIX unless given"},
                      skeleton.category);
    command.addOption({"--step", "ID[=TEXT]",
                       "A step: its id, which follows the prefix in its type id, and its display name.\n"
                       "May be given more than once; one step \"set\" unless given."},
                      arguments->steps);
    command.addChoice(
        {"--lang", "LANGUAGE", "In which language the steps speak to the user: zh (the default) or en"},
        {"zh", "en"}, arguments->language);
    command.setFooter(
        "Exit status: 0 the folder was written, 2 bad usage, or it could not be written.\n\n"
        "Example:\n"
        "  stepctl new-plugin text-steps --category 文本 --step join=文本拼接 --step split=文本拆分");
    command.setAction([arguments] { return writeNewPlugin(*arguments); });
}
