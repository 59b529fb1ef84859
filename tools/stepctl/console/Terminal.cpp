#include "Terminal.h"

#include <cstdio>

#ifdef Q_OS_WIN
#include <io.h>
#include <qt_windows.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace
{
bool isTerminal(std::FILE *stream)
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

// The columns of the terminal that `stream` is; 0 for none.
int columnsOfTerminal(std::FILE *stream)
{
#ifdef Q_OS_WIN
    CONSOLE_SCREEN_BUFFER_INFO info;
    const HANDLE console = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    return GetConsoleScreenBufferInfo(console, &info) != 0 ? info.srWindow.Right - info.srWindow.Left + 1 : 0;
#else
    winsize size{};
    return ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
#endif
}

// Whether the terminal that standard output is shows colours when it is told to.
bool takesEscapes()
{
#ifdef Q_OS_WIN
    DWORD mode = 0;
    const HANDLE console = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stdout)));
    constexpr DWORD withEscapes = 0x0004; // ENABLE_VIRTUAL_TERMINAL_PROCESSING, which older headers lack.
    return GetConsoleMode(console, &mode) != 0 && SetConsoleMode(console, mode | withEscapes) != 0;
#else
    return qgetenv("TERM") != "dumb";
#endif
}
} // namespace

bool isErrorTerminal()
{
    return isTerminal(stderr);
}

int terminalColumns()
{
    constexpr int usual = 80;
    for (std::FILE *stream : {stdout, stderr}) {
        const int columns = columnsOfTerminal(stream);
        if (columns > 0)
            return columns;
    }
    return usual;
}

StepHost::TextLook lookOf(const QString &output, bool isWhole)
{
    if (output != QLatin1String("-") || !isTerminal(stdout))
        return {};
    return {isWhole ? 0 : terminalColumns(), qEnvironmentVariableIsEmpty("NO_COLOR") && takesEscapes()};
}
