/// Runs a fuzz target over files, and over the files of folders, where libFuzzer is not at hand. Ends with a
/// non-zero status when there is nothing to run; a finding ends it at once.
///
/// Arguments that begin with "-" are libFuzzer's options and passed over.

#include "FuzzInput.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace
{
QStringList filesOf(const QString &path)
{
    const QDir folder(path);
    if (!folder.exists())
        return {path};
    QStringList files;
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    for (const QString &name : names)
        files.append(folder.filePath(name));
    return files;
}
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    int inputs = 0;
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    for (const QString &argument : arguments) {
        if (argument.startsWith('-'))
            continue;
        const QStringList paths = filesOf(argument);
        for (const QString &path : paths) {
            QFile file(path);
            if (!file.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "%s: %s\n", qPrintable(path), qPrintable(file.errorString()));
                return 1;
            }
            const QByteArray bytes = file.readAll();
            std::printf("%s\n", qPrintable(path));
            std::fflush(stdout);
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                                   static_cast<std::size_t>(bytes.size()));
            ++inputs;
        }
    }
    std::printf("%d inputs replayed\n", inputs);
    return inputs > 0 ? 0 : 1;
}
