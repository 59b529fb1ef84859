#pragma once

#include "Result.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace StepHost
{
/// How the control character \a c stands in a JSON string, such as `\n` or `\u001b`; empty for any other
/// character.
QString controlEscape(QChar c);

/// Appends one JSON document to a byte array, piece by piece, and puts commas, blanks and line ends between them:
///
///     JsonWriter json(bytes);
///     json.openObject().key("name").text(name).key("sizes").openArray(JsonWriter::InLine);
///     for (const int size : sizes)
///         json.number(size);
///     json.close().close();
///
/// That the pieces make a document is up to the caller: in an object a key before each value, a close() for
/// each array and object.
class JsonWriter
{
public:
    /// How the members of an array or object stand. Within one that is in one line all are.
    enum Layout {
        OnLines, ///< Each on a line of its own, unless there are none.
        InLine,
    };

    /// Writes to the end of \a json, which has to outlive the writer: all in one line, or each level indented by \a
    /// indent blanks.
    explicit JsonWriter(QByteArray &json, Layout layout = OnLines, int indent = 2);

    JsonWriter &openObject(Layout layout = OnLines);
    JsonWriter &openArray(Layout layout = OnLines);

    /// Ends the array or object that was opened last.
    JsonWriter &close();

    /// The key of the member that follows: \a name, of characters that need no escape.
    JsonWriter &key(const char *name);
    JsonWriter &key(const QString &name);

    /// \a text as a string. Control characters are written as escapes, a lone surrogate as "?".
    JsonWriter &text(const QString &text);

    JsonWriter &number(qlonglong number);

    /// \a json, which is a value already.
    JsonWriter &raw(const QByteArray &json);

    /// Refuses, in words that follow the name of a value, what nobody will read: more than maxJsonDepth open
    /// arrays and objects, and more than maxJsonSize bytes.
    Result<void> check() const;

private:
    struct Level
    {
        char end;
        Layout layout;
        bool isEmpty;
    };

    JsonWriter &open(char begin, char end, Layout wanted);
    Layout presentLayout() const;
    void startItem();
    void breakLine();
    void appendString(const QString &text);

    QByteArray &m_json;
    Layout m_layout;
    int m_indent;
    std::vector<Level> m_levels;
    bool m_isAfterKey = false;
};
} // namespace StepHost
