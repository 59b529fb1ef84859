#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// The lines in which the texts differ: those of \a expected after "-", those of \a actual after "+".
inline QString difference(const QByteArray &expected, const QByteArray &actual)
{
    QList<QByteArray> removed = expected.split('\n');
    QList<QByteArray> added = actual.split('\n');
    int line = 1;
    while (!removed.isEmpty() && !added.isEmpty() && removed.first() == added.first()) {
        removed.removeFirst();
        added.removeFirst();
        ++line;
    }
    while (!removed.isEmpty() && !added.isEmpty() && removed.last() == added.last()) {
        removed.removeLast();
        added.removeLast();
    }
    QString text = QString("from line %1 on:\n").arg(line);
    for (const QByteArray &lost : qAsConst(removed))
        text += '-' + QString::fromUtf8(lost) + '\n';
    for (const QByteArray &found : qAsConst(added))
        text += '+' + QString::fromUtf8(found) + '\n';
    return text;
}
