#include "WarningCapture.h"

#include "host/plugins/StepTexts.h"

#include <QMutex>
#include <QMutexLocker>

#include <atomic>
#include <utility>

namespace StepHost
{
namespace
{
thread_local WarningCapture *innermostCapture = nullptr;

// The handler is one for the whole process: the first capture installs it, the last one takes it out.
QBasicMutex installMutex;
int captureCount = 0;
std::atomic<QtMessageHandler> previousHandler{nullptr};

QString levelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("debug");
    case QtInfoMsg:
        return QStringLiteral("info");
    case QtCriticalMsg:
        return QStringLiteral("critical");
    default:
        return QStringLiteral("warning");
    }
}
} // namespace

struct CaptureHandler
{
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (type == QtWarningMsg && innermostCapture)
            innermostCapture->take(message);
        else if (type != QtFatalMsg && innermostCapture
                 && innermostCapture->m_levels == WarningCapture::AllLevels)
            innermostCapture->takeOther(levelName(type), message);
        else if (const QtMessageHandler previous = previousHandler)
            previous(type, context, message);
    }
};

WarningCapture::WarningCapture(Levels levels) : m_levels(levels), m_outer(innermostCapture)
{
    innermostCapture = this;
    const QMutexLocker lock(&installMutex);
    if (captureCount++ == 0)
        previousHandler = qInstallMessageHandler(CaptureHandler::handle);
}

WarningCapture::~WarningCapture()
{
    innermostCapture = m_outer;
    const QMutexLocker lock(&installMutex);
    if (--captureCount == 0)
        qInstallMessageHandler(previousHandler);
}

void WarningCapture::take(const QString &message)
{
    constexpr int mostLines = 10000;
    constexpr int mostCharacters = 10000000;
    if (m_lines.size() == mostLines || m_characters >= mostCharacters) {
        ++m_dropped;
        return;
    }
    m_lines.append(takenText(message));
    m_characters += m_lines.last().size();
}

QStringList WarningCapture::takeLines()
{
    QStringList lines;
    lines.swap(m_lines);
    if (m_dropped > 0)
        lines.append(QStringLiteral("... and %1 more").arg(m_dropped));
    m_characters = 0;
    m_dropped = 0;
    return lines;
}

void WarningCapture::takeOther(const QString &level, const QString &message)
{
    constexpr int most = 1000;
    if (m_others.size() < most)
        m_others.append(level + QLatin1String(": ") + takenText(message));
}

QStringList WarningCapture::takeOthers()
{
    return std::exchange(m_others, {});
}
} // namespace StepHost
