#pragma once

#include <QStringList>

namespace StepHost
{
/// Notes from now on which objects of Qt's there are. To be called once.
void watchObjects();

/// The timers that run on the event loop of this thread for objects that were made since watchObjects().
QStringList liveTimers();
} // namespace StepHost
