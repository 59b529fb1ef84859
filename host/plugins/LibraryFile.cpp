#include "LibraryFile.h"

#include "ElfFile.h"

#include <QFile>
#include <QSysInfo>
#include <QtEndian>

namespace StepHost
{
namespace
{
struct Processor
{
    quint16 elfMachine;
    quint16 peMachine;
    const char *name; ///< As QSysInfo calls it.
};

constexpr Processor processors[] = {{3, 0x14c, "i386"},     {62, 0x8664, "x86_64"}, {40, 0x1c4, "arm"},
                                    {183, 0xaa64, "arm64"}, {243, 0x5064, "riscv"}, {21, 0, "power64"},
                                    {20, 0, "power"},       {22, 0, "s390x"},       {8, 0, "mips"},
                                    {258, 0, "loongarch64"}};

QString processorNamed(quint16 Processor::*machine, quint16 number)
{
    for (const Processor &processor : processors) {
        if (processor.*machine == number)
            return QLatin1String(processor.name);
    }
    return QStringLiteral("another processor");
}

// The number of two bytes at `at`; 0 when they are not there.
quint16 numberAt(const QByteArray &bytes, int at, bool isBigEndian)
{
    if (at < 0 || at > bytes.size() - 2)
        return 0;
    return isBigEndian ? qFromBigEndian<quint16>(bytes.constData() + at)
                       : qFromLittleEndian<quint16>(bytes.constData() + at);
}

QString platformOfElf(const QByteArray &bytes)
{
    constexpr int bigEndian = 2;
    constexpr int placeOfMachine = 18;
    return QStringLiteral("Linux or its kin on ")
        + processorNamed(&Processor::elfMachine, numberAt(bytes, placeOfMachine, bytes.at(5) == bigEndian));
}

QString platformOfPe(const QByteArray &bytes)
{
    constexpr int placeOfHeader = 0x3c;
    const int header = numberAt(bytes, placeOfHeader, false);
    if (bytes.mid(header, 4) != QByteArray("PE\0\0", 4))
        return QString();
    return QStringLiteral("Windows on ")
        + processorNamed(&Processor::peMachine, numberAt(bytes, header + 4, false));
}

QString thisPlatform()
{
#ifdef Q_OS_WIN
    const QString system = QStringLiteral("Windows on ");
#else
    const QString system = QStringLiteral("Linux or its kin on ");
#endif
    return system + QSysInfo::buildCpuArchitecture();
}
} // namespace

QString foreignPlatformOf(const QString &fileName)
{
    constexpr int beginning = 4096;
    QFile file(fileName);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.read(beginning) : QByteArray();
    QString platform;
    if (bytes.startsWith("\x7f"
                         "ELF")
        && bytes.size() > 20)
        platform = platformOfElf(bytes);
    else if (bytes.startsWith("MZ"))
        platform = platformOfPe(bytes);
    else if (bytes.startsWith("\xcf\xfa\xed\xfe") || bytes.startsWith("\xca\xfe\xba\xbe"))
        platform = QStringLiteral("macOS");
    return platform == thisPlatform() ? QString() : platform;
}

QString sanitizerRuntimeOf(const QString &fileName)
{
    const QStringList needed = readLibraryFile(fileName).needed;
    for (const QString &name : needed) {
        for (const char *runtime : {"libasan.so", "libtsan.so", "libclang_rt.asan", "libclang_rt.tsan"}) {
            if (name.startsWith(QLatin1String(runtime)))
                return name;
        }
    }
    return QString();
}

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
