#pragma once

#include <QByteArray>

#include <vector>

namespace StepHost
{
/// Writes a CBOR document, each item in its shortest form, arrays and maps with their lengths, which need not be known
/// beforehand. What is written is not checked: in a map a key, which is a text, and a value have to take turns.
class CborWriter
{
public:
    void null();
    void boolean(bool value);
    void integer(qint64 value);
    void unsignedInteger(quint64 value);
    void number(double value);
    void text(const char *utf8, int size);

    void openArray();
    void openMap();

    /// Ends the innermost array or map.
    void close();

    /// How many arrays and maps are open.
    int depth() const;

    /// The document, after its last item. The writer is of no use then.
    QByteArray takeDocument();

private:
    // The first bytes of an item.
    struct Head
    {
        char bytes[1 + sizeof(quint64)];
        int size;
    };

    // An array or map that has not ended yet.
    struct Container
    {
        int start; // Where its first byte is.
        bool isMap;
        quint32 items; // Of a map keys and values.
    };

    // The length of a container that did not fit into the byte that was kept for it.
    struct LongLength
    {
        int start;
        Head head; // What is to stand in place of that byte.
    };

    static Head headOf(int major, quint64 argument);

    template<typename Integer>
    static Head headWith(int first, Integer argument);

    void open(bool isMap);
    void add(int first);
    void add(const Head &head);
    void insertLengths();

    QByteArray m_document;
    std::vector<Container> m_open;
    std::vector<LongLength> m_longLengths;
};
} // namespace StepHost
