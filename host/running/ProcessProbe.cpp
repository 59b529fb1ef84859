#include "ProcessProbe.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

#if defined(Q_OS_LINUX)
#include <dlfcn.h>
#include <sys/resource.h>
#include <unistd.h>
#elif defined(Q_OS_WIN)
// The order matters: windows.h declares what the others build on.
#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>
#endif

namespace StepHost
{
#if defined(Q_OS_LINUX)
namespace
{
// A sanitizer reserves more memory than any machine has.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isBuiltSanitized = true;
#elif defined(__has_feature)
constexpr bool isBuiltSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool isBuiltSanitized = false;
#endif

// The field `name`, in KiB, of what the kernel tells about this process.
std::optional<qint64> statusField(const QByteArray &name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).simplified().split(' ').first().toLongLong() * 1024;
    }
    return std::nullopt;
}

int entriesOf(const QString &directory)
{
    return QDir(directory).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}
} // namespace

bool isSanitized()
{
    return isBuiltSanitized || dlsym(RTLD_DEFAULT, "__asan_init") != nullptr
        || dlsym(RTLD_DEFAULT, "__tsan_init") != nullptr;
}

std::optional<qint64> residentMemory()
{
    return statusField("VmRSS");
}

std::optional<qint64> peakMemory()
{
    return statusField("VmHWM");
}

std::optional<int> openHandles()
{
    return entriesOf(QStringLiteral("/proc/self/fd"));
}

std::optional<int> runningThreads()
{
    return entriesOf(QStringLiteral("/proc/self/task"));
}

std::optional<bool> isMapped(const QString &fileName)
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly))
        return std::nullopt;
    return maps.readAll().contains(' ' + QFile::encodeName(QFileInfo(fileName).canonicalFilePath()) + '\n');
}

std::optional<qint64> machineMemory()
{
    qint64 bytes = qint64(sysconf(_SC_PHYS_PAGES)) * sysconf(_SC_PAGE_SIZE);
    // Of the second and of the first version of control groups, as a container sees its own.
    for (const char *name : {"/sys/fs/cgroup/memory.max", "/sys/fs/cgroup/memory/memory.limit_in_bytes"}) {
        QFile file(QString::fromLatin1(name));
        bool isNumber = false;
        const qint64 limit =
            file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toLongLong(&isNumber) : 0;
        if (isNumber)
            bytes = std::min(bytes, limit);
    }
    return bytes;
}

MemoryLimit::MemoryLimit(qint64 bytes)
{
    rlimit limit{};
    if (isSanitized() || getrlimit(RLIMIT_DATA, &limit) != 0)
        return;
    m_previous = limit.rlim_cur;
    limit.rlim_cur = std::min(limit.rlim_cur, rlim_t(bytes));
    if (setrlimit(RLIMIT_DATA, &limit) == 0)
        m_bytes = qint64(limit.rlim_cur);
}

MemoryLimit::~MemoryLimit()
{
    rlimit limit{};
    if (!m_bytes || getrlimit(RLIMIT_DATA, &limit) != 0)
        return;
    limit.rlim_cur = rlim_t(m_previous);
    setrlimit(RLIMIT_DATA, &limit);
}

bool isInLibrary(const QString &fileName, const void *address)
{
    Dl_info info{};
    return dladdr(address, &info) != 0 && info.dli_fname
        && QFileInfo(QFile::decodeName(info.dli_fname)).canonicalFilePath()
        == QFileInfo(fileName).canonicalFilePath();
}

MemoryGrowthLimit::MemoryGrowthLimit(qint64 bytes)
{
    rlimit limit{};
    if (isSanitized() || getrlimit(RLIMIT_AS, &limit) != 0)
        return;
    const std::optional<qint64> size = statusField("VmSize");
    if (!size)
        return;
    m_previous = limit.rlim_cur;
    limit.rlim_cur = rlim_t(*size + bytes);
    setrlimit(RLIMIT_AS, &limit);
}

MemoryGrowthLimit::~MemoryGrowthLimit()
{
    rlimit limit{};
    if (!m_previous || getrlimit(RLIMIT_AS, &limit) != 0)
        return;
    limit.rlim_cur = rlim_t(*m_previous);
    setrlimit(RLIMIT_AS, &limit);
}
#elif defined(Q_OS_WIN)
namespace
{
std::optional<PROCESS_MEMORY_COUNTERS> memoryCounters()
{
    PROCESS_MEMORY_COUNTERS counters{};
    if (!GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters))
        return std::nullopt;
    return counters;
}
} // namespace

std::optional<qint64> residentMemory()
{
    const auto counters = memoryCounters();
    return counters ? std::optional<qint64>(qint64(counters->WorkingSetSize)) : std::nullopt;
}

std::optional<qint64> peakMemory()
{
    const auto counters = memoryCounters();
    return counters ? std::optional<qint64>(qint64(counters->PeakWorkingSetSize)) : std::nullopt;
}

std::optional<int> openHandles()
{
    DWORD count = 0;
    // No process is without a handle; Wine tells 0 because it does not count them.
    if (!GetProcessHandleCount(GetCurrentProcess(), &count) || count == 0)
        return std::nullopt;
    return int(count);
}

std::optional<int> runningThreads()
{
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    if (snapshot == INVALID_HANDLE_VALUE)
        return std::nullopt;
    int count = 0;
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry)) {
        if (entry.th32OwnerProcessID == GetCurrentProcessId())
            ++count;
    }
    CloseHandle(snapshot);
    return count;
}

std::optional<bool> isMapped(const QString &fileName)
{
    const QString name = QDir::toNativeSeparators(QFileInfo(fileName).absoluteFilePath());
    return GetModuleHandleW(reinterpret_cast<const wchar_t *>(name.utf16())) != nullptr;
}
#else
std::optional<qint64> residentMemory()
{
    return std::nullopt;
}

std::optional<qint64> peakMemory()
{
    return std::nullopt;
}

std::optional<int> openHandles()
{
    return std::nullopt;
}

std::optional<int> runningThreads()
{
    return std::nullopt;
}

std::optional<bool> isMapped(const QString &)
{
    return std::nullopt;
}
#endif

std::optional<qint64> MemoryLimit::bytes() const
{
    return m_bytes;
}

#if !defined(Q_OS_LINUX)
bool isSanitized()
{
    return false;
}

std::optional<qint64> machineMemory()
{
    return std::nullopt;
}

MemoryLimit::MemoryLimit(qint64) { }

MemoryLimit::~MemoryLimit() = default;

bool isInLibrary(const QString &, const void *)
{
    return false;
}

MemoryGrowthLimit::MemoryGrowthLimit(qint64) { }

MemoryGrowthLimit::~MemoryGrowthLimit() = default;
#endif
} // namespace StepHost
