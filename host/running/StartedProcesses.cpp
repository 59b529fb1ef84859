#include "StartedProcesses.h"

#if defined(Q_OS_LINUX)
#include <dirent.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#endif

namespace StepHost
{
#if defined(Q_OS_LINUX)
// end() is called by signal handlers, so all of this calls only what they may call, and allocates nothing.
namespace
{
constexpr int maxEarlier = 256;
pid_t earlier[maxEarlier];
int earlierCount = 0;
int wasSubreaper = 0;
std::atomic<bool> isWatching{false};

// Calls visit() with the name of each entry of `folder` that is a number.
template<typename Visit>
void forEachNumber(const char *folder, Visit visit)
{
    const int descriptor = open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    alignas(dirent64) char entries[2048];
    for (ssize_t size; (size = getdents64(descriptor, entries, sizeof entries)) > 0;) {
        for (ssize_t at = 0; at < size;) {
            const auto *entry = reinterpret_cast<const dirent64 *>(entries + at);
            if (entry->d_name[0] != '.')
                visit(entry->d_name);
            at += entry->d_reclen;
        }
    }
    close(descriptor);
}

// Calls visit() with each child, whichever of the threads it belongs to.
template<typename Visit>
void forEachChild(Visit visit)
{
    forEachNumber("/proc/self/task", [&visit](const char *thread) {
        char path[64] = {};
        char *end = path;
        for (const char *part : {"/proc/self/task/", thread, "/children"})
            end = std::copy_n(part, std::strlen(part), end);
        const int descriptor = open(path, O_RDONLY | O_CLOEXEC);
        pid_t child = 0;
        char digits[256];
        for (ssize_t size; (size = read(descriptor, digits, sizeof digits)) > 0;) {
            for (const char *c = digits; c != digits + size; ++c) {
                if (*c != ' ') {
                    child = child * 10 + (*c - '0');
                } else {
                    visit(child);
                    child = 0;
                }
            }
        }
        close(descriptor);
    });
}

// With WNOHANG in `options` whether `child` has ended, else waits until it has. What started it may want to know how it
// ended, so it stays for the one who asks.
bool hasEnded(pid_t child, int options)
{
    siginfo_t info{};
    int result;
    do {
        result = waitid(P_PID, id_t(child), &info, options | WEXITED | WNOWAIT | __WALL);
    } while (result < 0 && errno == EINTR);
    return result < 0 || info.si_pid == child;
}
} // namespace

StartedProcesses::StartedProcesses()
{
    earlierCount = 0;
    forEachChild([](pid_t child) {
        if (earlierCount < maxEarlier)
            earlier[earlierCount] = child;
        ++earlierCount;
    });
    if (earlierCount > maxEarlier) // Nobody could tell the new ones from them.
        return;
    prctl(PR_GET_CHILD_SUBREAPER, &wasSubreaper);
    // Whose parent ends becomes a child of this process.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    isWatching = true;
}

StartedProcesses::~StartedProcesses()
{
    end();
    isWatching = false;
    prctl(PR_SET_CHILD_SUBREAPER, wasSubreaper);
}

int StartedProcesses::end()
{
    int ended = 0;
    // One that was seen to have ended may have started another before, which is there in the next round. Some may start
    // others faster than they are ended.
    constexpr int rounds = 1000;
    int goneBefore = -1;
    for (int round = 0; round < rounds && isWatching; ++round) {
        int gone = 0;
        int alive = 0;
        forEachChild([&](pid_t child) {
            pid_t *const last = earlier + earlierCount;
            if (std::find(earlier, last, child) != last)
                return;
            if (hasEnded(child, WNOHANG)) {
                ++gone;
                return;
            }
            ++alive;
            if (kill(child, SIGKILL) == 0 && hasEnded(child, 0))
                ++ended;
        });
        if (alive == 0 && gone == goneBefore)
            break;
        goneBefore = gone + alive;
    }
    return ended;
}
#else
StartedProcesses::StartedProcesses() = default;

StartedProcesses::~StartedProcesses() = default;

int StartedProcesses::end()
{
    return 0;
}
#endif
} // namespace StepHost
