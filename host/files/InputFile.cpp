#include "InputFile.h"

#include "FileErrors.h"

#include <QFile>
#include <QFileInfo>
#include <QTextCodec>

namespace StepHost
{
namespace
{
constexpr int chunkSize = 1 << 20;

// Its descriptor: on Windows QFile takes the end of a pipe for an error when it reads from the stream.
constexpr int standardInput = 0;

bool decodeUtf8(const char *bytes, int size, QString &text)
{
    QTextCodec::ConverterState state;
    text = QTextCodec::codecForName("UTF-8")->toUnicode(bytes, size, &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

// The number of the first line of `utf8` that is not UTF-8.
int invalidLine(const QByteArray &utf8)
{
    int line = 1;
    int start = 0;
    QString text;
    for (;;) {
        const int end = utf8.indexOf('\n', start);
        if (end < 0 || !decodeUtf8(utf8.constData() + start, end - start, text))
            return line;
        start = end + 1;
        ++line;
    }
}
} // namespace

Result<QByteArray> readInputFile(const QString &fileName)
{
    if (fileName.isEmpty())
        return failure(FileErrors::tr("the file has no name"));
    const bool isStandardInput = fileName == QLatin1String("-");
    const auto refuse = [&](const QString &reason) {
        return failure((isStandardInput ? FileErrors::tr("standard input") : fileName) + QLatin1String(": ")
                       + reason);
    };
    if (!isStandardInput && QFileInfo(fileName).isDir())
        return refuse(FileErrors::tr("this is a folder, not a file"));

    QFile file(fileName);
    if (!(isStandardInput ? file.open(standardInput, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly)))
        return refuse(FileErrors::shown(file.errorString()));
    // The size of a pipe shows only as it is read.
    QByteArray bytes;
    QByteArray chunk;
    bool isTooLarge = file.size() > maxInputSize;
    if (!isTooLarge)
        bytes.reserve(int(file.size()));
    while (!isTooLarge && !(chunk = file.read(chunkSize)).isEmpty()) {
        bytes += chunk;
        isTooLarge = bytes.size() > maxInputSize;
    }
    if (isTooLarge)
        return refuse(FileErrors::tr("the file holds more than 256 MiB"));
    if (file.error() != QFileDevice::NoError)
        return refuse(FileErrors::shown(file.errorString()));
    return bytes;
}

Result<QString> readText(const QByteArray &utf8)
{
    QString text;
    if (!decodeUtf8(utf8.constData(), utf8.size(), text))
        return failure(FileErrors::tr("line %1 is not UTF-8 text").arg(invalidLine(utf8)));
    return text;
}

Result<QVariantList> readLines(const QByteArray &utf8)
{
    const Result<QString> text = readText(utf8);
    if (!text)
        return failure(text.error());
    QVariantList lines;
    int start = 0;
    while (start < text->size()) {
        int end = text->indexOf(QLatin1Char('\n'), start);
        const int next = end < 0 ? text->size() : end + 1;
        if (end < 0)
            end = text->size();
        else if (end > start && text->at(end - 1) == QLatin1Char('\r'))
            --end;
        lines.append(text->mid(start, end - start));
        start = next;
    }
    return lines;
}
} // namespace StepHost
