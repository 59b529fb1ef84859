#include "InputFile.h"

#include <QFile>
#include <QFileInfo>
#include <QTextCodec>

#include <cstdio>

namespace StepHost
{
namespace
{
constexpr int maxSize = 1 << 28;
constexpr int chunkSize = 1 << 20;

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

InputFile readInputFile(const QString &fileName)
{
    const bool isStandardInput = fileName == QLatin1String("-");
    InputFile input;
    QFile file(fileName);
    const bool isOpen =
        isStandardInput ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    const QString shownName = isStandardInput ? QStringLiteral("standard input") : fileName;
    const auto refuse = [&](const QString &reason) {
        input.bytes.clear();
        input.error = shownName + QLatin1String(": ") + reason;
    };
    if (!isStandardInput && QFileInfo(fileName).isDir()) {
        refuse(QStringLiteral("this is a folder, not a file"));
    } else if (!isOpen) {
        refuse(file.errorString());
    } else {
        QByteArray chunk;
        do {
            chunk = file.read(chunkSize);
            input.bytes += chunk;
        } while (!chunk.isEmpty() && input.bytes.size() <= maxSize);
        if (file.error() != QFileDevice::NoError)
            refuse(file.errorString());
        else if (input.bytes.size() > maxSize)
            refuse(QStringLiteral("the file holds more than 256 MiB"));
    }
    return input;
}

LinesResult readLines(const QByteArray &utf8)
{
    LinesResult result;
    QString text;
    if (!decodeUtf8(utf8.constData(), utf8.size(), text)) {
        result.error = QStringLiteral("line %1 is not UTF-8 text").arg(invalidLine(utf8));
        return result;
    }
    int start = 0;
    while (start < text.size()) {
        int end = text.indexOf(QLatin1Char('\n'), start);
        const int next = end < 0 ? text.size() : end + 1;
        if (end < 0)
            end = text.size();
        else if (end > start && text.at(end - 1) == QLatin1Char('\r'))
            --end;
        result.lines.append(text.mid(start, end - start));
        start = next;
    }
    return result;
}
} // namespace StepHost
