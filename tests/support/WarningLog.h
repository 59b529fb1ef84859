#pragma once

#include <QStringList>
#include <QtGlobal>

#include <cstring>

/// Records what is logged while it lives, instead of letting it out.
///
/// A line is the bare text when it was logged as a warning of the default category without file, line and
/// function. Anything else is prefixed with what is wrong with it.
class WarningLog
{
public:
    WarningLog()
    {
        lines().clear();
        m_previous = qInstallMessageHandler(record);
    }

    ~WarningLog()
    {
        qInstallMessageHandler(m_previous);
    }

    /// The lines recorded since the last call.
    QStringList take() const
    {
        QStringList taken;
        taken.swap(lines());
        return taken;
    }

private:
    Q_DISABLE_COPY(WarningLog)

    static QStringList &lines()
    {
        static QStringList recorded;
        return recorded;
    }

    static void record(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        QString line = text;
        if (type != QtWarningMsg)
            line.prepend(QString("(message type %1) ").arg(int(type)));
        if (context.file || context.line != 0 || context.function)
            line.prepend("(has a context) ");
        if (!context.category || std::strcmp(context.category, "default") != 0)
            line.prepend("(not the default category) ");
        lines().append(line);
    }

    QtMessageHandler m_previous = nullptr;
};
