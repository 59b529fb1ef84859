#include "ExplainCommand.h"

#include "console/CommandLine.h"
#include "console/Console.h"
#include "host/checks/CheckGuide.h"

#include <memory>

namespace
{
int explain(const QString &name)
{
    const StepHost::Result<QString> text = StepHost::explainCheck(name);
    if (!text)
        return refuse(QStringLiteral("explain: ") + text.error());
    return writeResult(text->toUtf8(), QString()) ? ExitSuccess : ExitRefused;
}
} // namespace

void addExplainCommand(CommandLine &commandLine)
{
    Command command =
        commandLine.addCommand("explain", "Tell what a check protects, why, and how to mend what it finds");
    const auto name = std::make_shared<QString>();
    command.addArgument(
        {"check", "CHECK", "The check, such as clone.parent, or a family of checks, such as clone"}, *name);
    command.setAction([name] { return explain(*name); });
}
