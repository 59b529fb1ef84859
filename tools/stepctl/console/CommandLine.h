#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace CLI
{
class App;
}

/// How an argument or option is called, and what the help says about it.
struct Parameter
{
    const char *name; ///< Such as `script` or `--output`.
    const char *type; ///< What stands for its value in the help, such as `FILE`.
    const char *help;
};

/// A subcommand that is being set up. What its arguments and options are read into has to live until
/// CommandLine::run() has returned; it keeps its value when the command line does not give one.
class Command
{
public:
    /// Adds an argument that has to be given.
    void addArgument(const Parameter &parameter, QString &value);

    /// Adds arguments of which there may be any number, none included.
    void addArguments(const Parameter &parameter, QStringList &values);

    void addOption(const Parameter &parameter, QString &value);

    /// Adds an option that may be given more than once, with one value each time.
    void addOption(const Parameter &parameter, QStringList &values);

    /// Adds an option whose value has to be one of \a choices.
    void addChoice(const Parameter &parameter, const QStringList &choices, QString &value);

    /// Adds an option whose value has to be a number from \a least to \a greatest.
    void addNumber(const Parameter &parameter, int least, int greatest, int &value);
    void addNumber(const Parameter &parameter, double least, double greatest, double &value);

    /// Adds an option whose value has to be a size in bytes of at least \a least, such as `4096`, `512M` or `2G`.
    void addSize(const Parameter &parameter, qint64 least, std::optional<qint64> &value);

    void addFlag(const char *name, const char *help, bool &value);

    /// Sets what the help says below the options: the exit statuses and an example.
    void setFooter(const char *text);

    /// Sets what CommandLine::run() does when this subcommand is given: \a action, which returns the exit status.
    void setAction(std::function<int()> action);

private:
    friend class CommandLine;
    Command(CLI::App &app, std::function<int()> &chosen);

    CLI::App &m_app;
    std::function<int()> &m_chosen;
};

/// The command line of a program with subcommands. It answers `--help` and `--version` by itself, and tells what is
/// wrong with the arguments.
class CommandLine
{
public:
    /// \a version is the answer to `--version`.
    CommandLine(const char *program, const char *description, const char *version);
    ~CommandLine();

    /// Sets what the help says below the list of the subcommands.
    void setFooter(const char *text);

    Command addCommand(const char *name, const char *description);

    /// Reads the arguments of the application, which has to exist, and does what the subcommand among them asks for.
    /// Returns its exit status; ExitRefused, after the user has been told why on standard error, when the arguments
    /// are wrong; ExitSuccess after an answer.
    int run();

private:
    Q_DISABLE_COPY(CommandLine)

    std::unique_ptr<CLI::App> m_app;
    std::function<int()> m_chosen;
};
