#include "BinaryScript.h"

#include "ScriptJson.h"
#include "host/files/InputFile.h"
#include "host/plugins/StepRecord.h"
#include "host/values/CborCheck.h"
#include "host/values/CborReader.h"
#include "host/values/ErrorTexts.h"
#include "host/values/JsonReader.h"
#include "host/values/JsonWriter.h"
#include "host/values/QuotedText.h"

#include <QCryptographicHash>
#include <QtEndian>

namespace StepHost
{
namespace
{
// The line ends in it show what a transfer as text has done to the file.
const char mark[] = "\x89QMS\r\n\x1A\n";
constexpr int markSize = 8;
constexpr int markStartSize = 4;
constexpr quint16 formVersion = 1;
constexpr auto hashAlgorithm = QCryptographicHash::Sha256;
constexpr int hashSize = 32;
constexpr int headerSize = markSize + 2 + 4 + hashSize;
// Type id, enabled flag and record of a step, all empty.
constexpr int smallestStep = 9;
// The object that holds the variables in JSON. What is too deep for one form is too deep for the other.
constexpr int variablesDepth = 1;

template<typename Integer>
void appendInteger(QByteArray &bytes, Integer number)
{
    char buffer[sizeof(Integer)];
    qToBigEndian(number, buffer);
    bytes.append(buffer, int(sizeof buffer));
}

void appendBlock(QByteArray &bytes, const QByteArray &block)
{
    appendInteger(bytes, quint32(block.size()));
    bytes += block;
}

// Appends the variables as CBOR.
Result<void> appendVariables(QByteArray &bytes, const std::vector<ScriptVariable> &variables)
{
    QByteArray text;
    JsonWriter json(text, JsonWriter::InLine);
    // In a level of its own, as in a script in JSON. As CBOR it has one byte, for an array of one item.
    json.openArray();
    const Result<void> written = writeVariables(json, variables);
    if (!written)
        return written;
    json.close();
    const Result<QByteArray, JsonError> cbor = cborFromJson(text);
    if (!cbor)
        return failure(cbor.error().toString());
    appendBlock(bytes, cbor->mid(variablesDepth));
    return {};
}

class BinaryReader
{
public:
    BinaryReader(const QByteArray &bytes, const StepCatalogue &catalogue, const StepReading &reading)
        : m_bytes(bytes), m_catalogue(catalogue), m_reading(reading)
    {
    }

    bool readScript(Script &script)
    {
        return readHeader() && readSteps(script) && readVariables(script);
    }

    // Where and what is wrong, after readScript() returned false.
    QString error() const
    {
        return m_error;
    }

private:
    int left() const
    {
        return m_bytes.size() - m_offset;
    }

    bool refuse(int offset, const QString &text)
    {
        m_error = ErrorTexts::tr("offset %1: %2").arg(offset).arg(bounded(text, 1000));
        return false;
    }

    template<typename Integer>
    bool readInteger(Integer &number)
    {
        if (left() < int(sizeof(Integer)))
            return refuse(m_bytes.size(), ErrorTexts::tr("the file ends too early"));
        number = qFromBigEndian<Integer>(m_bytes.constData() + m_offset);
        m_offset += int(sizeof(Integer));
        return true;
    }

    // Reads a size and as many bytes, which share the memory of the file.
    bool readBlock(const QString &what, QByteArray &block)
    {
        const int start = m_offset;
        quint32 size = 0;
        if (!readInteger(size))
            return false;
        if (size > quint32(left())) {
            return refuse(start,
                          ErrorTexts::tr("%1 should have %2 bytes, and %3 are left")
                              .arg(what, QString::number(size), QString::number(left())));
        }
        block = QByteArray::fromRawData(m_bytes.constData() + m_offset, int(size));
        m_offset += int(size);
        return true;
    }

    bool readHeader()
    {
        if (m_bytes.left(markSize) != QByteArray::fromRawData(mark, markSize)) {
            if (!isBinaryScript(m_bytes))
                return refuse(0, ErrorTexts::tr("this is no binary script"));
            return refuse(markStartSize,
                          ErrorTexts::tr("the mark of a binary script is damaged, as by a transfer as text"));
        }
        m_offset = markSize;

        quint16 version = 0;
        if (!readInteger(version))
            return false;
        if (version != formVersion) {
            return refuse(markSize,
                          ErrorTexts::tr("the form has version %1, this program knows version %2")
                              .arg(version)
                              .arg(formVersion));
        }

        const int sizeStart = m_offset;
        quint32 size = 0;
        if (!readInteger(size))
            return false;
        const int hashStart = m_offset;
        if (left() < hashSize)
            return refuse(m_bytes.size(), ErrorTexts::tr("the file ends too early"));
        m_offset = headerSize;
        if (size > quint32(left())) {
            return refuse(
                sizeStart,
                ErrorTexts::tr("the content should have %1 bytes, and the file has %2; it was cut off")
                    .arg(size)
                    .arg(left()));
        }
        if (size < quint32(left())) {
            return refuse(m_offset + int(size),
                          ErrorTexts::tr("%1 bytes follow the content").arg(quint32(left()) - size));
        }
        const QByteArray content = QByteArray::fromRawData(m_bytes.constData() + m_offset, left());
        if (QCryptographicHash::hash(content, hashAlgorithm) != m_bytes.mid(hashStart, hashSize))
            return refuse(hashStart,
                          ErrorTexts::tr("the checksum is not that of the content; the file is damaged"));
        return true;
    }

    bool readSteps(Script &script)
    {
        const int start = m_offset;
        quint32 count = 0;
        if (!readInteger(count))
            return false;
        if (count > quint32(left()) / smallestStep)
            return refuse(start,
                          ErrorTexts::tr("there should be %1 steps in %2 bytes").arg(count).arg(left()));
        for (quint32 i = 0; i < count; ++i) {
            script.steps.emplace_back();
            if (!readStep(script.steps.back(), int(i) + 1))
                return false;
        }
        return true;
    }

    bool readStep(ScriptStep &step, int number)
    {
        const QString name = ErrorTexts::tr("step %1").arg(number);
        const int typeStart = m_offset;
        QByteArray utf8;
        if (!readBlock(ErrorTexts::tr("the type id of %1").arg(name), utf8))
            return false;
        const QString typeId = QString::fromUtf8(utf8);
        if (m_reading && m_catalogue.prototype(typeId))
            m_reading(number, typeId);
        step.operation.reset(m_catalogue.create(typeId, nullptr));
        if (!step.operation)
            return refuse(typeStart, name + QLatin1String(": ") + m_catalogue.noSuchType(typeId));

        const int enabledStart = m_offset;
        quint8 enabled = 0;
        if (!readInteger(enabled))
            return false;
        if (enabled > 1) {
            return refuse(
                enabledStart,
                ErrorTexts::tr("%1: the enabled flag is %2, it should be 0 or 1").arg(name).arg(enabled));
        }
        step.enabled = enabled == 1;

        const QString shownName = QStringLiteral("%1 (%2)").arg(name, typeId);
        QByteArray record;
        if (!readBlock(ErrorTexts::tr("the record of %1").arg(shownName), record))
            return false;
        const Result<void> loaded = loadWholeRecord(*step.operation, record);
        return loaded || refuse(m_offset - record.size(), shownName + QLatin1String(": ") + loaded.error());
    }

    bool readVariables(Script &script)
    {
        QByteArray cbor;
        if (!readBlock(ErrorTexts::tr("the variables"), cbor))
            return false;
        if (left() > 0)
            return refuse(m_offset, ErrorTexts::tr("%1 bytes follow the variables").arg(left()));
        const int start = m_offset - cbor.size();
        const Result<void, CborError> checked = checkCbor(cbor, variablesDepth);
        if (!checked)
            return refuse(start + checked.error().offset, checked.error().text);
        CborReader at(cbor);
        auto variables = StepHost::readVariables(at);
        if (!variables)
            return refuse(start, ErrorTexts::tr("the variables: %1").arg(variables.error().toString()));
        script.variables = std::move(*variables);
        return true;
    }

    const QByteArray &m_bytes;
    const StepCatalogue &m_catalogue;
    const StepReading &m_reading;
    int m_offset = 0;
    QString m_error;
};
} // namespace

bool isBinaryScript(const QByteArray &bytes)
{
    return bytes.startsWith(QByteArray::fromRawData(mark, markStartSize));
}

Result<Script> readBinaryScript(const QByteArray &bytes, const StepCatalogue &catalogue,
                                const StepReading &reading)
{
    Script script;
    BinaryReader reader(bytes, catalogue, reading);
    if (!reader.readScript(script))
        return failure(reader.error());
    return script;
}

Result<QByteArray> writeBinaryScript(const Script &script)
{
    QByteArray content;
    appendInteger(content, quint32(script.steps.size()));
    for (const ScriptStep &step : script.steps) {
        appendBlock(content, step.operation->typeId().toUtf8());
        appendInteger(content, quint8(step.enabled ? 1 : 0));
        appendBlock(content, recordOf(*step.operation));
    }
    const Result<void> appended = appendVariables(content, script.variables);
    if (!appended)
        return failure(appended.error());
    if (content.size() > maxInputSize - headerSize)
        return failure(ErrorTexts::tr("the script makes more than 256 MiB"));
    QByteArray bytes(mark, markSize);
    appendInteger(bytes, formVersion);
    appendInteger(bytes, quint32(content.size()));
    return bytes + QCryptographicHash::hash(content, hashAlgorithm) + content;
}
} // namespace StepHost
