#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace StepHost
{
/// The symbols that a library offers to others.
struct ExportedSymbols
{
    bool isKnown = false; ///< False when the file is in none of the formats that can be read.
    QVector<QByteArray> names; ///< The strong ones; inline functions and templates are not among them.
};

/// Reads the symbols that the library \a fileName exports, without loading it. Reads 64-bit ELF files of this
/// machine's byte order. The file may be damaged: what does not lie within it is left out.
ExportedSymbols readExportedSymbols(const QString &fileName);
} // namespace StepHost
