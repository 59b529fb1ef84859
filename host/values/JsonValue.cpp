#include "JsonValue.h"

#include "InputFile.h"
#include "JsonTree.h"
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
using AppendPayload = QString (*)(QByteArray &json, const QVariant &value, int depth);

// A type that has a typed form: how what stands after "$name" is read and written.
struct TypedForm
{
    int type;
    ReadPayload read;
    AppendPayload append;
};

const TypedForm *findTypedForm(int type);

void appendDouble(QByteArray &json, double number)
{
    // Qt writes a zero without its sign.
    if (number == 0.0 && std::signbit(number))
        json += '-';
    QByteArray digits = QByteArray::number(number, 'g', QLocale::FloatingPointShortest);
    if (!digits.contains('.') && !digits.contains('e'))
        digits += ".0";
    json += digits;
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

QString checkDepth(int levels)
{
    return levels > maxJsonDepth ? QStringLiteral("is nested deeper than %1 levels of JSON").arg(maxJsonDepth)
                                 : QString();
}

QString checkSize(const QByteArray &json)
{
    return json.size() > maxInputSize ? QStringLiteral("makes more than 256 MiB of JSON") : QString();
}

template<typename Items, typename AppendItem>
QString appendArray(QByteArray &json, const Items &items, int depth, const AppendItem &appendItem)
{
    const QString tooDeep = checkDepth(depth + 1);
    if (!tooDeep.isEmpty())
        return tooDeep;
    json += '[';
    bool first = true;
    for (auto it = items.begin(); it != items.end(); ++it) {
        if (!first)
            json += ", ";
        first = false;
        const QString error = appendItem(it);
        if (!error.isEmpty())
            return error;
    }
    json += ']';
    return checkSize(json);
}

QString appendList(QByteArray &json, const QVariant &value, int depth)
{
    const QVariantList list = value.toList();
    return appendArray(json, list, depth, [&](const QVariantList::const_iterator &it) {
        return appendAsJson(json, *it, depth + 1);
    });
}

QString appendStringList(QByteArray &json, const QVariant &value, int depth)
{
    const QStringList list = value.toStringList();
    return appendArray(json, list, depth, [&](const QStringList::const_iterator &it) {
        return appendAsJson(json, *it, depth + 1);
    });
}

QString appendMap(QByteArray &json, const QVariant &value, int depth)
{
    const QVariantMap map = value.toMap();
    return appendArray(json, map, depth, [&](QVariantMap::const_iterator it) {
        return appendList(json, QVariantList{it.key(), it.value()}, depth + 1);
    });
}

QString appendNothing(QByteArray &json, const QVariant &, int)
{
    json += "null";
    return QString();
}

QString appendBool(QByteArray &json, const QVariant &value, int)
{
    json += value.toBool() ? "true" : "false";
    return QString();
}

template<typename Integer>
QString appendInteger(QByteArray &json, const QVariant &value, int)
{
    if (std::is_signed<Integer>::value)
        json += QByteArray::number(value.toLongLong());
    else
        json += QByteArray::number(value.toULongLong());
    return QString();
}

QString appendNumber(QByteArray &json, const QVariant &value, int)
{
    const double number = value.toDouble();
    if (std::isnan(number))
        json += "\"nan\"";
    else if (std::isinf(number))
        json += number > 0 ? "\"inf\"" : "\"-inf\"";
    else
        appendDouble(json, number);
    return QString();
}

void appendCodeUnits(QByteArray &json, const QString &text)
{
    json += '[';
    for (int i = 0; i < text.size(); ++i) {
        if (i > 0)
            json += ", ";
        json += QByteArray::number(text.at(i).unicode());
    }
    json += ']';
}

// The payload of "$QString".
QString appendText(QByteArray &json, const QVariant &value, int depth)
{
    const QString text = value.toString();
    if (text.isValidUtf16()) {
        appendTextAsJson(json, text);
        return checkSize(json);
    }
    appendCodeUnits(json, text);
    return checkDepth(depth + 1);
}

QString appendByteArray(QByteArray &json, const QVariant &value, int)
{
    json += '"' + value.toByteArray().toBase64() + '"';
    return checkSize(json);
}

QString appendTyped(QByteArray &json, const QVariant &value, int depth)
{
    const TypedForm *form = findTypedForm(value.userType());
    const QByteArray typeName = value.isValid() ? QByteArray(value.typeName()) : QByteArray("QVariant");
    QString error = checkDepth(depth + 1);
    json += "{\"$";
    if (!form) {
        json += "opaque\": ";
        appendTextAsJson(json, QString::fromUtf8(typeName));
    } else if (value.isValid() && isNullOfItsType(value)) {
        json += "null\": \"" + typeName + '"';
    } else if (error.isEmpty()) {
        json += typeName + "\": ";
        error = form->append(json, value, depth + 1);
    }
    json += '}';
    return error;
}

bool isControl(QChar c)
{
    return c < QLatin1Char(' ') || (c >= QChar(0x7F) && c <= QChar(0x9F));
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

bool readNumber(const Json &json, double &number, JsonError &error)
{
    if (json.is_number()) {
        number = json.get<double>();
        return true;
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
    if (!readNumber(json, number, error))
        return false;
    value = number;
    return true;
}

bool readFloat(const Json &json, QVariant &value, JsonError &error)
{
    double number = 0;
    if (!readNumber(json, number, error))
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
    {QMetaType::UnknownType, readNothing, appendNothing},
    {QMetaType::Bool, readBool, appendBool},
    {QMetaType::Int, readInteger<int>, appendInteger<int>},
    {QMetaType::UInt, readInteger<uint>, appendInteger<uint>},
    {QMetaType::LongLong, readInteger<qlonglong>, appendInteger<qlonglong>},
    {QMetaType::ULongLong, readInteger<qulonglong>, appendInteger<qulonglong>},
    {QMetaType::Long, readInteger<long>, appendInteger<long>},
    {QMetaType::ULong, readInteger<ulong>, appendInteger<ulong>},
    {QMetaType::Short, readInteger<short>, appendInteger<short>},
    {QMetaType::UShort, readInteger<ushort>, appendInteger<ushort>},
    {QMetaType::Char, readInteger<char>, appendInteger<char>},
    {QMetaType::SChar, readInteger<signed char>, appendInteger<signed char>},
    {QMetaType::UChar, readInteger<uchar>, appendInteger<uchar>},
    {QMetaType::Double, readDouble, appendNumber},
    {QMetaType::Float, readFloat, appendNumber},
    {QMetaType::QString, readText, appendText},
    {QMetaType::QByteArray, readByteArray, appendByteArray},
    {QMetaType::QStringList, readStringList, appendStringList},
    {QMetaType::QVariantList, readList, appendList},
    {QMetaType::QVariantMap, readMap, appendMap},
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
    if (!readValue(json, value, error))
        return false;
    if (json.is_object())
        return true;
    if (type == VarType::Double && json.is_number())
        value = value.toDouble();
    return hasShapeOf(value, type)
        || refuseJson(error,
                      QStringLiteral("this is %1, a variable of type %2 takes %3")
                          .arg(kindName(json), varTypeName(type), expectedForm(type)));
}

ValueResult valueFromJson(const QByteArray &json)
{
    ValueResult result;
    Json document;
    JsonError error;
    if (!parseJson(json, document, error) || !readValue(document, result.value, error)) {
        result.value = QVariant();
        result.error = error.toString();
    }
    return result;
}

QString controlEscape(QChar c)
{
    if (c == QLatin1Char('\n'))
        return QStringLiteral("\\n");
    if (c == QLatin1Char('\r'))
        return QStringLiteral("\\r");
    if (c == QLatin1Char('\t'))
        return QStringLiteral("\\t");
    return isControl(c) ? QStringLiteral("\\u%1").arg(int(c.unicode()), 4, 16, QLatin1Char('0')) : QString();
}

void appendTextAsJson(QByteArray &json, const QString &text)
{
    if (!text.isValidUtf16()) {
        json += "{\"$QString\": ";
        appendCodeUnits(json, text);
        json += '}';
        return;
    }
    QString escaped;
    escaped.reserve(text.size() + 2);
    escaped += QLatin1Char('"');
    for (const QChar c : text) {
        if (c == QLatin1Char('"') || c == QLatin1Char('\\'))
            escaped += QLatin1Char('\\');
        if (isControl(c))
            escaped += controlEscape(c);
        else
            escaped += c;
    }
    escaped += QLatin1Char('"');
    json += escaped.toUtf8();
}

QString appendAsJson(QByteArray &json, const QVariant &value, int depth)
{
    if (!isPlain(value))
        return appendTyped(json, value, depth);
    return findTypedForm(value.userType())->append(json, value, depth);
}

QString appendVariableAsJson(QByteArray &json, const QVariant &value, VarType type, int depth)
{
    return hasShapeOf(value, type) ? appendAsJson(json, value, depth) : appendTyped(json, value, depth);
}
} // namespace StepHost
