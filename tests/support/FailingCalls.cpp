#include "FailingCalls.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{
char failing[16] = "";
int left = 0;
int failure = 0;

__attribute__((constructor)) void readEnvironment()
{
    if (const char *text = std::getenv("FAILING_CALL"))
        std::sscanf(text, "%15s %d %d", failing, &left, &failure);
}

// Whether this call of `name` is to fail; errno says how then.
bool fails(const char *name)
{
    if (left <= 0 || std::strcmp(name, failing) != 0 || --left > 0)
        return false;
    if (const char *mark = std::getenv("FAILING_CALL_MARK"))
        close(int(syscall(SYS_openat, AT_FDCWD, mark, O_CREAT | O_WRONLY, 0600)));
    if (failure < 0)
        raise(-failure);
    errno = failure;
    return failure > 0;
}

// The function that would be called without this library.
template<typename Function>
Function *next(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

bool makesFile(int flags)
{
    return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
}

} // namespace

void FailingCalls::fail(const char *name, int n, int error)
{
    std::snprintf(failing, sizeof failing, "%s", name);
    left = n;
    failure = error;
}

bool FailingCalls::hasFailed()
{
    return left == 0;
}

extern "C" {
// The one that Qt calls, and the one that others do.
int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = makesFile(flags) ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    if (makesFile(flags) && fails("open"))
        return -1;
    return next<int(const char *, int, ...)>("open64")(path, flags, mode);
}

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = makesFile(flags) ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return open64(path, flags, mode);
}

ssize_t write(int file, const void *bytes, size_t size)
{
    return fails("write") ? -1 : next<ssize_t(int, const void *, size_t)>("write")(file, bytes, size);
}

int fsync(int file)
{
    return fails("fsync") ? -1 : next<int(int)>("fsync")(file);
}

int fdatasync(int file)
{
    return fails("fsync") ? -1 : next<int(int)>("fdatasync")(file);
}

int fchown(int file, uid_t owner, gid_t group) noexcept
{
    return fails("fchown") ? -1 : next<int(int, uid_t, gid_t)>("fchown")(file, owner, group);
}

int linkat(int oldFolder, const char *oldPath, int newFolder, const char *newPath, int flags) noexcept
{
    return fails("linkat") ? -1
                           : next<int(int, const char *, int, const char *, int)>("linkat")(
                               oldFolder, oldPath, newFolder, newPath, flags);
}

int rename(const char *oldPath, const char *newPath) noexcept
{
    return fails("rename") ? -1 : next<int(const char *, const char *)>("rename")(oldPath, newPath);
}
}
