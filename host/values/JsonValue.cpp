#include "JsonValue.h"

#include "JsonTree.h"
#include "JsonWriter.h"
#include "QuotedText.h"
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
using ReadPayload = bool (*)(const Json &payload, QVariant &value, JsonError &error);
using WritePayload = Result<void> (*)(JsonWriter &json, const QVariant &value);

// A type that has a typed form: how what stands after "$name" is read and written.
struct TypedForm
{
    int type;
    ReadPayload read;
    WritePayload write;
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

bool readNothing(const Json &json, QVariant &value, JsonError &error)
{
    value = QVariant();
    return json.is_null() || refuseKind(error, json, "null");
}

bool readBool(const Json &json, QVariant &value, JsonError &error)
{
    if (!json.is_boolean())
        return refuseKind(error, json, "true or false");
    value = json.get<bool>();
    return true;
}

template<typename Integer>
bool holds(const Json &integer)
{
    using Limits = std::numeric_limits<Integer>;
    if (integer.is_number_unsigned())
        return integer.get<quint64>() <= quint64(Limits::max());
    // What is not unsigned is negative.
    return std::is_signed<Integer>::value && integer.get<qint64>() >= qint64(Limits::min());
}

template<typename Integer>
bool readInteger(const Json &json, QVariant &value, JsonError &error)
{
    if (!json.is_number_integer())
        return refuseKind(error, json, "an integer");
    if (!holds<Integer>(json))
        return refuseJson(error,
                          QStringLiteral("%1 is out of range").arg(QString::fromStdString(json.dump())));
    value = QVariant::fromValue(json.get<Integer>());
    return true;
}

// Whether the bits of a Float are enough for `integer`.
template<typename Float>
bool isExactAs(const Json &integer)
{
    constexpr quint64 limit = quint64(1) << std::numeric_limits<Float>::digits;
    const auto bits = integer.get<quint64>();
    quint64 magnitude = integer.is_number_unsigned() ? bits : 0 - bits;
    while (magnitude > limit && magnitude % 2 == 0)
        magnitude /= 2;
    return magnitude <= limit;
}

template<typename Float>
bool readNumber(const Json &json, double &number, JsonError &error)
{
    if (json.is_number()) {
        number = json.get<double>();
        if (json.is_number_float() || isExactAs<Float>(json))
            return true;
        return refuseJson(error,
                          QStringLiteral("no %1 is %2, the nearest one is %3")
                              .arg(QLatin1String(QMetaType::typeName(qMetaTypeId<Float>())),
                                   QString::fromStdString(json.dump()),
                                   QString::number(double(json.get<Float>()), 'f', 0)));
    }
    const std::string name = json.is_string() ? json.get<std::string>() : std::string();
    if (name == "nan")
        number = std::numeric_limits<double>::quiet_NaN();
    else if (name == "inf" || name == "-inf")
        number = (name == "inf" ? 1 : -1) * std::numeric_limits<double>::infinity();
    else
        return refuseKind(error, json, R"(a number, "nan", "inf" or "-inf")");
    return true;
}

bool readDouble(const Json &json, QVariant &value, JsonError &error)
{
    double number = 0;
    if (!readNumber<double>(json, number, error))
        return false;
    value = number;
    return true;
}

bool readFloat(const Json &json, QVariant &value, JsonError &error)
{
    double number = 0;
    if (!readNumber<float>(json, number, error))
        return false;
    if (std::isfinite(number) && std::fabs(number) > double(std::numeric_limits<float>::max()))
        return refuseJson(error, QStringLiteral("the number is out of range"));
    value = QVariant::fromValue(float(number));
    return true;
}

// The payload of "$QString".
bool readText(const Json &json, QVariant &value, JsonError &error)
{
    if (json.is_string()) {
        value = textOf(json.get_ref<const std::string &>());
        return true;
    }
    if (!json.is_array())
        return refuseKind(error, json, "a string or an array of UTF-16 code units");
    QString text;
    text.reserve(int(json.size()));
    for (std::size_t i = 0; i < json.size(); ++i) {
        QVariant unit;
        if (!readInteger<ushort>(json[i], unit, error))
            return refuseBelow(error, QString::number(i));
        text.append(QChar(unit.value<ushort>()));
    }
    value = text;
    return true;
}

bool readByteArray(const Json &json, QVariant &value, JsonError &error)
{
    if (!json.is_string())
        return refuseKind(error, json, "a string in Base64");
    const auto decoded = QByteArray::fromBase64Encoding(QByteArray::fromStdString(json.get<std::string>()),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return refuseJson(error, QStringLiteral("the string is not in Base64"));
    value = *decoded;
    return true;
}

bool readList(const Json &json, QVariant &value, JsonError &error)
{
    if (!json.is_array())
        return refuseKind(error, json, "an array");
    QVariantList list;
    list.reserve(int(json.size()));
    for (std::size_t i = 0; i < json.size(); ++i) {
        list.append(QVariant());
        if (!readValue(json[i], list.last(), error))
            return refuseBelow(error, QString::number(i));
    }
    value = list;
    return true;
}

bool readStringList(const Json &json, QVariant &value, JsonError &error)
{
    if (!json.is_array())
        return refuseKind(error, json, "an array of strings");
    QStringList list;
    list.reserve(int(json.size()));
    for (std::size_t i = 0; i < json.size(); ++i) {
        QString text;
        if (!readTextValue(json[i], text, error))
            return refuseBelow(error, QString::number(i));
        list.append(text);
    }
    value = list;
    return true;
}

bool readMap(const Json &json, QVariant &value, JsonError &error)
{
    if (!json.is_array())
        return refuseKind(error, json, "an array of pairs");
    QVariantMap map;
    for (std::size_t i = 0; i < json.size(); ++i) {
        const Json &pair = json[i];
        const QString position = QString::number(i);
        if (!pair.is_array() || pair.size() != 2) {
            refuseJson(error, QStringLiteral("this should be an array of a key and a value"));
            return refuseBelow(error, position);
        }
        QString key;
        if (!readTextValue(pair[0], key, error)) {
            refuseBelow(error, QStringLiteral("0"));
            return refuseBelow(error, position);
        }
        if (map.contains(key)) {
            refuseJson(error, QStringLiteral("the map has the key %1 already").arg(quoted(key)));
            return refuseBelow(error, position);
        }
        if (!readValue(pair[1], map[key], error)) {
            refuseBelow(error, QStringLiteral("1"));
            return refuseBelow(error, position);
        }
    }
    value = map;
    return true;
}

const TypedForm typedForms[] = {
    {QMetaType::UnknownType, readNothing, writeNothing},
    {QMetaType::Bool, readBool, writeBool},
    {QMetaType::Int, readInteger<int>, writeInteger<int>},
    {QMetaType::UInt, readInteger<uint>, writeInteger<uint>},
    {QMetaType::LongLong, readInteger<qlonglong>, writeInteger<qlonglong>},
    {QMetaType::ULongLong, readInteger<qulonglong>, writeInteger<qulonglong>},
    {QMetaType::Long, readInteger<long>, writeInteger<long>},
    {QMetaType::ULong, readInteger<ulong>, writeInteger<ulong>},
    {QMetaType::Short, readInteger<short>, writeInteger<short>},
    {QMetaType::UShort, readInteger<ushort>, writeInteger<ushort>},
    {QMetaType::Char, readInteger<char>, writeInteger<char>},
    {QMetaType::SChar, readInteger<signed char>, writeInteger<signed char>},
    {QMetaType::UChar, readInteger<uchar>, writeInteger<uchar>},
    {QMetaType::Double, readDouble, writeNumber},
    {QMetaType::Float, readFloat, writeNumber},
    {QMetaType::QString, readText, writeTextPayload},
    {QMetaType::QByteArray, readByteArray, writeByteArray},
    {QMetaType::QStringList, readStringList, writeStringList},
    {QMetaType::QVariantList, readList, writeList},
    {QMetaType::QVariantMap, readMap, writeMap},
};

const TypedForm *findTypedForm(int type)
{
    for (const TypedForm &form : typedForms) {
        if (form.type == type)
            return &form;
    }
    return nullptr;
}

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

bool readNull(const Json &json, QVariant &value, JsonError &error)
{
    const QByteArray typeName =
        json.is_string() ? QByteArray::fromStdString(json.get<std::string>()) : QByteArray();
    const TypedForm *form = findTypedForm(typeName);
    if (!form || form->type == QMetaType::UnknownType)
        return refuseJson(error, QStringLiteral("this should be the name of a type, such as \"int\""));
    value = QVariant(QVariant::Type(form->type));
    return true;
}

bool readTyped(const Json &json, QVariant &value, JsonError &error)
{
    const std::string key = json.size() == 1 ? json.begin().key() : std::string();
    const TypedForm *form =
        key.empty() || key[0] != '$' ? nullptr : findTypedForm(QByteArray::fromStdString(key.substr(1)));
    if (key == "$opaque")
        return refuseJson(error,
                          QStringLiteral("a value of this type was not written and cannot be read back"));
    if (!form && key != "$null") {
        return refuseJson(
            error,
            QStringLiteral("an object stands for a value of a special type and has one of these "
                           "keys: %1")
                .arg(typedFormNames()));
    }
    const Json &payload = json.begin().value();
    const bool isRead = form ? form->read(payload, value, error) : readNull(payload, value, error);
    return isRead || refuseBelow(error, QString::fromStdString(key));
}
} // namespace

QString kindName(const Json &json)
{
    switch (json.type()) {
    case Json::value_t::null:
        return QStringLiteral("null");
    case Json::value_t::boolean:
        return json.get<bool>() ? QStringLiteral("true") : QStringLiteral("false");
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
        return holds<int>(json) ? QStringLiteral("an integer") : QStringLiteral("a 64-bit integer");
    case Json::value_t::number_float:
        return QStringLiteral("a double");
    case Json::value_t::string:
        return QStringLiteral("a string");
    case Json::value_t::array:
        return QStringLiteral("an array");
    default:
        return QStringLiteral("an object");
    }
}

bool refuseKind(JsonError &error, const Json &json, const char *expected)
{
    return refuseJson(
        error, QStringLiteral("this is %1, it should be %2").arg(kindName(json), QLatin1String(expected)));
}

bool readValue(const Json &json, QVariant &value, JsonError &error)
{
    switch (json.type()) {
    case Json::value_t::null:
        return readNothing(json, value, error);
    case Json::value_t::boolean:
        return readBool(json, value, error);
    case Json::value_t::number_float:
        return readDouble(json, value, error);
    case Json::value_t::string:
        return readText(json, value, error);
    case Json::value_t::array:
        return readList(json, value, error);
    case Json::value_t::object:
        return readTyped(json, value, error);
    default:
        break;
    }
    if (holds<int>(json))
        return readInteger<int>(json, value, error);
    if (holds<qlonglong>(json))
        return readInteger<qlonglong>(json, value, error);
    return readInteger<qulonglong>(json, value, error);
}

bool readTextValue(const Json &json, QString &text, JsonError &error)
{
    QVariant value;
    if (!json.is_string() && !json.is_object())
        return refuseKind(error, json, "a string");
    if (!readValue(json, value, error))
        return false;
    if (value.userType() != QMetaType::QString)
        return refuseJson(error, QStringLiteral("this should be a string"));
    text = value.toString();
    return true;
}

QString expectedForm(VarType type)
{
    switch (type) {
    case VarType::Int:
        return QStringLiteral("an integer");
    case VarType::Double:
        return QStringLiteral("a number");
    case VarType::String:
        return QStringLiteral("a string");
    case VarType::Bool:
        return QStringLiteral("true or false");
    case VarType::List:
        return QStringLiteral("an array");
    case VarType::Table:
        return QStringLiteral("an array of arrays");
    case VarType::Undeclared:
        break;
    }
    return QStringLiteral("a value");
}

bool readVariableValue(const Json &json, VarType type, QVariant &value, JsonError &error)
{
    if (type == VarType::Double && json.is_number())
        return readDouble(json, value, error);
    if (!readValue(json, value, error))
        return false;
    if (json.is_object())
        return true;
    return hasShapeOf(value, type)
        || refuseJson(error,
                      QStringLiteral("this is %1, a variable of type %2 takes %3")
                          .arg(kindName(json), varTypeName(type), expectedForm(type)));
}

Result<QVariant> valueFromJson(const QByteArray &json)
{
    Json document;
    QVariant value;
    JsonError error;
    if (!parseJson(json, document, error) || !readValue(document, value, error))
        return failure(error.toString());
    return value;
}

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
