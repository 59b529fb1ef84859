#include "MemoryUse.h"

#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include <algorithm>
#include <limits>

namespace StepHost
{
std::optional<qint64> allocatedMemory()
{
#if defined(__GLIBC__) && (__GLIBC__ > 2 || __GLIBC_MINOR__ >= 33)
    const struct mallinfo2 info = mallinfo2();
    // A sanitizer's allocator knows nothing of this.
    if (info.arena == 0 && info.hblkhd == 0)
        return std::nullopt;
    return qint64(info.uordblks + info.hblkhd);
#else
    return std::nullopt;
#endif
}

qint64 bytesLeftByEach(const std::function<void()> &action)
{
    constexpr int callsToWarmUp = 20;
    constexpr int calls = 40;
    constexpr int rounds = 3;
    for (int i = 0; i < callsToWarmUp; ++i)
        action();
    qint64 least = std::numeric_limits<qint64>::max();
    for (int round = 0; round < rounds; ++round) {
        const std::optional<qint64> before = allocatedMemory();
        if (!before)
            return 0;
        for (int i = 0; i < calls; ++i)
            action();
        least = std::min(least, (allocatedMemory().value_or(*before) - *before) / calls);
    }
    return std::max(qint64(0), least);
}
} // namespace StepHost
