#pragma once

#include <QtGlobal>

#include <functional>

/// What a piece of work asked of the memory allocator.
struct Allocations
{
    bool isKnown = false; ///< Whether this build can tell.
    qint64 count = 0; ///< Blocks that were asked for.
    qint64 mostBytes = 0; ///< The most that was held at a time beyond what was held before.
    qint64 keptBytes = 0; ///< What was held at the end beyond what was held before.
};

/// Runs \a work and watches the allocator meanwhile. Only for programs of one thread.
///
/// Known with the GNU C library, without sanitizers.
Allocations allocationsOf(const std::function<void()> &work);
