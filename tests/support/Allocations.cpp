#include "Allocations.h"

#include <algorithm>
#include <cstdlib>

#if defined(__SANITIZE_ADDRESS__)
#define QUILLMAP_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QUILLMAP_SANITIZED
#endif
#endif

#if defined(__GLIBC__) && !defined(QUILLMAP_SANITIZED)
#include <malloc.h>

namespace
{
bool isWatching = false;
Allocations seen;

void *noted(void *block)
{
    if (isWatching && block) {
        ++seen.count;
        seen.keptBytes += qint64(malloc_usable_size(block));
        seen.mostBytes = std::max(seen.mostBytes, seen.keptBytes);
    }
    return block;
}

void noteRelease(void *block)
{
    if (isWatching && block)
        seen.keptBytes -= qint64(malloc_usable_size(block));
}
} // namespace

// The C library lets a program stand in for its allocator; `new` and Qt's containers end here too.
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void __libc_free(void *block);

Q_DECL_EXPORT void *malloc(std::size_t size)
{
    return noted(__libc_malloc(size));
}

Q_DECL_EXPORT void *calloc(std::size_t count, std::size_t size)
{
    return noted(__libc_calloc(count, size));
}

Q_DECL_EXPORT void *realloc(void *block, std::size_t size)
{
    noteRelease(block);
    return noted(__libc_realloc(block, size));
}

Q_DECL_EXPORT void free(void *block)
{
    noteRelease(block);
    __libc_free(block);
}
}

Allocations allocationsOf(const std::function<void()> &work)
{
    seen = Allocations();
    seen.isKnown = true;
    isWatching = true;
    work();
    isWatching = false;
    return seen;
}

#else

Allocations allocationsOf(const std::function<void()> &work)
{
    work();
    return Allocations();
}

#endif
