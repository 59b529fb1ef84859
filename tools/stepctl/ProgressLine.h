#pragma once

#include <QElapsedTimer>

/// A line on standard error that says how far a long run is. It first shows after a while, so that a short
/// run shows none, and goes away when this object does.
class ProgressLine
{
public:
    ProgressLine();
    ~ProgressLine();

    /// Notes that \a done of \a total steps had their turn. Cheap enough to be called for each step.
    void update(int done, int total);

private:
    Q_DISABLE_COPY(ProgressLine)

    QElapsedTimer m_timer;
    qint64 m_nextShow;
    int m_width = 0;
};
