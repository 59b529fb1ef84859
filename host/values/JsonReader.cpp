#include "JsonReader.h"

#include "CborWriter.h"
#include "ErrorTexts.h"
#include "JsonValue.h"
#include "QuotedText.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <vector>

namespace StepHost
{
namespace
{
// Reads the text and tells how far the parser has come.
class TrackingIterator
{
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char *;
    using reference = const char &;

    TrackingIterator(const char *at, const char **reached) : m_at(at), m_reached(reached) { }

    reference operator*() const
    {
        return *m_at;
    }
    TrackingIterator &operator++()
    {
        *m_reached = ++m_at;
        return *this;
    }
    bool operator==(const TrackingIterator &other) const
    {
        return m_at == other.m_at;
    }
    bool operator!=(const TrackingIterator &other) const
    {
        return m_at != other.m_at;
    }

private:
    const char *m_at;
    const char **m_reached;
};

// Writes the document as CBOR and stops at the first thing that is refused.
class CborBuilder : public nlohmann::json_sax<nlohmann::json>
{
public:
    QString problem() const
    {
        return m_problem;
    }
    bool isSyntaxWrong() const
    {
        return m_isSyntaxWrong;
    }
    QByteArray takeDocument()
    {
        return m_cbor.takeDocument();
    }

    bool null() override
    {
        m_cbor.null();
        return true;
    }
    bool boolean(bool value) override
    {
        m_cbor.boolean(value);
        return true;
    }
    bool number_integer(number_integer_t value) override
    {
        m_cbor.integer(value);
        return true;
    }
    bool number_unsigned(number_unsigned_t value) override
    {
        m_cbor.unsignedInteger(value);
        return true;
    }
    bool number_float(number_float_t value, const string_t &digits) override
    {
        if (digits.find_first_of(".eE") == string_t::npos) {
            return refuse(
                ErrorTexts::tr("the integer %1 does not fit into 64 bits; write it with \".0\" for a double")
                    .arg(quoted(QString::fromStdString(digits))));
        }
        m_cbor.number(value);
        return true;
    }
    bool string(string_t &value) override
    {
        m_cbor.text(value.data(), int(value.size()));
        return true;
    }
    bool binary(binary_t &) override
    {
        return refuse(ErrorTexts::tr("binary data"));
    }
    bool start_object(std::size_t) override
    {
        if (!hasRoom())
            return false;
        m_cbor.openMap();
        m_keys.emplace_back();
        return true;
    }
    bool key(string_t &name) override
    {
        m_cbor.text(name.data(), int(name.size()));
        return m_keys.back().insert(name).second
            || refuse(ErrorTexts::tr("the object has the key %1 already")
                          .arg(quoted(QString::fromStdString(name))));
    }
    bool end_object() override
    {
        m_cbor.close();
        m_keys.pop_back();
        return true;
    }
    bool start_array(std::size_t) override
    {
        if (!hasRoom())
            return false;
        m_cbor.openArray();
        return true;
    }
    bool end_array() override
    {
        m_cbor.close();
        return true;
    }
    bool parse_error(std::size_t, const std::string &, const nlohmann::detail::exception &error) override
    {
        m_isSyntaxWrong = true;
        // "[json.exception.parse_error.101] parse error at line 1, column 2: <what is wrong>"
        QString text = QString::fromUtf8(error.what());
        text = text.mid(text.indexOf(QLatin1String("] ")) + 2);
        if (text.startsWith(QLatin1String("parse error at ")))
            text = text.mid(text.indexOf(QLatin1String(": ")) + 2);
        // It repeats what was read last, as long as that is.
        constexpr int most = 300;
        //: %1 is what the JSON parser says, in English
        return refuse(ErrorTexts::tr("%1", "JSON").arg(inOneLine(bounded(text, most))));
    }

private:
    bool refuse(const QString &problem)
    {
        m_problem = problem;
        return false;
    }

    // Whether another array or object can be opened.
    bool hasRoom()
    {
        return m_cbor.depth() < maxJsonDepth
            || refuse(
                   ErrorTexts::tr("arrays and objects are nested deeper than %1 levels").arg(maxJsonDepth));
    }

    CborWriter m_cbor;
    // Of the objects that are open. By order: keys can be chosen to have one hash value.
    std::vector<std::set<std::string>> m_keys;
    QString m_problem;
    bool m_isSyntaxWrong = false;
};

tl::unexpected<JsonError> refuseAt(const char *begin, const char *reached, const QString &text, bool isJson)
{
    JsonError error = refuseJson(text).value();
    error.isJson = isJson;
    error.line = 1;
    for (const char *at = begin; at != reached; ++at) {
        if (at != begin && at[-1] == '\n') {
            ++error.line;
            error.column = 0;
        }
        const bool continuesCharacter = (static_cast<unsigned char>(*at) & 0xC0) == 0x80;
        error.column += continuesCharacter ? 0 : 1;
    }
    error.column = std::max(error.column, 1);
    return failure(error);
}
} // namespace

QString JsonError::toString() const
{
    if (line > 0)
        return ErrorTexts::tr("line %1, column %2: %3").arg(line).arg(column).arg(text);
    constexpr int mostOfPointer = 300;
    return pointer.isEmpty() ? text : ErrorTexts::tr("at %1: %2").arg(bounded(pointer, mostOfPointer), text);
}

tl::unexpected<JsonError> refuseJson(const QString &text)
{
    constexpr int most = 1000;
    JsonError error;
    error.text = bounded(text, most);
    return failure(error);
}

tl::unexpected<JsonError> failure(const JsonError &error)
{
    return tl::unexpected<JsonError>(error);
}

tl::unexpected<JsonError> failureBelow(const QString &key, JsonError error)
{
    QString token = key;
    token.replace(QLatin1Char('~'), QLatin1String("~0")).replace(QLatin1Char('/'), QLatin1String("~1"));
    error.pointer.prepend(QLatin1Char('/') + token);
    return failure(error);
}

tl::unexpected<JsonError> refuseBelow(const QString &key, const QString &text)
{
    return failureBelow(key, refuseJson(text).value());
}

Result<QByteArray, JsonError> cborFromJson(const QByteArray &text)
{
    const char *begin = text.constData();
    const char *end = begin + text.size();
    const char *reached = begin;
    CborBuilder builder;
    if (!nlohmann::json::sax_parse(TrackingIterator(begin, &reached), TrackingIterator(end, &reached),
                                   &builder))
        return refuseAt(begin, reached, builder.problem(), !builder.isSyntaxWrong());
    // The parser takes a NUL byte for the end of the text, also the last one.
    if (reached[-1] == '\0') {
        return refuseAt(begin, reached, ErrorTexts::tr("there is a NUL byte after the JSON document"), false);
    }
    return builder.takeDocument();
}
} // namespace StepHost
