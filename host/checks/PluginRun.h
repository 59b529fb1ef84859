#pragma once

#include "CheckProcess.h"
#include "host/files/LeftBehind.h"

#include <QEventLoop>
#include <QSet>

#include <functional>

namespace StepHost
{
/// Does checks of one plug-in, each in a process of its own, or in two when both have to find the same.
class PluginRun
{
public:
    /// Calls \a progress after each check.
    PluginRun(const QString &fileName, const CheckRunOptions &options, const std::function<void()> &progress);

    /// How \a checks ended, in their order.
    QVector<CheckProcessEnd> run(const QVector<PluginCheck> &checks);

    /// With the file for what an older release gives, when there is to be one.
    const CheckRunOptions &options() const
    {
        return m_options;
    }

    /// Whether the program was told to quit before all of them had ended.
    bool isInterrupted() const
    {
        return m_ended < m_starts.size();
    }

private:
    Q_DISABLE_COPY(PluginRun)

    /// The processes of one check.
    struct Job
    {
        PluginCheck check;
        QVector<CheckProcessEnd> ends; ///< One for each world.
        int running = 0;
    };

    struct Start
    {
        int job;
        int world;
    };

    static CheckProcessEnd togetherOf(const Job &job);
    QVector<CheckProcessEnd> runHere(const QVector<PluginCheck> &checks) const;
    QVector<CheckProcessEnd> notStarted(const QVector<PluginCheck> &checks) const;
    void startMore();
    void start(const Start &start);
    void finish(const Start &start, const CheckProcessEnd &end);

    QString m_fileName;
    CheckRunOptions m_options;
    std::function<void()> m_progress;
    QString m_preload;
    TemporaryFolder m_folder;
    QVector<Job> m_jobs;
    QVector<Start> m_starts;
    QSet<CheckProcess *> m_processes; ///< Those that run.
    int m_started = 0;
    int m_ended = 0;
    QEventLoop m_loop;
};
} // namespace StepHost
