#include "CommandLine.h"

#include "tools/workbench/look/Language.h"

#include <QCommandLineParser>

namespace Workbench
{
namespace
{
const char *const qtOptions[] = {"platform", "platformtheme", "style",          "stylesheet",
                                 "display",  "geometry",      "qwindowgeometry"};

/// Options of Qt's, which its documentation describes, with values.
QList<QCommandLineOption> hiddenOptions()
{
    QList<QCommandLineOption> options;
    for (const char *name : qtOptions) {
        QCommandLineOption option(QString::fromLatin1(name), QString(), QStringLiteral("value"));
        option.setFlags(QCommandLineOption::HiddenFromHelp);
        options.append(option);
    }
    return options;
}

QByteArrayList argumentsForQt(const QStringList &arguments, const QCommandLineParser &parser)
{
    QByteArrayList forQt{arguments.value(0).toLocal8Bit()};
    for (const char *name : qtOptions) {
        const QString option = QString::fromLatin1(name);
        if (parser.isSet(option))
            forQt << QByteArray("-") + name << parser.value(option).toLocal8Bit();
    }
    return forQt;
}

CommandLine refusal(const QString &reason)
{
    CommandLine line;
    line.task = CommandLine::Task::Refuse;
    line.text = reason;
    return line;
}

CommandLine answer(const QString &text)
{
    CommandLine line;
    line.task = CommandLine::Task::Tell;
    line.text = text;
    return line;
}
} // namespace

CommandLine readCommandLine(const QStringList &arguments, const QStringList &systemLanguages)
{
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(
        QStringLiteral("Place, edit, run and save steps by hand.\n\n"
                       "Example: quillmap-workbench --lang zh_CN examples/names/clean.json"));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("script"), QStringLiteral("The script to open."),
                                 QStringLiteral("[script]"));
    const QString codes = Language::codes().join(QLatin1String(" or "));
    const QCommandLineOption language(
        QStringLiteral("lang"),
        QStringLiteral("The language of the texts: %1. By default the system's.").arg(codes),
        QStringLiteral("code"));
    const QCommandLineOption plugin(
        QStringLiteral("plugin"),
        QStringLiteral("Load this plug-in; may be given more than once. By default those that are found."),
        QStringLiteral("file"));
    const QCommandLineOption place(
        QStringLiteral("plugin-path"),
        QStringLiteral(
            "Search this folder for plug-ins, too, before all others; may be given more than once."),
        QStringLiteral("folder"));
    parser.addOptions({language, plugin, place});
    parser.addOptions(hiddenOptions());

    if (!parser.parse(arguments))
        return refusal(parser.errorText());
    if (parser.isSet(version))
        return answer(QStringLiteral("%1 %2\n").arg(QCoreApplication::applicationName(),
                                                    QCoreApplication::applicationVersion()));
    if (parser.isSet(help) || parser.isSet(QStringLiteral("help-all")))
        return answer(parser.helpText());

    CommandLine line;
    line.language = parser.isSet(language) ? parser.value(language) : Language::codeFor(systemLanguages);
    if (!Language::codes().contains(line.language))
        return refusal(QStringLiteral("there is no language \"%1\"; there are %2").arg(line.language, codes));
    if (parser.positionalArguments().size() > 1)
        return refusal(QStringLiteral("only one script can be opened"));
    line.script = parser.positionalArguments().value(0);
    line.plugins = {parser.values(plugin), parser.values(place)};
    line.qtArguments = argumentsForQt(arguments, parser);
    return line;
}
} // namespace Workbench
