#include "ScriptRun.h"

#include <QThread>

namespace Workbench
{
ScriptRun::ScriptRun() = default;

ScriptRun::~ScriptRun()
{
    end();
    if (m_thread)
        m_thread->wait();
}

void ScriptRun::start(const Runner &runner)
{
    stepResults.resize(script.steps.size());
    clock.start();
    m_thread.reset(QThread::create([this, runner] { execute(runner); }));
    connect(m_thread.get(), &QThread::finished, this, &ScriptRun::finished);
    m_thread->start();
}

void ScriptRun::execute(const Runner &runner)
{
    StepHost::RunObserver observer;
    observer.starting = [this](int index) { current = index; };
    observer.finished = [this](int index, const StepHost::StepResult &stepResult) {
        stepResults[std::size_t(index)] = stepResult;
    };
    observer.progress = [this](int count, int) { done = count; };
    observer.before = [this](int index, VariableScope &) { return orderBefore(index); };
    observer.wantsToWait = [this] { return hasPauses(); };
    observer.shouldStop = [this] { return m_shouldStop.load(); };
    observer.shouldEnd = [this] { return m_shouldEnd.load(); };
    result = runner(script, variables, observer);
}

bool ScriptRun::hasPauses() const
{
    const QMutexLocker locker(&m_mutex);
    return m_pauseFrom >= 0 || !m_pauses.isEmpty();
}

StepHost::RunOrder ScriptRun::orderBefore(int index)
{
    QMutexLocker locker(&m_mutex);
    const bool isReached = m_pauseFrom >= 0 && index >= m_pauseFrom;
    if (!isReached && !m_pauses.contains(index))
        return StepHost::RunOrder::GoOn;
    m_pauseFrom = -1;
    m_order.reset();
    m_waitingBefore = index;
    emit paused();
    while (!m_order && !m_shouldStop && !m_shouldEnd)
        m_hasOrder.wait(&m_mutex);
    m_waitingBefore = -1;
    return m_order.value_or(StepHost::RunOrder::Stop);
}

void ScriptRun::stop()
{
    const QMutexLocker locker(&m_mutex);
    m_shouldStop = true;
    m_hasOrder.wakeAll();
}

void ScriptRun::end()
{
    const QMutexLocker locker(&m_mutex);
    m_shouldStop = true;
    m_shouldEnd = true;
    m_hasOrder.wakeAll();
}

bool ScriptRun::isAskedToStop() const
{
    return m_shouldStop;
}

bool ScriptRun::isFinished() const
{
    return m_thread && m_thread->isFinished();
}

void ScriptRun::setPauses(const QSet<int> &indexes)
{
    const QMutexLocker locker(&m_mutex);
    m_pauses = indexes;
}

void ScriptRun::setPauseFrom(int index)
{
    const QMutexLocker locker(&m_mutex);
    m_pauseFrom = index;
}

int ScriptRun::waitingBefore() const
{
    const QMutexLocker locker(&m_mutex);
    return m_waitingBefore;
}

void ScriptRun::goOn(StepHost::RunOrder order)
{
    const QMutexLocker locker(&m_mutex);
    if (m_waitingBefore < 0)
        return;
    // From here on it does not wait any more, also for who asks before it has noticed.
    m_waitingBefore = -1;
    m_order = order;
    m_hasOrder.wakeAll();
}
} // namespace Workbench
