#include "ExportedSymbols.h"

#include <QFile>

#include <cstring>

#if __has_include(<elf.h>)
#include <elf.h>
#define STEPHOST_HAS_ELF
#endif

namespace StepHost
{
#ifdef STEPHOST_HAS_ELF
namespace
{
/// Reads structures out of a file without trusting any of its offsets.
class ElfFile
{
public:
    explicit ElfFile(const QByteArray &bytes) : m_bytes(bytes) { }

    /// The structure at `offset`; all zero when it does not lie within the file.
    template<typename T>
    T at(quint64 offset) const
    {
        T value{};
        const auto size = quint64(m_bytes.size());
        if (offset <= size && size - offset >= sizeof(T))
            std::memcpy(&value, m_bytes.constData() + offset, sizeof(T));
        return value;
    }

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

constexpr unsigned char nativeOrder = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? ELFDATA2LSB : ELFDATA2MSB;
} // namespace

ExportedSymbols readExportedSymbols(const QString &fileName)
{
    ExportedSymbols symbols;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return symbols;
    const ElfFile elf(file.readAll());
    const auto header = elf.at<Elf64_Ehdr>(0);
    if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_CLASS] != ELFCLASS64
        || header.e_ident[EI_DATA] != nativeOrder)
        return symbols;
    symbols.isKnown = true;
    const auto section = [&](quint64 number) {
        return elf.at<Elf64_Shdr>(header.e_shoff + number * sizeof(Elf64_Shdr));
    };
    for (quint64 number = 0; number < header.e_shnum; ++number) {
        const Elf64_Shdr table = section(number);
        if (table.sh_type != SHT_DYNSYM)
            continue;
        const Elf64_Shdr names = section(table.sh_link);
        const quint64 count = qMin(quint64(table.sh_size), quint64(file.size())) / sizeof(Elf64_Sym);
        for (quint64 i = 0; i < count; ++i) {
            const auto symbol = elf.at<Elf64_Sym>(table.sh_offset + i * sizeof(Elf64_Sym));
            const bool isStrong = ELF64_ST_BIND(symbol.st_info) == STB_GLOBAL;
            const bool isVisible = ELF64_ST_VISIBILITY(symbol.st_other) == STV_DEFAULT
                || ELF64_ST_VISIBILITY(symbol.st_other) == STV_PROTECTED;
            if (isStrong && isVisible && symbol.st_shndx != SHN_UNDEF)
                symbols.names.append(elf.text(names.sh_offset + symbol.st_name));
        }
    }
    return symbols;
}
#else
ExportedSymbols readExportedSymbols(const QString &)
{
    return {};
}
#endif
} // namespace StepHost
