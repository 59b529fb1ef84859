#include "Manners.h"

#include "ActiveFault.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QLocale>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QTextCodec>
#include <QThread>
#include <QThreadPool>
#include <QTimer>
#include <QTranslator>

#include <cfenv>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <termios.h>
#include <unistd.h>
#if defined(__x86_64__)
#include <xmmintrin.h>
#endif

namespace
{
// Keeps the compiler from leaving out an allocation that nobody uses.
char *volatile lostMemory = nullptr;

void leak(std::size_t bytes)
{
    lostMemory = static_cast<char *>(std::malloc(bytes));
    std::memset(lostMemory, 1, bytes);
}

void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &) { }

void writeFile(const QString &name)
{
    QFile file(name);
    file.open(QIODevice::WriteOnly | QIODevice::Append);
    file.write("x");
}

void startChild(bool isDaemon)
{
    const pid_t child = fork();
    if (child != 0)
        return;
    if (isDaemon) {
        setsid();
        if (fork() != 0)
            _exit(0);
        clearenv();
    }
    char name[] = "sleep";
    char time[] = "20";
    char *arguments[] = {name, time, nullptr};
    char *environment[] = {nullptr};
    execve("/bin/sleep", arguments, isDaemon ? environment : environ);
    _exit(1);
}

void misbehaveWhileLoading()
{
    if (has("manners.translator"))
        QCoreApplication::installTranslator(new QTranslator(QCoreApplication::instance()));
    if (has("library.child-of-application"))
        new QObject(QCoreApplication::instance());
    if (has("manners.load-folder"))
        QDir::setCurrent(QStringLiteral("/"));
    if (has("manners.load-application-name"))
        QCoreApplication::setApplicationName(QStringLiteral("Joiner"));
    if (has("manners.load-message-handler"))
        qInstallMessageHandler(ignoreMessage);
    if (has("manners.load-signal-handler"))
        std::signal(SIGTERM, SIG_IGN);
    if (has("manners.load-home"))
        writeFile(QDir::homePath() + QStringLiteral("/.joinrc"));
    if (has("manners.load-limits")) {
        rlimit limit{};
        getrlimit(RLIMIT_CORE, &limit);
        limit.rlim_cur = limit.rlim_cur == 4096 ? 8192 : 4096;
        setrlimit(RLIMIT_CORE, &limit);
    }
    if (has("manners.load-leaks"))
        leak(20000);
}

void misbehaveWhileRunning()
{
    if (has("sound.pool")) {
        QThreadPool::globalInstance()->start([] { QThread::usleep(10); });
        QThreadPool::globalInstance()->waitForDone();
    }
    if (has("sound.thread")) {
        const std::unique_ptr<QThread> thread(QThread::create([] { QThread::usleep(10); }));
        thread->start();
        thread->wait();
    }
    if (has("sound.temporary-file")) {
        QTemporaryFile file;
        file.open();
        file.write("x");
    }
    if (has("sound.restores")) {
        const int rounding = std::fegetround();
        std::fesetround(FE_DOWNWARD);
        std::fesetround(rounding);
        const mode_t mask = umask(0);
        umask(mask);
        qputenv("JOINING", "1");
        qunsetenv("JOINING");
    }
    if (has("sound.child"))
        QProcess::execute(QStringLiteral("/bin/true"), {});
    if (has("sound.restores-locale")) {
        const QByteArray before = std::setlocale(LC_NUMERIC, nullptr);
        std::setlocale(LC_NUMERIC, "C");
        std::setlocale(LC_NUMERIC, before.constData());
    }
    if (has("sound.static-expression")) {
        static const QRegularExpression expression(QStringLiteral("\\A(\\d+),(\\d+)\\z"));
        expression.match(QStringLiteral("1,2"));
    }
    if (has("sound.thread-local")) {
        thread_local QByteArray buffer;
        buffer.fill('x', 100000);
    }
    if (has("sound.cache")) {
        static QHash<int, QRegularExpression> cache;
        static int calls = 0;
        if (cache.size() >= 50)
            cache.clear();
        ++calls;
        cache.insert(calls % 50, QRegularExpression(QString::number(calls)));
    }
    if (has("sound.buffer")) {
        static QByteArray buffer;
        buffer.resize(8 * 1024 * 1024);
    }
    if (has("manners.run-umask"))
        umask(0);
    if (has("manners.run-locale"))
        std::setlocale(LC_NUMERIC,
                       std::strcmp(std::setlocale(LC_NUMERIC, nullptr), "C") == 0 ? "C.UTF-8" : "C");
    if (has("manners.run-descriptor"))
        static_cast<void>(::open("/dev/null", O_RDONLY) + 1);
    if (has("manners.run-thread")) {
        auto *thread = new QThread;
        thread->start();
    }
    if (has("manners.run-child"))
        startChild(false);
    if (has("manners.run-daemon"))
        startChild(true);
    if (has("manners.run-current-folder"))
        writeFile(QStringLiteral("join.log"));
    if (has("manners.run-prints"))
        std::puts("joined");
    if (has("manners.run-leaks"))
        leak(4096);
    if (has("manners.run-rounding"))
        std::fesetround(FE_UPWARD);
    if (has("manners.run-alarm"))
        alarm(1000);
    if (has("manners.run-masks")) {
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, SIGUSR1);
        sigprocmask(SIG_BLOCK, &set, nullptr);
    }
    if (has("manners.run-log-form"))
        qSetMessagePattern(QStringLiteral("join: %{message}"));
    termios modes{};
    if (has("manners.run-terminal") && tcgetattr(0, &modes) == 0) {
        modes.c_lflag &= ~tcflag_t(ECHO);
        tcsetattr(0, TCSANOW, &modes);
    }
    if (has("manners.run-timer"))
        (new QTimer(QCoreApplication::instance()))->start(1000);
}
} // namespace

void misbehave(Call call)
{
    switch (call) {
    case Call::Construct:
        misbehaveWhileLoading();
        break;
    case Call::Identity:
        if (has("manners.identity-standard-paths"))
            QStandardPaths::setTestModeEnabled(true);
        if (has("manners.identity-organisation"))
            QCoreApplication::setOrganizationName(QStringLiteral("Joiners"));
        break;
    case Call::Prototypes:
        if (has("manners.prototypes-environment"))
            qputenv("JOIN_READY", "1");
        break;
    case Call::Clone:
        if (has("manners.clone-socket"))
            static_cast<void>(::socket(AF_UNIX, SOCK_STREAM, 0) + 1);
        if (has("manners.clone-leaks"))
            leak(4096);
        break;
    case Call::Edit:
        if (has("manners.edit-environment"))
            qunsetenv("PATH");
        if (has("manners.edit-leaks"))
            leak(4096);
        break;
    case Call::Text:
        if (has("manners.text-locale"))
            QLocale::setDefault(QLocale(QLocale::German));
        if (has("manners.codec"))
            QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-15"));
        if (has("manners.text-prints"))
            std::fputs("text\n", stderr);
        if (has("manners.text-leaks"))
            leak(4096);
        break;
    case Call::Save:
        if (has("manners.save-temporary"))
            writeFile(QDir::tempPath() + QStringLiteral("/join.tmp"));
        if (has("manners.ignores-pipe"))
            std::signal(SIGPIPE, SIG_IGN);
        if (has("manners.save-leaks"))
            leak(4096);
        break;
    case Call::Load:
#if defined(__x86_64__)
        if (has("manners.record-flush-to-zero"))
            _mm_setcsr(_mm_getcsr() | 0x8040);
#endif
        if (has("manners.record-closes"))
            ::close(0);
        if (has("manners.record-leaks"))
            leak(4096);
        break;
    case Call::Run:
        misbehaveWhileRunning();
        break;
    case Call::Delete:
        if (has("manners.delete-environment"))
            qputenv("JOIN_OVER", "1");
        break;
    }
}
