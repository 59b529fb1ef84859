#pragma once

#include <QByteArray>

#if __has_include(<elf.h>)
#include <elf.h>
#define STEPHOST_HAS_ELF

#include <cstring>

namespace StepHost
{
/// Reads structures out of a file without trusting any of its offsets.
class ElfFile
{
public:
    explicit ElfFile(const QByteArray &bytes) : m_bytes(bytes) { }

    /// Whether this is a library of 64 bits in the byte order of this machine.
    bool isReadable() const
    {
        constexpr unsigned char nativeOrder = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? ELFDATA2LSB : ELFDATA2MSB;
        const auto header = at<Elf64_Ehdr>(0);
        return std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 && header.e_ident[EI_CLASS] == ELFCLASS64
            && header.e_ident[EI_DATA] == nativeOrder;
    }

    /// The structure at \a offset; all zero when it does not lie within the file.
    template<typename T>
    T at(quint64 offset) const
    {
        T value{};
        const auto size = quint64(m_bytes.size());
        if (offset <= size && size - offset >= sizeof(T))
            std::memcpy(&value, m_bytes.constData() + offset, sizeof(T));
        return value;
    }

    /// The text at \a offset, up to its NUL; empty when it does not lie within the file.
    QByteArray text(quint64 offset) const
    {
        if (offset >= quint64(m_bytes.size()))
            return QByteArray();
        const int begin = int(offset);
        const int end = m_bytes.indexOf('\0', begin);
        return end < 0 ? QByteArray() : m_bytes.mid(begin, end - begin);
    }

private:
    QByteArray m_bytes;
};
} // namespace StepHost
#endif
