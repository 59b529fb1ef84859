/// Any bytes as a binary script: read, with a tail refused, written, read again and run.
///
/// An input that begins with the mark of a binary script is taken as the whole file. Any other is the file's
/// content, to which the header with its size and checksum is added, so that the reader looks at it.

#include "FuzzInput.h"
#include "ScriptCheck.h"
#include "host/scripts/BinaryScript.h"

#include <QCryptographicHash>
#include <QtEndian>

namespace
{
QByteArray fileWith(const QByteArray &content)
{
    const quint16 version = qToBigEndian(quint16(1));
    const quint32 size = qToBigEndian(quint32(content.size()));
    QByteArray file("\x89QMS\r\n\x1A\n");
    file.append(reinterpret_cast<const char *>(&version), sizeof version);
    file.append(reinterpret_cast<const char *>(&size), sizeof size);
    file.append(QCryptographicHash::hash(content, QCryptographicHash::Sha256));
    return file + content;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QByteArray file = StepHost::isBinaryScript(bytes) ? bytes : fileWith(bytes);
    const auto read = [](const QByteArray &script, const StepHost::StepCatalogue &catalogue) {
        return StepHost::readBinaryScript(script, catalogue);
    };
    requireKeepsAndRuns(file, {read, StepHost::writeBinaryScript, ""});
    return 0;
}
