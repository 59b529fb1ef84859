#pragma once

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

/// What a run of stepctl left behind.
struct Run
{
    int status = -1; ///< -1: it crashed or hung.
    QString output;
    QString errors;
};

/// A folder in which stepctl, which the definition STEPCTL_FILE names, runs.
class StepctlFolder
{
public:
    StepctlFolder()
    {
        environment.remove("QUILLMAP_PLUGIN_PATH");
    }

    QString path() const
    {
        return m_folder.path();
    }

    /// Runs stepctl with \a input on its standard input. The line ends of its texts are line feeds.
    Run run(const QStringList &arguments, const QByteArray &input = QByteArray()) const
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(path());
        process.start(STEPCTL_FILE, arguments);
        process.write(input);
        process.closeWriteChannel();
        Run result;
        if (process.waitForFinished(120000) && process.exitStatus() == QProcess::NormalExit)
            result.status = process.exitCode();
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

private:
    QTemporaryDir m_folder;
};
