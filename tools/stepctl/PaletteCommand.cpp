#include "PaletteCommand.h"

#include "PluginWork.h"
#include "console/CommandLine.h"
#include "console/Console.h"
#include "host/plugins/PaletteReport.h"

#include <memory>

using namespace StepHost;

namespace
{
struct PaletteArguments
{
    PluginOption plugins;
    QString format = QStringLiteral("text");
};

struct DescribeArguments
{
    PluginOption plugins;
    QString type;
    QString format = QStringLiteral("text");
};

int showPalette(const PaletteArguments &arguments)
{
    const auto make = [&](const StepCatalogue &catalogue, FaultWatch &watch, QByteArray &output) {
        watch.setWork(QStringLiteral("while the result was made"));
        output = arguments.format == QLatin1String("json")  ? paletteToJson(catalogue)
            : arguments.format == QLatin1String("markdown") ? paletteToMarkdown(catalogue)
                                                            : paletteToText(catalogue);
        return ExitSuccess;
    };
    return doPluginWork({arguments.plugins, make});
}

int describe(const DescribeArguments &arguments)
{
    const auto make = [&](const StepCatalogue &catalogue, FaultWatch &watch, QByteArray &output) -> int {
        if (!catalogue.prototype(arguments.type))
            return refuse(catalogue.noSuchType(arguments.type));
        watch.setWork(QStringLiteral("while the result was made"));
        output = arguments.format == QLatin1String("json") ? stepToJson(catalogue, arguments.type)
                                                           : stepToText(catalogue, arguments.type);
        return ExitSuccess;
    };
    return doPluginWork({arguments.plugins, make});
}
} // namespace

void addPaletteCommand(CommandLine &commandLine)
{
    Command command = commandLine.addCommand("palette", "Show what the plug-ins offer, in the host's order");
    const auto arguments = std::make_shared<PaletteArguments>();
    arguments->plugins.addTo(command);
    command.addChoice({"--format", "FORMAT", "The form of the result: text (the default), json or markdown"},
                      {"text", "json", "markdown"}, arguments->format);
    command.setFooter("Exit status: 0 the steps were shown, 2 bad usage or a refused plug-in.\n\n"
                      "Example:\n"
                      "  stepctl palette --plugin ./libListOperPlugin.so --format markdown");
    command.setAction([arguments] { return showPalette(*arguments); });
}

void addDescribeCommand(CommandLine &commandLine)
{
    Command command = commandLine.addCommand("describe", "Show one step in full");
    const auto arguments = std::make_shared<DescribeArguments>();
    command.addArgument({"type", "TYPE", "The step's type id, such as list.sort"}, arguments->type);
    arguments->plugins.addTo(command);
    command.addChoice({"--format", "FORMAT", "The form of the result: text (the default) or json"},
                      {"text", "json"}, arguments->format);
    command.setFooter(
        "Exit status: 0 the step was shown, 2 bad usage, an unknown step or a refused plug-in.\n\n"
        "Example:\n"
        "  stepctl describe list.sort");
    command.setAction([arguments] { return describe(*arguments); });
}
