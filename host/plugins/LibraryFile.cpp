#include "LibraryFile.h"

#include "ElfFile.h"

#include <QFile>

namespace StepHost
{
#ifdef STEPHOST_HAS_ELF
namespace
{
void readSection(const ElfFile &elf, const Elf64_Shdr &section, const Elf64_Shdr &names, LibraryFile &library)
{
    constexpr quint64 mostEntries = 10000;
    const quint64 count = qMin(quint64(section.sh_size) / sizeof(Elf64_Dyn), mostEntries);
    for (quint64 i = 0; i < count; ++i) {
        const auto entry = elf.at<Elf64_Dyn>(section.sh_offset + i * sizeof(Elf64_Dyn));
        const auto text = [&] {
            return QString::fromLocal8Bit(elf.text(names.sh_offset + entry.d_un.d_val));
        };
        if (entry.d_tag == DT_NEEDED)
            library.needed.append(text());
        else if (entry.d_tag == DT_RUNPATH || entry.d_tag == DT_RPATH)
            library.searchPaths += text().split(QLatin1Char(':'));
        else if (entry.d_tag == DT_NULL)
            return;
    }
}
} // namespace

LibraryFile readLibraryFile(const QString &fileName)
{
    LibraryFile library;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return library;
    const ElfFile elf(file.readAll());
    library.isKnown = elf.isReadable();
    if (!library.isKnown)
        return library;
    const auto header = elf.at<Elf64_Ehdr>(0);
    bool saysStack = false;
    for (quint64 i = 0; i < header.e_phnum; ++i) {
        const auto segment = elf.at<Elf64_Phdr>(header.e_phoff + i * sizeof(Elf64_Phdr));
        if (segment.p_type != PT_GNU_STACK)
            continue;
        saysStack = true;
        library.wantsExecutableStack = (segment.p_flags & PF_X) != 0;
    }
    if (!saysStack && header.e_machine == EM_X86_64)
        library.wantsExecutableStack = true;
    const auto section = [&](quint64 number) {
        return elf.at<Elf64_Shdr>(header.e_shoff + number * sizeof(Elf64_Shdr));
    };
    for (quint64 number = 0; number < header.e_shnum; ++number) {
        const Elf64_Shdr dynamic = section(number);
        if (dynamic.sh_type == SHT_DYNAMIC)
            readSection(elf, dynamic, section(dynamic.sh_link), library);
    }
    return library;
}
#else
LibraryFile readLibraryFile(const QString &)
{
    return {};
}
#endif
} // namespace StepHost
