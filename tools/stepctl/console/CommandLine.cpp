#include "CommandLine.h"

#include "Console.h"
#include "host/values/QuotedText.h"
#include "host/values/Suggestion.h"

#include <CLI/CLI.hpp>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace
{
// The way CLI11 takes them: as UTF-8, the last one first, without the program's name.
std::vector<std::string> reversedArguments()
{
    std::vector<std::string> arguments;
    const QStringList given = QCoreApplication::arguments().mid(1);
    std::transform(given.rbegin(), given.rend(), std::back_inserter(arguments),
                   [](const QString &argument) { return argument.toStdString(); });
    return arguments;
}

// The names of `options`, with their dashes.
QStringList namesOf(const std::vector<const CLI::Option *> &options)
{
    QStringList names;
    for (const CLI::Option *option : options) {
        for (const std::string &name : option->get_lnames())
            names.append(QLatin1String("--") + QString::fromStdString(name));
    }
    return names;
}

// The option of the given subcommand that was probably meant by the first one that is unknown; empty when there is none.
QString meantOption(const CLI::App &app)
{
    for (const CLI::App *command : app.get_subcommands()) {
        for (const std::string &argument : command->remaining()) {
            if (argument.rfind("--", 0) != 0)
                continue;
            const QString name = QString::fromStdString(argument.substr(0, argument.find('=')));
            return StepHost::nearestOf(name, namesOf(command->get_options()));
        }
    }
    return QString();
}

// Says what is wrong as CLI11 does. The arguments that it repeats may hold anything.
std::string failureText(const CLI::App *app, const CLI::Error &error)
{
    const std::string reason = error.what();
    const std::string advice = CLI::FailureMessage::simple(app, error).substr(reason.size());
    const QString meant = meantOption(*app);
    const QString question = meant.isEmpty() ? QString() : QStringLiteral("; did you mean %1?").arg(meant);
    return app->get_name() + ": "
        + StepHost::messageLine(QString::fromStdString(reason) + question).toStdString() + advice;
}

// What is wrong with the command that is given first; empty when nothing is, or none is.
QString mistakeInCommand(const CLI::App &app, const QStringList &arguments)
{
    const QString given = arguments.isEmpty() ? QString() : arguments.first();
    QStringList names;
    for (const CLI::App *command : app.get_subcommands(nullptr))
        names.append(QString::fromStdString(command->get_name()));
    if (given.isEmpty() || given.startsWith(QLatin1Char('-')) || names.contains(given))
        return QString();
    return StepHost::notAmong(QStringLiteral("command"), given, names);
}

CLI::Option *addText(CLI::App &app, const Parameter &parameter, QString &value)
{
    const auto read = [&value](const std::string &text) { value = QString::fromStdString(text); };
    return app.add_option_function<std::string>(parameter.name, read, parameter.help)
        ->type_name(parameter.type);
}

CLI::Option *addTexts(CLI::App &app, const Parameter &parameter, QStringList &values)
{
    const auto read = [&values](const std::vector<std::string> &texts) {
        for (const std::string &text : texts)
            values.append(QString::fromStdString(text));
    };
    return app.add_option_function<std::vector<std::string>>(parameter.name, read, parameter.help)
        ->type_name(parameter.type);
}

bool readNumber(const QString &text, int &number)
{
    bool isNumber = false;
    number = text.toInt(&isNumber);
    return isNumber;
}

bool readNumber(const QString &text, double &number)
{
    bool isNumber = false;
    number = text.toDouble(&isNumber);
    return isNumber && std::isfinite(number);
}

// A number of bytes, or of a unit of them.
std::optional<qint64> readSize(const QString &text)
{
    constexpr int bitsOfUnit = 10;
    const QString units = QStringLiteral("KMGT");
    const int unit = text.isEmpty() ? -1 : units.indexOf(text.back().toUpper());
    const QString digits = unit < 0 ? text : text.chopped(1);
    const int shift = bitsOfUnit * (unit + 1);
    bool isNumber = false;
    const qint64 number = digits.toLongLong(&isNumber);
    const bool hasOnlyDigits =
        std::all_of(digits.begin(), digits.end(), [](QChar character) { return character.isDigit(); });
    if (!isNumber || !hasOnlyDigits || number > std::numeric_limits<qint64>::max() >> shift)
        return std::nullopt;
    return number << shift;
}

// CLI11's own numbers may be hexadecimal or octal, and "nan" is in every range for it.
template<typename Number>
void addNumberTo(CLI::App &app, const Parameter &parameter, Number least, Number greatest, Number &value)
{
    const auto check = [](const std::string &text) {
        Number number;
        return readNumber(QString::fromStdString(text), number) ? std::string() : "not a number: " + text;
    };
    const auto read = [&value](const std::string &text) { readNumber(QString::fromStdString(text), value); };
    app.add_option_function<std::string>(parameter.name, read, parameter.help)
        ->type_name(parameter.type)
        ->check(check)
        ->check(CLI::Range(least, greatest));
}
} // namespace

Command::Command(CLI::App &app, std::function<int()> &chosen) : m_app(app), m_chosen(chosen) { }

void Command::addArgument(const Parameter &parameter, QString &value)
{
    addText(m_app, parameter, value)->required();
}

void Command::addArguments(const Parameter &parameter, QStringList &values)
{
    addTexts(m_app, parameter, values);
}

void Command::addOption(const Parameter &parameter, QString &value)
{
    addText(m_app, parameter, value);
}

void Command::addOption(const Parameter &parameter, QStringList &values)
{
    addTexts(m_app, parameter, values)->allow_extra_args(false);
}

void Command::addChoice(const Parameter &parameter, const QStringList &choices, QString &value)
{
    const auto check = [choices](const std::string &text) {
        const QString given = QString::fromStdString(text);
        return choices.contains(given)
            ? std::string()
            : StepHost::notAmong(QStringLiteral("value"), given, choices).toStdString();
    };
    const QString shown = QLatin1Char('{') + choices.join(QLatin1Char(',')) + QLatin1Char('}');
    addText(m_app, parameter, value)->check(check, shown.toStdString());
}

void Command::addNumber(const Parameter &parameter, int least, int greatest, int &value)
{
    addNumberTo(m_app, parameter, least, greatest, value);
}

void Command::addNumber(const Parameter &parameter, double least, double greatest, double &value)
{
    addNumberTo(m_app, parameter, least, greatest, value);
}

void Command::addSize(const Parameter &parameter, qint64 least, std::optional<qint64> &value)
{
    const auto check = [least](const std::string &text) {
        const std::optional<qint64> size = readSize(QString::fromStdString(text));
        return size.value_or(0) >= least
            ? std::string()
            : "not a size of " + shownSize(least).toStdString() + " or more, such as 512M or 2G: " + text;
    };
    const auto read = [&value](const std::string &text) { value = readSize(QString::fromStdString(text)); };
    m_app.add_option_function<std::string>(parameter.name, read, parameter.help)
        ->type_name(parameter.type)
        ->check(check);
}

void Command::addFlag(const char *name, const char *help, bool &value)
{
    m_app.add_flag(name, value, help);
}

void Command::setFooter(const char *text)
{
    m_app.footer(text);
}

void Command::setAction(std::function<int()> action)
{
    m_app.callback([&chosen = m_chosen, action = std::move(action)] { chosen = action; });
}

CommandLine::CommandLine(const char *program, const char *description, const char *version)
    : m_app(std::make_unique<CLI::App>(description, program))
{
    m_app->set_version_flag("--version", version);
    m_app->require_subcommand(0, 1);
    m_app->failure_message(failureText);
    m_app->allow_windows_style_options(false); // A slash begins a path on every system.
}

CommandLine::~CommandLine() = default;

void CommandLine::setFooter(const char *text)
{
    m_app->footer(text);
}

Command CommandLine::addCommand(const char *name, const char *description)
{
    return Command(*m_app->add_subcommand(name, description), m_chosen);
}

int CommandLine::run()
{
    const QString mistake = mistakeInCommand(*m_app, QCoreApplication::arguments().mid(1));
    if (!mistake.isEmpty())
        return refuse(mistake);
    try {
        m_app->parse(reversedArguments());
    } catch (const CLI::ParseError &error) {
        std::ostringstream answer;
        if (m_app->exit(error, answer, std::cerr) != 0)
            return ExitRefused;
        return writeResult(QByteArray::fromStdString(answer.str()), QString()) ? ExitSuccess : ExitRefused;
    }
    if (!m_chosen) {
        std::cerr << m_app->get_name() << ": a subcommand is required\n\n" << m_app->help();
        return ExitRefused;
    }
    return m_chosen();
}
