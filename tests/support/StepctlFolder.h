#pragma once

#include "ProgramStart.h"
#include "TestPaths.h"

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <functional>

/// What a run of stepctl left behind.
struct Run
{
    int status = -1; ///< -1: it crashed or hung.
    bool hasCrashed = false;
    QString output;
    QString errors;
};

/// A folder in which stepctl runs.
class StepctlFolder
{
public:
    StepctlFolder()
    {
        environment.remove("QUILLMAP_PLUGIN_PATH");
        environment.insert("XDG_DATA_HOME", m_folder.filePath(".data")); // No plug-ins of the user's.
    }

    QString path() const
    {
        return m_folder.path();
    }

    /// Runs stepctl with \a input on its standard input. The line ends of its texts are line feeds.
    Run run(const QStringList &arguments, const QByteArray &input = QByteArray()) const
    {
        Process process(prepare);
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(path());
        startProgram(process, TestPaths::stepctl(), arguments);
        process.write(input);
        process.closeWriteChannel();
        Run result;
        if (process.waitForFinished(120000)) {
            result.hasCrashed = process.exitStatus() == QProcess::CrashExit;
            result.status = result.hasCrashed ? -1 : process.exitCode();
        }
        result.output = QString::fromUtf8(process.readAllStandardOutput()).remove('\r');
        result.errors = QString::fromUtf8(process.readAllStandardError()).remove('\r');
        return result;
    }

    /// Writes the file \a name. Returns the name.
    QString write(const QString &name, const QByteArray &content) const
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return name;
    }

    QByteArray contentOf(const QString &name) const
    {
        QFile file(m_folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();

    /// When given, called in the new process before it becomes stepctl; to set its limits. Not on Windows.
    std::function<void()> prepare;

private:
    class Process : public QProcess
    {
    public:
        explicit Process(const std::function<void()> &prepare) : m_prepare(prepare) { }

    protected:
        void setupChildProcess() override
        {
            if (m_prepare)
                m_prepare();
        }

    private:
        std::function<void()> m_prepare;
    };

    QTemporaryDir m_folder;
};
