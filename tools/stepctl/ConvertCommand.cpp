#include "ConvertCommand.h"

#include "PluginWork.h"
#include "console/CommandLine.h"
#include "console/Console.h"

#include "host/scripts/ScriptFile.h"

#include <memory>

using namespace StepHost;

namespace
{
struct ConvertArguments
{
    QString input;
    QString output;
    QString form;
    PluginOption plugins;
};

std::optional<ScriptForm> outputForm(const ConvertArguments &arguments)
{
    if (arguments.form.isEmpty())
        return scriptFormOf(arguments.output);
    return arguments.form == QLatin1String("json") ? ScriptForm::Json : ScriptForm::Binary;
}

int convert(const ConvertArguments &arguments, ScriptForm form, const StepCatalogue &catalogue,
            FaultWatch &watch, QByteArray &output)
{
    watch.setWork(QStringLiteral("while the script was read"));
    const Result<Script> script = readScriptFile(arguments.input, catalogue);
    if (!script)
        return refuse(script.error());
    watch.setWork(QStringLiteral("while the script was converted"));
    const Result<QByteArray> written = writeScript(*script, form, catalogue);
    if (!written)
        return refuse(arguments.input + QLatin1String(": ") + written.error());
    output = *written;
    return ExitSuccess;
}

int convertAndWrite(const ConvertArguments &arguments)
{
    const std::optional<ScriptForm> form = outputForm(arguments);
    if (!form) {
        return refuse(QStringLiteral("%1: the name tells no form; end it in .json or .qms, or give --to")
                          .arg(arguments.output));
    }
    const auto make = [&](const StepCatalogue &catalogue, FaultWatch &watch, QByteArray &output) {
        return convert(arguments, *form, catalogue, watch, output);
    };
    return doPluginWork({arguments.plugins, make, arguments.output});
}
} // namespace

void addConvertCommand(CommandLine &commandLine)
{
    Command command =
        commandLine.addCommand("convert", "Turn a script from JSON into the binary form, or back");
    const auto arguments = std::make_shared<ConvertArguments>();

    command.addArgument({"in", "IN", "The script; its content tells its form. - reads standard input"},
                        arguments->input);
    command.addArgument(
        {"out", "OUT", "The file to write, which is replaced whole. - writes standard output"},
        arguments->output);
    command.addChoice({"--to", "FORM",
                       "The form of OUT: json or binary; what its name ends in, .json or .qms, unless given"},
                      {"json", "binary"}, arguments->form);
    arguments->plugins.addTo(command);
    command.setFooter("Exit status: 0 OUT was written, 2 bad usage, bad script or a refused plug-in.\n\n"
                      "Example:\n"
                      "  stepctl convert clean.json clean.qms");
    command.setAction([arguments] { return convertAndWrite(*arguments); });
}
