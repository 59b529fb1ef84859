#include "WarningCapture.h"

#include "host/plugins/StepTexts.h"

#include <QMutex>
#include <QMutexLocker>

#include <atomic>

namespace StepHost
{
namespace
{
thread_local WarningCapture *innermostCapture = nullptr;

// The handler is one for the whole process: the first capture installs it, the last one takes it out.
QBasicMutex installMutex;
int captureCount = 0;
std::atomic<QtMessageHandler> previousHandler{nullptr};
} // namespace

struct CaptureHandler
{
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (type == QtWarningMsg && innermostCapture)
            innermostCapture->m_lines.append(takenText(message));
        else if (const QtMessageHandler previous = previousHandler)
            previous(type, context, message);
    }
};

WarningCapture::WarningCapture() : m_outer(innermostCapture)
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

QStringList WarningCapture::takeLines()
{
    QStringList lines;
    lines.swap(m_lines);
    return lines;
}
} // namespace StepHost
