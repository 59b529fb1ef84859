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
} // namespace StepHost
