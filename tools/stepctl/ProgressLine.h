#pragma once

#include <QElapsedTimer>

/// A line on standard error that says how far a long run is. It first shows after a while, so that a short
/// run shows none, and goes away when this object does.
class ProgressLine
{
public:
    /// \a task is what the line begins with, such as `running: step`.
    explicit ProgressLine(const char *task);
    ~ProgressLine();

    /// Notes that \a done of \a total are done. Cheap enough to be called for each.
    void update(int done, int total);

private:
    Q_DISABLE_COPY(ProgressLine)

    const char *m_task;
    QElapsedTimer m_timer;
    qint64 m_nextShow;
    int m_width = 0;
};
