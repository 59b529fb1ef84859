#include "QuitOnSignal.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#ifndef Q_OS_WIN
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace
{
constexpr int signalsThatEnd[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t caught = 0;
int channel[2] = {-1, -1};

// All that a handler may do is to wake the event loop.
void note(int signal)
{
    caught = signal;
    const char byte = 0;
    static_cast<void>(write(channel[1], &byte, 1) + 1);
}
} // namespace

QuitOnSignal::QuitOnSignal()
{
    if (pipe2(channel, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(channel[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, QCoreApplication::instance(),
                     [] { QCoreApplication::quit(); });
    for (const int signal : signalsThatEnd) {
        // Whoever started this program wants the signal ignored, as nohup does.
        if (std::signal(signal, note) == SIG_IGN)
            std::signal(signal, SIG_IGN);
    }
}

QuitOnSignal::~QuitOnSignal()
{
    for (const int signal : signalsThatEnd)
        std::signal(signal, SIG_DFL);
    m_notifier.reset();
    close(channel[0]);
    close(channel[1]);
}

void QuitOnSignal::raiseAgain() const
{
    if (caught == 0)
        return;
    std::signal(caught, SIG_DFL);
    std::raise(caught);
}
#else
QuitOnSignal::QuitOnSignal() = default;

QuitOnSignal::~QuitOnSignal() = default;

void QuitOnSignal::raiseAgain() const { }
#endif
