#include "ExportedSymbols.h"

#include "ElfFile.h"

#include <QFile>

namespace StepHost
{
#ifdef STEPHOST_HAS_ELF
ExportedSymbols readExportedSymbols(const QString &fileName)
{
    ExportedSymbols symbols;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return symbols;
    const ElfFile elf(file.readAll());
    symbols.isKnown = elf.isReadable();
    if (!symbols.isKnown)
        return symbols;
    const auto header = elf.at<Elf64_Ehdr>(0);
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
