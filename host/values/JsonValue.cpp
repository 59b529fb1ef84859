#include "JsonValue.h"

#include "JsonWriter.h"
#include "VarTypes.h"

#include <QLocale>
#include <QMetaType>

#include <cmath>
#include <limits>
#include <type_traits>

namespace StepHost
{
namespace
{
// A type that has a typed form: how what stands after "$name" is written.
struct TypedForm
{
    int type;
    Result<void> (*write)(JsonWriter &json, const QVariant &value);
};

const TypedForm *findTypedForm(int type);

QByteArray digitsOf(double number)
{
    QByteArray digits = QByteArray::number(number, 'g', QLocale::FloatingPointShortest);
    if (!digits.contains('.') && !digits.contains('e'))
        digits += ".0";
    // Qt writes a zero without its sign.
    if (number == 0.0 && std::signbit(number))
        digits.prepend('-');
    return digits;
}

bool isPlainInteger(const QVariant &value)
{
    constexpr qlonglong lowestInt = std::numeric_limits<int>::min();
    constexpr qlonglong highestInt = std::numeric_limits<int>::max();
    switch (value.userType()) {
    case QMetaType::Int:
        return true;
    case QMetaType::LongLong:
        return value.toLongLong() < lowestInt || value.toLongLong() > highestInt;
    case QMetaType::ULongLong:
        return value.toULongLong() > qulonglong(std::numeric_limits<qlonglong>::max());
    default:
        return false;
    }
}

// A text or byte array that is null is only an empty one.
bool isNullOfItsType(const QVariant &value)
{
    const int type = value.userType();
    return value.isNull() && type != QMetaType::QString && type != QMetaType::QByteArray;
}

bool isPlain(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return true;
    case QMetaType::Bool:
    case QMetaType::QVariantList:
        return !isNullOfItsType(value);
    case QMetaType::Double:
        return !isNullOfItsType(value) && std::isfinite(value.toDouble());
    case QMetaType::QString:
        return value.toString().isValidUtf16();
    default:
        return !isNullOfItsType(value) && isPlainInteger(value);
    }
}

template<typename Items, typename WriteItem>
Result<void> writeArray(JsonWriter &json, const Items &items, const WriteItem &writeItem)
{
    json.openArray();
    Result<void> state = json.check();
    for (auto it = items.begin(); state && it != items.end(); ++it)
        state = writeItem(it);
    json.close();
    return state ? json.check() : state;
}

Result<void> writeList(JsonWriter &json, const QVariant &value)
{
    return writeArray(json, value.toList(),
                      [&](const QVariantList::const_iterator &it) { return writeValue(json, *it); });
}

Result<void> writeStringList(JsonWriter &json, const QVariant &value)
{
    return writeArray(json, value.toStringList(),
                      [&](const QStringList::const_iterator &it) { return writeValue(json, *it); });
}

Result<void> writeMap(JsonWriter &json, const QVariant &value)
{
    return writeArray(json, value.toMap(), [&](QVariantMap::const_iterator it) {
        return writeList(json, QVariantList{it.key(), it.value()});
    });
}

Result<void> writeNothing(JsonWriter &json, const QVariant &)
{
    json.raw("null");
    return {};
}

Result<void> writeBool(JsonWriter &json, const QVariant &value)
{
    json.raw(value.toBool() ? "true" : "false");
    return {};
}

template<typename Integer>
Result<void> writeInteger(JsonWriter &json, const QVariant &value)
{
    json.raw(std::is_signed<Integer>::value ? QByteArray::number(value.toLongLong())
                                            : QByteArray::number(value.toULongLong()));
    return {};
}

Result<void> writeNumber(JsonWriter &json, const QVariant &value)
{
    const double number = value.toDouble();
    if (std::isnan(number))
        json.raw("\"nan\"");
    else if (std::isinf(number))
        json.raw(number > 0 ? "\"inf\"" : "\"-inf\"");
    else
        json.raw(digitsOf(number));
    return {};
}

// The payload of "$QString".
Result<void> writeTextPayload(JsonWriter &json, const QVariant &value)
{
    const QString text = value.toString();
    if (!text.isValidUtf16()) {
        return writeArray(json, text, [&json](QString::const_iterator it) {
            json.number(it->unicode());
            return Result<void>();
        });
    }
    json.text(text);
    return json.check();
}

Result<void> writeByteArray(JsonWriter &json, const QVariant &value)
{
    json.raw('"' + value.toByteArray().toBase64() + '"');
    return json.check();
}

Result<void> writeTyped(JsonWriter &json, const QVariant &value)
{
    const TypedForm *form = findTypedForm(value.userType());
    const QByteArray typeName = value.isValid() ? QByteArray(value.typeName()) : QByteArray("QVariant");
    json.openObject();
    Result<void> state = json.check();
    if (!form)
        json.key("$opaque").text(QString::fromUtf8(typeName));
    else if (value.isValid() && isNullOfItsType(value))
        json.key("$null").text(QString::fromUtf8(typeName));
    else if (state)
        state = form->write(json.key(('$' + typeName).constData()), value);
    json.close();
    return state;
}

const TypedForm typedForms[] = {
    {QMetaType::UnknownType, writeNothing},
    {QMetaType::Bool, writeBool},
    {QMetaType::Int, writeInteger<int>},
    {QMetaType::UInt, writeInteger<uint>},
    {QMetaType::LongLong, writeInteger<qlonglong>},
    {QMetaType::ULongLong, writeInteger<qulonglong>},
    {QMetaType::Long, writeInteger<long>},
    {QMetaType::ULong, writeInteger<ulong>},
    {QMetaType::Short, writeInteger<short>},
    {QMetaType::UShort, writeInteger<ushort>},
    {QMetaType::Char, writeInteger<char>},
    {QMetaType::SChar, writeInteger<signed char>},
    {QMetaType::UChar, writeInteger<uchar>},
    {QMetaType::Double, writeNumber},
    {QMetaType::Float, writeNumber},
    {QMetaType::QString, writeTextPayload},
    {QMetaType::QByteArray, writeByteArray},
    {QMetaType::QStringList, writeStringList},
    {QMetaType::QVariantList, writeList},
    {QMetaType::QVariantMap, writeMap},
};

const TypedForm *findTypedForm(int type)
{
    for (const TypedForm &form : typedForms) {
        if (form.type == type)
            return &form;
    }
    return nullptr;
}
} // namespace

Result<QByteArray> valueToJson(const QVariant &value)
{
    QByteArray bytes;
    JsonWriter json(bytes, JsonWriter::InLine);
    const Result<void> written = writeValue(json, value);
    if (!written)
        return failure(written.error());
    return bytes;
}

void writeText(JsonWriter &json, const QString &text)
{
    if (text.isValidUtf16())
        json.text(text);
    else
        writeTyped(json, text);
}

Result<void> writeValue(JsonWriter &json, const QVariant &value)
{
    if (!isPlain(value))
        return writeTyped(json, value);
    return findTypedForm(value.userType())->write(json, value);
}

Result<void> writeVariableValue(JsonWriter &json, const QVariant &value, VarType type)
{
    return hasShapeOf(value, type) ? writeValue(json, value) : writeTyped(json, value);
}
} // namespace StepHost
