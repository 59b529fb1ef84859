#include "Breadcrumb.h"

#include <QFile>
#include <QMetaObject>

#include <algorithm>
#include <cstring>

namespace StepHost
{
namespace
{
constexpr int crumbSize = 512;

// Mapped from the file, so that what is written stays when the process does not.
char unread[crumbSize];
char *crumb = unread;

char *append(char *at, const char *text)
{
    const auto room = std::size_t(crumb + crumbSize - 1 - at);
    const std::size_t size = qMin(std::strlen(text), room);
    return std::copy_n(text, size, at);
}
} // namespace

void leaveBreadcrumbsIn(const QString &fileName)
{
    static auto *file =
        new QFile(fileName); // Never deleted: libraries that end with the process may be called still.
    if (!file->open(QIODevice::ReadWrite) || !file->resize(crumbSize))
        return;
    if (uchar *mapped = file->map(0, crumbSize))
        crumb = reinterpret_cast<char *>(mapped);
    file->close(); // The mapping stays.
}

void noteCall(const char *call, const QObject *object)
{
    char *end = append(crumb, call);
    if (object) {
        end = append(end, " of ");
        end = append(end, object->metaObject()->className());
    }
    *end = '\0';
}

QString presentCall()
{
    return QString::fromUtf8(crumb);
}

QString lastBreadcrumb(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    const QByteArray bytes = file.read(crumbSize);
    return QString::fromUtf8(bytes.constData(), int(qstrnlen(bytes.constData(), uint(bytes.size()))));
}
} // namespace StepHost
