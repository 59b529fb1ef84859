#pragma once

#include <QStringList>

namespace StepHost
{
/// As long as it lives, lines on Qt's warning log that come from the thread that created it are collected.
/// Messages of other kinds and of other threads go where they went before. Captures may be nested; the
/// inner one takes the lines.
class WarningCapture
{
public:
    WarningCapture();
    ~WarningCapture();

    /// The lines since the last call.
    QStringList takeLines();

private:
    Q_DISABLE_COPY(WarningCapture)

    friend struct CaptureHandler;

    QStringList m_lines;
    WarningCapture *m_outer = nullptr;
};
} // namespace StepHost
