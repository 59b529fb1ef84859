#pragma once

#include <QtGlobal>

#include <memory>

class QSocketNotifier;

/// While it lives, an interruption or a termination from outside makes the application quit its event loops, so that what
/// it has made can be removed. Not on Windows, where such an end takes its course. There may be one object at a time.
class QuitOnSignal
{
public:
    QuitOnSignal();
    ~QuitOnSignal();

    /// Lets the signal that came, if there was one, take its course.
    void raiseAgain() const;

private:
    Q_DISABLE_COPY(QuitOnSignal)

    std::unique_ptr<QSocketNotifier> m_notifier;
};
