#include "ConvertCommand.h"

#include "Console.h"
#include "PluginWork.h"

#include "host/ScriptFile.h"

#include <memory>

using namespace StepHost;

namespace
{
struct ConvertArguments
{
    std::string input;
    std::string output;
    std::string form;
    PluginOption plugins;
};

std::optional<ScriptForm> outputForm(const ConvertArguments &arguments)
{
    if (arguments.form.empty())
        return scriptFormOf(QString::fromStdString(arguments.output));
    return arguments.form == "json" ? ScriptForm::Json : ScriptForm::Binary;
}

int convert(const ConvertArguments &arguments, ScriptForm form, const StepCatalogue &catalogue,
            FaultWatch &watch, QByteArray &output)
{
    watch.setWork(QStringLiteral("while the script was read"));
    const QString input = QString::fromStdString(arguments.input);
    const ScriptResult read = readScriptFile(input, catalogue);
    if (!read)
        return refuse(read.error);
    watch.setWork(QStringLiteral("while the script was converted"));
    const WriteResult written = writeScript(read.script, form, catalogue);
    if (!written)
        return refuse(input + QLatin1String(": ") + written.error);
    output = written.bytes;
    return ExitSuccess;
}

int convertAndWrite(const ConvertArguments &arguments)
{
    const std::optional<ScriptForm> form = outputForm(arguments);
    if (!form) {
        return refuse(QStringLiteral("%1: the name tells no form; end it in .json or .qms, or give --to")
                          .arg(QString::fromStdString(arguments.output)));
    }
    const auto make = [&](const StepCatalogue &catalogue, FaultWatch &watch, QByteArray &output) {
        return convert(arguments, *form, catalogue, watch, output);
    };
    const QString output = arguments.output == "-" ? QString() : QString::fromStdString(arguments.output);
    return doPluginWork({arguments.plugins, make, output});
}
} // namespace

void addConvertCommand(CLI::App &app, Action &action)
{
    CLI::App *command =
        app.add_subcommand("convert", "Turn a script from JSON into the binary form, or back");
    const auto arguments = std::make_shared<ConvertArguments>();

    command
        ->add_option("in", arguments->input, "The script; its content tells its form. - reads standard input")
        ->type_name("IN")
        ->required();
    command
        ->add_option("out", arguments->output,
                     "The file to write, which is replaced whole. - writes standard output")
        ->type_name("OUT")
        ->required();
    command
        ->add_option("--to", arguments->form,
                     "The form of OUT: json or binary; what its name ends in, .json or .qms, unless given")
        ->type_name("FORM")
        ->check(CLI::IsMember({"json", "binary"}));
    arguments->plugins.addTo(*command);
    command->footer("Exit status: 0 OUT was written, 2 bad usage, bad script or a refused plug-in.\n\n"
                    "Example:\n"
                    "  stepctl convert clean.json clean.qms");
    command->callback([&action, arguments] { action = [arguments] { return convertAndWrite(*arguments); }; });
}
