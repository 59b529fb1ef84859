#include "Language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace Workbench
{
namespace
{
void installFrom(QCoreApplication &application, const QString &fileName, const QString &folder)
{
    auto *translator = new QTranslator(&application);
    if (translator->load(fileName, folder))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}

const char inheritedName[] = "QUILLMAP_LANGUAGE";

void installTexts(QCoreApplication &application, const QString &code)
{
    installFrom(application, QLatin1String("workbench_") + code, QStringLiteral(":/workbench/translations"));
}
} // namespace

QStringList Language::codes()
{
    return {QStringLiteral("en"), QStringLiteral("zh_CN")};
}

QString Language::codeFor(const QStringList &systemLanguages)
{
    for (const QString &language : systemLanguages) {
        if (language.startsWith(QLatin1String("en")))
            return QStringLiteral("en");
        if (language.startsWith(QLatin1String("zh")))
            return QStringLiteral("zh_CN");
    }
    return QStringLiteral("en");
}

void Language::install(QCoreApplication &application, const QString &code)
{
    // English too has a file: it holds the plural forms.
    QLocale::setDefault(QLocale(code));
    installFrom(application, QLatin1String("qtbase_") + code,
                QLibraryInfo::location(QLibraryInfo::TranslationsPath));
    installTexts(application, code);
    qputenv(inheritedName, code.toLatin1());
}

void Language::installInherited(QCoreApplication &application)
{
    const QString code = qEnvironmentVariable(inheritedName);
    if (codes().contains(code))
        installTexts(application, code);
}
} // namespace Workbench
