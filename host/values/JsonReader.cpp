#include "JsonReader.h"

#include "JsonValue.h"
#include "QuotedText.h"

#include <iterator>
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

// Builds the document and stops at the first thing that is refused.
class DocumentBuilder : public nlohmann::json_sax<Json>
{
public:
    explicit DocumentBuilder(Json &document) : m_document(document) { }

    QString problem() const
    {
        return m_problem;
    }
    bool isSyntaxWrong() const
    {
        return m_isSyntaxWrong;
    }

    bool null() override
    {
        return add(Json());
    }
    bool boolean(bool value) override
    {
        return add(value);
    }
    bool number_integer(number_integer_t value) override
    {
        return add(value);
    }
    bool number_unsigned(number_unsigned_t value) override
    {
        return add(value);
    }
    bool number_float(number_float_t value, const string_t &digits) override
    {
        if (digits.find_first_of(".eE") == string_t::npos) {
            return refuse(
                QStringLiteral("the integer %1 does not fit into 64 bits; write it with \".0\" for a double")
                    .arg(quoted(QString::fromStdString(digits))));
        }
        return add(value);
    }
    bool string(string_t &value) override
    {
        return add(std::move(value));
    }
    bool binary(binary_t &) override
    {
        return refuse(QStringLiteral("binary data"));
    }
    bool start_object(std::size_t) override
    {
        return open(Json::object());
    }
    bool key(string_t &name) override
    {
        const auto added = m_open.back()->get_ref<Json::object_t &>().emplace(name, Json());
        m_member = &added.first->second;
        return added.second
            || refuse(QStringLiteral("the object has the key %1 already")
                          .arg(quoted(QString::fromStdString(name))));
    }
    bool end_object() override
    {
        return close();
    }
    bool start_array(std::size_t) override
    {
        return open(Json::array());
    }
    bool end_array() override
    {
        return close();
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
        return refuse(inOneLine(bounded(text, most)));
    }

private:
    bool refuse(const QString &problem)
    {
        m_problem = problem;
        return false;
    }

    Json *place(Json &&value)
    {
        if (m_open.empty())
            return &(m_document = std::move(value));
        if (!m_open.back()->is_array())
            return &(*m_member = std::move(value));
        auto &array = m_open.back()->get_ref<Json::array_t &>();
        array.push_back(std::move(value));
        return &array.back();
    }

    bool add(Json &&value)
    {
        place(std::move(value));
        return true;
    }

    bool open(Json &&container)
    {
        if (m_open.size() == std::size_t(maxJsonDepth)) {
            return refuse(
                QStringLiteral("arrays and objects are nested deeper than %1 levels").arg(maxJsonDepth));
        }
        m_open.push_back(place(std::move(container)));
        return true;
    }

    bool close()
    {
        m_open.pop_back();
        return true;
    }

    Json &m_document;
    std::vector<Json *> m_open;
    Json *m_member = nullptr;
    QString m_problem;
    bool m_isSyntaxWrong = false;
};

bool refuseAt(JsonError &error, const char *begin, const char *reached, const QString &text)
{
    error.line = 1;
    error.column = 0;
    for (const char *at = begin; at != reached; ++at) {
        if (at != begin && at[-1] == '\n') {
            ++error.line;
            error.column = 0;
        }
        const bool continuesCharacter = (static_cast<unsigned char>(*at) & 0xC0) == 0x80;
        error.column += continuesCharacter ? 0 : 1;
    }
    error.column = std::max(error.column, 1);
    return refuseJson(error, text);
}
} // namespace

QString JsonError::toString() const
{
    if (line > 0)
        return QStringLiteral("line %1, column %2: %3").arg(line).arg(column).arg(text);
    constexpr int mostOfPointer = 300;
    return pointer.isEmpty() ? text : QStringLiteral("at %1: ").arg(bounded(pointer, mostOfPointer)) + text;
}

bool refuseJson(JsonError &error, const QString &text)
{
    constexpr int most = 1000;
    error.text = bounded(text, most);
    return false;
}

bool refuseBelow(JsonError &error, const QString &key)
{
    QString token = key;
    token.replace(QLatin1Char('~'), QLatin1String("~0")).replace(QLatin1Char('/'), QLatin1String("~1"));
    error.pointer.prepend(QLatin1Char('/') + token);
    return false;
}

bool parseJson(const QByteArray &text, Json &document, JsonError &error)
{
    const char *begin = text.constData();
    const char *end = begin + text.size();
    const char *reached = begin;
    DocumentBuilder builder(document);
    if (!Json::sax_parse(TrackingIterator(begin, &reached), TrackingIterator(end, &reached), &builder)) {
        error.isJson = !builder.isSyntaxWrong();
        return refuseAt(error, begin, reached, builder.problem());
    }
    // The parser takes a NUL byte for the end of the text, also the last one.
    if (reached[-1] == '\0')
        return refuseAt(error, begin, reached, QStringLiteral("there is a NUL byte after the JSON document"));
    return true;
}

void takeApart(Json &json)
{
    if (json.is_array()) {
        auto &array = json.get_ref<Json::array_t &>();
        for (Json &item : array)
            takeApart(item);
        array.clear();
    } else if (json.is_object()) {
        auto &object = json.get_ref<Json::object_t &>();
        for (auto &member : object)
            takeApart(member.second);
        object.clear();
    }
}

QString textOf(const std::string &utf8)
{
    static const std::string mark = "\xEF\xBB\xBF";
    std::size_t marks = 0;
    while (utf8.compare(marks * mark.size(), mark.size(), mark) == 0)
        ++marks;
    const std::size_t start = marks * mark.size();
    // QString::fromUtf8() gives an empty text memory of its own.
    const QString rest = start == utf8.size()
        ? QString(QLatin1String(""))
        : QString::fromUtf8(utf8.data() + start, int(utf8.size() - start));
    return marks == 0 ? rest : QString(int(marks), QChar(0xFEFF)) + rest;
}
} // namespace StepHost
