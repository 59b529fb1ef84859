#pragma once

#include <QString>
#include <QStringList>

class QCoreApplication;

/// The languages that the program's texts are there in.
namespace Workbench::Language
{
/// Their codes, as `--lang` takes them.
QStringList codes();

/// The code of the language to speak to a user whose system asks for \a systemLanguages, the preferred one
/// first, such as `zh-Hans-CN`: the first that there is, else English.
QString codeFor(const QStringList &systemLanguages);

/// Has \a application speak the language \a code, one of codes(). Programs that it starts learn of it.
void install(QCoreApplication &application, const QString &code);

/// Has \a application, of a program that another one has started, speak the language of that one.
void installInherited(QCoreApplication &application);
} // namespace Workbench::Language
