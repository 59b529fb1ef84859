#include "RunCommand.h"

#include "PluginOption.h"

#include <memory>

void addRunCommand(CLI::App &app, Action &action)
{
    CLI::App *command = app.add_subcommand("run", "Run a script");
    const auto plugins = std::make_shared<PluginOption>();
    plugins->addTo(*command);
    command->callback([&action, plugins] {
        action = [plugins] {
            StepHost::StepCatalogue catalogue;
            return plugins->load(catalogue) ? ExitSuccess : ExitRefused;
        };
    });
}
