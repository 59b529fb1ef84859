#include "ProcessFacts.h"

#include "LiveTimers.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QLoggingCategory>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTextCodec>
#include <QThreadPool>

#include <clocale>
#include <exception>
#include <locale>
#include <new>

namespace StepHost
{
namespace
{
QString fact(const char *name, const QString &value)
{
    return QLatin1String(name) + QLatin1String(" ") + value;
}

QString address(quintptr pointer)
{
    return pointer == 0 ? QStringLiteral("none") : QStringLiteral("at 0x%1").arg(pointer, 0, 16);
}

QStringList currentFolder()
{
    return {QDir::currentPath()};
}

QStringList environment()
{
    return QProcessEnvironment::systemEnvironment().toStringList();
}

QStringList locales()
{
    const QTextCodec *codec = QTextCodec::codecForLocale();
    return {fact("locale of C", QString::fromLocal8Bit(std::setlocale(LC_ALL, nullptr))),
            fact("locale of C++", QString::fromStdString(std::locale().name())),
            fact("locale of Qt", QLocale().name()),
            fact("codec of the locale", codec ? QString::fromLatin1(codec->name()) : QString())};
}

// What a plug-in leaves to the application to delete lives longer than its library.
QString childrenOfApplication()
{
    QStringList classes;
    const QObjectList children = QCoreApplication::instance()->children();
    for (const QObject *child : children)
        classes.append(QString::fromUtf8(child->metaObject()->className()));
    classes.sort();
    return classes.join(QLatin1Char(' '));
}

QStringList application()
{
    return {
        fact("children of the application", childrenOfApplication()),
        fact("application name", QCoreApplication::applicationName()),
        fact("application version", QCoreApplication::applicationVersion()),
        fact("organisation name", QCoreApplication::organizationName()),
        fact("organisation domain", QCoreApplication::organizationDomain()),
        fact("library paths", QCoreApplication::libraryPaths().join(QLatin1Char(':'))),
        fact("test mode of standard paths", QVariant(QStandardPaths::isTestModeEnabled()).toString()),
        fact("threads of the global pool", QString::number(QThreadPool::globalInstance()->maxThreadCount()))};
}

QStringList handlers()
{
    const QtMessageHandler messages = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(messages);
    return {fact("message handler", address(quintptr(messages))),
            fact("terminate handler", address(quintptr(std::get_terminate()))),
            fact("new handler", address(quintptr(std::get_new_handler())))};
}

QStringList logging()
{
    QLoggingCategory *category = QLoggingCategory::defaultCategory();
    const QString line = qFormatLogMessage(
        QtWarningMsg, QMessageLogContext("file", 1, "function", "category"), QStringLiteral("message"));
    return {fact("form of log lines", line),
            fact("warnings", QVariant(category->isWarningEnabled()).toString()),
            fact("debug lines", QVariant(category->isDebugEnabled()).toString())};
}
} // namespace

QVector<ProcessFacet> qtFacets()
{
    return {
        {QStringLiteral("folder"), QStringLiteral("The current folder stays."), currentFolder},
        {QStringLiteral("environment"), QStringLiteral("The environment stays."), environment},
        {QStringLiteral("locale"), QStringLiteral("The locales of C, C++ and Qt stay."), locales},
        {QStringLiteral("application"),
         QStringLiteral("What the application is called, and what else is set for all of it, stays."),
         application},
        {QStringLiteral("handlers"),
         QStringLiteral("Handlers of messages, of exceptions and of lack of memory stay."), handlers},
        {QStringLiteral("timers"), QStringLiteral("No timer is left running."), liveTimers},
        {QStringLiteral("logging"), QStringLiteral("What is logged, and in which form, stays."), logging},
    };
}
} // namespace StepHost
