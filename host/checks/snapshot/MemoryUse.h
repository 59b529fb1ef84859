#pragma once

#include <QtGlobal>

#include <functional>
#include <optional>

namespace StepHost
{
/// The bytes that this process has allocated and not freed; empty where the system, or a sanitizer, does not tell.
std::optional<qint64> allocatedMemory();

/// How many bytes a call of \a action leaves allocated each time, as far as it goes on: the first calls may fill caches.
/// 0 where that is not told.
qint64 bytesLeftByEach(const std::function<void()> &action);
} // namespace StepHost
