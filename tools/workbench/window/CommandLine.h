#pragma once

#include "host/plugins/PluginChoice.h"

#include <QByteArrayList>
#include <QString>
#include <QStringList>

namespace Workbench
{
/// What the program was called with.
struct CommandLine
{
    enum class Task {
        Work, ///< Show the window.
        Tell, ///< Print `text`, such as the help, and end with success.
        Refuse, ///< Print `text`, which says what is wrong with the arguments, and end.
    };

    Task task = Task::Work;
    QString text;
    StepHost::PluginChoice plugins; ///< The plug-ins to load.
    QString language; ///< A code of Language::codes().
    QString script; ///< The script to open; empty for a new one.
    QByteArrayList
        qtArguments; ///< What QApplication is to be called with: the program and options of Qt's own.
};

/// Reads \a arguments, the program's name first. Needs no display, and a QCoreApplication only for the help. Among
/// Qt's own options are some that take the names of the program's, so Qt is to be given `qtArguments` alone.
///
/// \param systemLanguages what the language is chosen by when the arguments name none
CommandLine readCommandLine(const QStringList &arguments, const QStringList &systemLanguages);
} // namespace Workbench
