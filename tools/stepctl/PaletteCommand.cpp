#include "PaletteCommand.h"

#include "Console.h"
#include "PluginOption.h"
#include "host/PaletteReport.h"
#include "host/QuotedText.h"

#include <memory>

using namespace StepHost;

namespace
{
struct PaletteArguments
{
    PluginOption plugins;
    std::string format = "text";
};

struct DescribeArguments
{
    PluginOption plugins;
    std::string type;
    std::string format = "text";
};

int showPalette(const PaletteArguments &arguments)
{
    StepCatalogue catalogue;
    if (!arguments.plugins.load(catalogue))
        return ExitRefused;
    const QByteArray report = arguments.format == "json" ? paletteToJson(catalogue)
        : arguments.format == "markdown"                 ? paletteToMarkdown(catalogue)
                                                         : paletteToText(catalogue);
    return writeResult(report, QString()) ? ExitSuccess : ExitRefused;
}

int describe(const DescribeArguments &arguments)
{
    StepCatalogue catalogue;
    if (!arguments.plugins.load(catalogue))
        return ExitRefused;
    const QString typeId = QString::fromStdString(arguments.type);
    if (!catalogue.prototype(typeId))
        return refuse(QStringLiteral("there is no step of type %1; there are %2")
                          .arg(quoted(typeId), catalogue.typeIds().join(QLatin1String(", "))));
    const QByteArray report =
        arguments.format == "json" ? stepToJson(catalogue, typeId) : stepToText(catalogue, typeId);
    return writeResult(report, QString()) ? ExitSuccess : ExitRefused;
}
} // namespace

void addPaletteCommand(CLI::App &app, Action &action)
{
    CLI::App *command = app.add_subcommand("palette", "Show what the plug-ins offer, in the host's order");
    const auto arguments = std::make_shared<PaletteArguments>();
    arguments->plugins.addTo(*command);
    command
        ->add_option("--format", arguments->format,
                     "The form of the result: text (the default), json or markdown")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"text", "json", "markdown"}));
    command->callback([&action, arguments] { action = [arguments] { return showPalette(*arguments); }; });
}

void addDescribeCommand(CLI::App &app, Action &action)
{
    CLI::App *command = app.add_subcommand("describe", "Show one step in full");
    const auto arguments = std::make_shared<DescribeArguments>();
    command->add_option("type", arguments->type, "The step's type id, such as list.sort")
        ->type_name("TYPE")
        ->required();
    arguments->plugins.addTo(*command);
    command->add_option("--format", arguments->format, "The form of the result: text (the default) or json")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"text", "json"}));
    command->callback([&action, arguments] { action = [arguments] { return describe(*arguments); }; });
}
