#pragma once

#include <QMutex>
#include <QSemaphore>
#include <QString>

#include <memory>

class QThread;

/// A line on standard error that says how far long work is, also while a part of it takes long. It first shows after a
/// while, so that short work shows none, and goes away when this object does. There has to be a terminal.
class ProgressLine
{
public:
    ProgressLine();
    ~ProgressLine();

    /// Notes that the line is \a text from now on. It is shown in one line, which is cut to the terminal's width. Cheap
    /// enough to be called for each of many steps.
    void update(const QString &text);

private:
    Q_DISABLE_COPY(ProgressLine)

    void show();

    QMutex m_mutex; // Guards the text.
    QString m_text;
    QString m_shown;
    QSemaphore m_isOver;
    std::unique_ptr<QThread> m_clock;
};
