#pragma once

#include <QString>
#include <QStringList>

namespace StepHost
{
/// What a library's file tells before anything of it is run.
struct LibraryFile
{
    bool isKnown = false; ///< Whether the file is of a format that can be read here.
    bool wantsExecutableStack = false;
    QStringList searchPaths; ///< Where it looks for the libraries that it needs, in this order.
    QStringList needed; ///< The names of the libraries that it needs.
};

/// Reads \a fileName, which is not trusted.
LibraryFile readLibraryFile(const QString &fileName);

/// The system and the processor that the library \a fileName is for, such as `Windows on arm64`, when these are not those
/// of this program; empty when they are, and for a file that is no library. Reads the file's beginning only.
QString foreignPlatformOf(const QString &fileName);

/// The library that has to be in a process before \a fileName, because that was built with a sanitizer; empty for most.
QString sanitizerRuntimeOf(const QString &fileName);
} // namespace StepHost
