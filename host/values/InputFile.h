#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

namespace StepHost
{
/// No file larger than this, in bytes, is read or made.
constexpr int maxInputSize = 1 << 28;

/// What a file holds, or the reason why it could not be read.
struct InputFile
{
    QByteArray bytes;
    QString error; ///< Names the file; empty when it was read.

    explicit operator bool() const
    {
        return error.isEmpty();
    }
};

/// Reads the whole file \a fileName, or standard input for "-". A file of more than 256 MiB is refused.
InputFile readInputFile(const QString &fileName);

/// The lines of a text, or the reason why they could not be read.
struct LinesResult
{
    QVariantList lines; ///< One `QString` for each line.
    QString error; ///< Empty when the lines were read.

    explicit operator bool() const
    {
        return error.isEmpty();
    }
};

/// Splits \a utf8 into its lines, which end in LF or CR LF. The end of the last line may be missing; an
/// empty text has no lines. A byte order mark in front is dropped. A text that is not UTF-8 is refused,
/// with the number of the line.
LinesResult readLines(const QByteArray &utf8);
} // namespace StepHost
