#include "LiveTimers.h"

#include <QAbstractEventDispatcher>
#include <QMutex>
#include <QMutexLocker>
#include <QSet>

#include <cstring>

// Qt's hooks for debuggers; their form is fixed.
extern Q_CORE_EXPORT quintptr qtHookData[];

namespace StepHost
{
namespace
{
constexpr int addHook = 3;
constexpr int removeHook = 4;

using Hook = void (*)(QObject *);

Hook nextAdd = nullptr;
Hook nextRemove = nullptr;
QBasicMutex mutex;

// Never deleted: objects are removed until the very end of the process.
QSet<QObject *> &objects()
{
    static auto *set = new QSet<QObject *>;
    return *set;
}

void add(QObject *object)
{
    {
        const QMutexLocker lock(&mutex);
        objects().insert(object);
    }
    if (nextAdd)
        nextAdd(object);
}

void remove(QObject *object)
{
    {
        const QMutexLocker lock(&mutex);
        objects().remove(object);
    }
    if (nextRemove)
        nextRemove(object);
}
} // namespace

void watchObjects()
{
    std::memcpy(&nextAdd, &qtHookData[addHook], sizeof nextAdd);
    std::memcpy(&nextRemove, &qtHookData[removeHook], sizeof nextRemove);
    qtHookData[addHook] = quintptr(&add);
    qtHookData[removeHook] = quintptr(&remove);
}

QStringList liveTimers()
{
    const QAbstractEventDispatcher *dispatcher = QAbstractEventDispatcher::instance();
    QStringList timers;
    if (!dispatcher)
        return timers;
    const QMutexLocker lock(&mutex);
    for (QObject *object : qAsConst(objects())) {
        // The class of an object may be gone with its library: only its address is used.
        const auto registered = dispatcher->registeredTimers(object);
        for (const QAbstractEventDispatcher::TimerInfo &timer : registered)
            timers.append(QStringLiteral("number %1, every %2 ms").arg(timer.timerId).arg(timer.interval));
    }
    return timers;
}
} // namespace StepHost
