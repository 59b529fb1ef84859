#include "ValueReader.h"

#include "ErrorTexts.h"
#include "JsonValue.h"
#include "QuotedText.h"
#include "VarTypes.h"

#include <QMetaType>

#include <cmath>
#include <limits>
#include <optional>

namespace StepHost
{
namespace
{
using ReadResult = Result<QVariant, JsonError>;

// A type that has a typed form: how what stands after "$name" is read.
struct TypedForm
{
    int type;
    ReadResult (*read)(CborReader &at);
};

const TypedForm *findTypedForm(const QByteArray &typeName);
QString typedFormNames();

ReadResult readNothing(CborReader &at)
{
    if (at.kind() != CborReader::Null)
        return refuseKind(at, ErrorTexts::tr("null"));
    at.skip();
    return QVariant();
}

ReadResult readBool(CborReader &at)
{
    if (at.kind() != CborReader::Bool)
        return refuseKind(at, ErrorTexts::tr("true or false"));
    return QVariant(at.readBool());
}

template<typename Integer>
ReadResult readInteger(CborReader &at)
{
    if (at.kind() != CborReader::Integer)
        return refuseKind(at, ErrorTexts::tr("an integer"));
    const CborInteger number = at.readInteger();
    if (!number.fits<Integer>())
        return refuseJson(ErrorTexts::tr("%1 is out of range").arg(number.toString()));
    return QVariant::fromValue(number.as<Integer>());
}

template<typename Float>
ReadResult readExactly(CborInteger integer)
{
    const auto number = integer.as<Float>();
    if (!integer.isExactAs<Float>()) {
        return refuseJson(ErrorTexts::tr("no %1 is %2, the nearest one is %3")
                              .arg(QLatin1String(QMetaType::typeName(qMetaTypeId<Float>())),
                                   integer.toString(), QString::number(double(number), 'f', 0)));
    }
    return QVariant::fromValue(number);
}

// What a text in place of a number stands for: NaN and the infinities.
std::optional<double> namedNumber(const QByteArray &name)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    if (name == "nan")
        return std::numeric_limits<double>::quiet_NaN();
    if (name == "inf" || name == "-inf")
        return name == "inf" ? infinity : -infinity;
    return std::nullopt;
}

template<typename Float>
ReadResult readFloat(CborReader &at)
{
    const CborReader::Kind kind = at.kind();
    if (kind == CborReader::Integer)
        return readExactly<Float>(at.readInteger());
    if (kind == CborReader::Text) {
        if (const std::optional<double> number = namedNumber(CborReader(at).readUtf8())) {
            at.skip();
            return QVariant::fromValue(Float(*number));
        }
    }
    if (kind != CborReader::Double)
        return refuseKind(at, ErrorTexts::tr(R"(a number, "nan", "inf" or "-inf")"));
    const double number = at.readDouble();
    if (std::fabs(number) > double(std::numeric_limits<Float>::max()))
        return refuseJson(ErrorTexts::tr("the number is out of range"));
    return QVariant::fromValue(Float(number));
}

// The payload of "$QString".
ReadResult readText(CborReader &at)
{
    if (at.kind() == CborReader::Text)
        return QVariant(at.readText());
    if (at.kind() != CborReader::Array)
        return refuseKind(at, ErrorTexts::tr("a string or an array of UTF-16 code units"));
    const int size = at.enter();
    QString text;
    text.reserve(size);
    for (int i = 0; i < size; ++i) {
        const ReadResult unit = readInteger<ushort>(at);
        if (!unit)
            return failureBelow(QString::number(i), unit.error());
        text.append(QChar(unit->value<ushort>()));
    }
    return QVariant(text);
}

ReadResult readByteArray(CborReader &at)
{
    if (at.kind() != CborReader::Text)
        return refuseKind(at, ErrorTexts::tr("a string in Base64"));
    const auto decoded =
        QByteArray::fromBase64Encoding(at.readUtf8(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return refuseJson(ErrorTexts::tr("the string is not in Base64"));
    return QVariant(*decoded);
}

// Reads an array of what `readItem` reads into a list of it.
template<typename List, typename ReadItem>
ReadResult readItems(CborReader &at, const char *expected, const ReadItem &readItem)
{
    if (at.kind() != CborReader::Array)
        return refuseKind(at, ErrorTexts::tr(expected));
    const int size = at.enter();
    List list;
    list.reserve(size);
    for (int i = 0; i < size; ++i) {
        const auto item = readItem(at);
        if (!item)
            return failureBelow(QString::number(i), item.error());
        list.append(*item);
    }
    return QVariant(list);
}

ReadResult readList(CborReader &at)
{
    return readItems<QVariantList>(at, QT_TRANSLATE_NOOP("StepHost::ErrorTexts", "an array"), readValue);
}

ReadResult readStringList(CborReader &at)
{
    return readItems<QStringList>(at, QT_TRANSLATE_NOOP("StepHost::ErrorTexts", "an array of strings"),
                                  readTextValue);
}

// Reads an array of a key and a value into `map`.
Result<void, JsonError> readPair(CborReader &at, QVariantMap &map)
{
    constexpr int sizeOfPair = 2;
    if (at.kind() != CborReader::Array || at.enter() != sizeOfPair)
        return refuseJson(ErrorTexts::tr("this should be an array of a key and a value"));
    const Result<QString, JsonError> key = readTextValue(at);
    if (!key)
        return failureBelow(QStringLiteral("0"), key.error());
    if (map.contains(*key))
        return refuseJson(ErrorTexts::tr("the map has the key %1 already").arg(quoted(*key)));
    const ReadResult value = readValue(at);
    if (!value)
        return failureBelow(QStringLiteral("1"), value.error());
    map.insert(*key, *value);
    return {};
}

ReadResult readMap(CborReader &at)
{
    if (at.kind() != CborReader::Array)
        return refuseKind(at, ErrorTexts::tr("an array of pairs"));
    QVariantMap map;
    const int size = at.enter();
    for (int i = 0; i < size; ++i) {
        const Result<void, JsonError> pair = readPair(at, map);
        if (!pair)
            return failureBelow(QString::number(i), pair.error());
    }
    return QVariant(map);
}

ReadResult readNull(CborReader &at)
{
    const TypedForm *form = at.kind() == CborReader::Text ? findTypedForm(at.readUtf8()) : nullptr;
    if (!form || form->type == QMetaType::UnknownType)
        return refuseJson(ErrorTexts::tr("this should be the name of a type, such as \"int\""));
    return QVariant(QVariant::Type(form->type));
}

ReadResult readTyped(CborReader &at)
{
    const QByteArray key = at.enter() == 1 ? at.readUtf8() : QByteArray();
    if (key == "$opaque")
        return refuseJson(ErrorTexts::tr("a value of this type was not written and cannot be read back"));
    const TypedForm *form = key.startsWith('$') ? findTypedForm(key.mid(1)) : nullptr;
    if (!form && key != "$null") {
        return refuseJson(
            ErrorTexts::tr("an object stands for a value of a special type and has one of these keys: %1")
                .arg(typedFormNames()));
    }
    const ReadResult value = form ? form->read(at) : readNull(at);
    if (!value)
        return failureBelow(QString::fromUtf8(key), value.error());
    return value;
}

const TypedForm typedForms[] = {
    {QMetaType::UnknownType, readNothing},
    {QMetaType::Bool, readBool},
    {QMetaType::Int, readInteger<int>},
    {QMetaType::UInt, readInteger<uint>},
    {QMetaType::LongLong, readInteger<qlonglong>},
    {QMetaType::ULongLong, readInteger<qulonglong>},
    {QMetaType::Long, readInteger<long>},
    {QMetaType::ULong, readInteger<ulong>},
    {QMetaType::Short, readInteger<short>},
    {QMetaType::UShort, readInteger<ushort>},
    {QMetaType::Char, readInteger<char>},
    {QMetaType::SChar, readInteger<signed char>},
    {QMetaType::UChar, readInteger<uchar>},
    {QMetaType::Double, readFloat<double>},
    {QMetaType::Float, readFloat<float>},
    {QMetaType::QString, readText},
    {QMetaType::QByteArray, readByteArray},
    {QMetaType::QStringList, readStringList},
    {QMetaType::QVariantList, readList},
    {QMetaType::QVariantMap, readMap},
};

QByteArray nameOf(const TypedForm &form)
{
    return form.type == QMetaType::UnknownType ? QByteArray("QVariant")
                                               : QByteArray(QMetaType::typeName(form.type));
}

const TypedForm *findTypedForm(const QByteArray &typeName)
{
    for (const TypedForm &form : typedForms) {
        if (nameOf(form) == typeName)
            return &form;
    }
    return nullptr;
}

QString typedFormNames()
{
    QStringList names;
    for (const TypedForm &form : typedForms)
        names.append(QLatin1Char('$') + QString::fromLatin1(nameOf(form)));
    names.append(QStringLiteral("$null"));
    return names.join(QLatin1String(", "));
}

ReadResult readPlainInteger(CborReader &at)
{
    const CborInteger number = CborReader(at).readInteger();
    if (number.fits<int>())
        return readInteger<int>(at);
    return number.fits<qlonglong>() ? readInteger<qlonglong>(at) : readInteger<qulonglong>(at);
}
} // namespace

Result<QVariant, JsonError> readValue(CborReader &at)
{
    switch (at.kind()) {
    case CborReader::Null:
        return readNothing(at);
    case CborReader::Bool:
        return readBool(at);
    case CborReader::Integer:
        return readPlainInteger(at);
    case CborReader::Double:
        return readFloat<double>(at);
    case CborReader::Text:
        return readText(at);
    case CborReader::Array:
        return readList(at);
    case CborReader::Map:
        break;
    }
    return readTyped(at);
}

Result<QString, JsonError> readTextValue(CborReader &at)
{
    if (at.kind() != CborReader::Text && at.kind() != CborReader::Map)
        return refuseKind(at, ErrorTexts::tr("a string"));
    const ReadResult value = readValue(at);
    if (!value)
        return failure(value.error());
    if (value->userType() != QMetaType::QString)
        return refuseJson(ErrorTexts::tr("this should be a string"));
    return value->toString();
}

Result<QVariant, JsonError> readVariableValue(CborReader &at, VarType type)
{
    const CborReader start = at;
    if (type == VarType::Double && start.kind() == CborReader::Integer)
        return readFloat<double>(at);
    ReadResult value = readValue(at);
    if (value && start.kind() != CborReader::Map && !hasShapeOf(*value, type)) {
        return refuseJson(ErrorTexts::tr("this is %1, a variable of type %2 takes %3")
                              .arg(kindName(start), varTypeName(type), expectedForm(type)));
    }
    return value;
}

Result<QVariant> valueFromJson(const QByteArray &json)
{
    const Result<QByteArray, JsonError> cbor = cborFromJson(json);
    if (!cbor)
        return failure(cbor.error().toString());
    CborReader at(*cbor);
    return readValue(at).map_error([](const JsonError &error) { return error.toString(); });
}

QString kindName(CborReader at)
{
    switch (at.kind()) {
    case CborReader::Null:
        return QStringLiteral("null");
    case CborReader::Bool:
        return at.readBool() ? QStringLiteral("true") : QStringLiteral("false");
    case CborReader::Integer:
        return at.readInteger().fits<int>() ? ErrorTexts::tr("an integer")
                                            : ErrorTexts::tr("a 64-bit integer");
    case CborReader::Double:
        return ErrorTexts::tr("a double");
    case CborReader::Text:
        return ErrorTexts::tr("a string");
    case CborReader::Array:
        return ErrorTexts::tr("an array");
    case CborReader::Map:
        break;
    }
    return ErrorTexts::tr("an object");
}

tl::unexpected<JsonError> refuseKind(CborReader at, const QString &expected)
{
    return refuseJson(ErrorTexts::tr("this is %1, it should be %2").arg(kindName(at), expected));
}
} // namespace StepHost
