#include "NewPluginCommand.h"

#include "Console.h"

#include "host/PluginSkeleton.h"

#include <memory>

using namespace StepHost;

namespace
{
struct NewPluginArguments
{
    std::string folder;
    std::string name;
    std::string pluginId;
    std::string prefix;
    std::string category;
    std::vector<std::string> steps;
};

int writeNewPlugin(const NewPluginArguments &arguments)
{
    PluginSkeleton skeleton;
    skeleton.name = QString::fromStdString(arguments.name);
    skeleton.pluginId = QString::fromStdString(arguments.pluginId);
    skeleton.prefix = QString::fromStdString(arguments.prefix);
    skeleton.category = QString::fromStdString(arguments.category);
    for (const std::string &argument : arguments.steps) {
        const QString step = QString::fromStdString(argument);
        skeleton.steps.append({step.section(QLatin1Char('='), 0, 0), step.section(QLatin1Char('='), 1)});
    }

    const QString folder = QString::fromStdString(arguments.folder);
    const SkeletonResult result = writePluginSkeleton(skeleton, folder);
    if (!result)
        return refuse(result.error);
    QString text = QStringLiteral("Wrote %1 files in %2:\n").arg(result.files.size()).arg(folder);
    for (const QString &file : result.files)
        text += QLatin1String("  ") + file + QLatin1Char('\n');
    text += QStringLiteral("README.md tells how to build and test them.\n");
    return writeResult(text.toUtf8(), QString()) ? ExitSuccess : ExitRefused;
}
} // namespace

void addNewPluginCommand(CLI::App &app, Action &action)
{
    CLI::App *command = app.add_subcommand("new-plugin", "Write the sources of a new step plug-in");
    const auto arguments = std::make_shared<NewPluginArguments>();

    command->add_option("folder", arguments->folder, "The folder to make; there must not be one yet")
        ->type_name("DIR")
        ->required();
    command
        ->add_option("--name", arguments->name,
                     "The name of the plug-in, of its library and its class; made of DIR unless given")
        ->type_name("NAME");
    command->add_option("--id", arguments->pluginId, "The plug-in id; com.example.NAME unless given")
        ->type_name("ID");
    command
        ->add_option("--prefix", arguments->prefix,
                     "What the type ids begin with, without the dot; the first word of NAME unless given")
        ->type_name("PREFIX");
    command->add_option("--category", arguments->category, "The category of the steps; PREFIX unless given")
        ->type_name("TEXT");
    command
        ->add_option("--step", arguments->steps,
                     "A step: its id, which follows the prefix in its type id, and its display name.\n"
                     "May be given more than once; one step \"set\" unless given.")
        ->type_name("ID[=TEXT]")
        ->allow_extra_args(false);
    command->footer(
        "Exit status: 0 the folder was written, 2 bad usage, or it could not be written.\n\n"
        "Example:\n"
        "  stepctl new-plugin text-steps --category 文本 --step join=文本拼接 --step split=文本拆分");
    command->callback([&action, arguments] { action = [arguments] { return writeNewPlugin(*arguments); }; });
}
