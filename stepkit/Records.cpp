#include "Records.h"

#include <QDataStream>

void writeRecordVersion(QDataStream &stream, quint32 version)
{
    stream << version;
}

quint32 readRecordVersion(QDataStream &stream, quint32 newest)
{
    quint32 version = 0;
    stream >> version;
    if (stream.status() != QDataStream::Ok)
        return 0;
    if (version < 1 || version > newest) {
        stream.setStatus(QDataStream::ReadCorruptData);
        return 0;
    }
    return version;
}

bool hasRecordTail(const QDataStream &stream)
{
    return stream.status() == QDataStream::Ok && !stream.atEnd();
}
