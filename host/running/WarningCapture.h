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
    /// What is collected.
    enum Levels {
        WarningsOnly,
        AllLevels, ///< Messages of the other levels, too, but for fatal ones.
    };

    explicit WarningCapture(Levels levels = WarningsOnly);
    ~WarningCapture();

    /// The lines since the last call. Of more than 10,000 lines, or 10,000,000 characters, only the first are there, and
    /// a last one that tells how many are missing.
    QStringList takeLines();

    /// The first 1,000 messages of other levels since the last call, each with its level in front: `debug: text`.
    QStringList takeOthers();

private:
    Q_DISABLE_COPY(WarningCapture)

    friend struct CaptureHandler;

    void take(const QString &message);
    void takeOther(const QString &level, const QString &message);

    const Levels m_levels;
    QStringList m_lines;
    QStringList m_others;
    int m_characters = 0;
    int m_dropped = 0;
    WarningCapture *m_outer = nullptr;
};
} // namespace StepHost
