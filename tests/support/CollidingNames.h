#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

/// Names of equal length that have one hash value, whatever seed a process draws for its hashes.
namespace CollidingNames
{
/// \a count of them, and at most 65,536; one where Qt computes the hash of a text in a way that is not known here.
inline QStringList make(int count)
{
    constexpr int bits = 16;
    constexpr int length = 32 + bits;
    // The processor's CRC is linear: a change of a character changes the hash by the same bits in any text of
    // that length. More changes than the hash has bits are not independent, and those that cancel are found
    // by elimination.
    const auto changed = [](quint64 mask) {
        QString text(length, QLatin1Char('b'));
        for (int i = 0; i < length; ++i)
            text[i] = QLatin1Char(mask >> i & 1 ? 'c' : 'b');
        return text;
    };
    struct Change
    {
        uint hash = 0;
        quint64 mask = 0;
    };
    Change basis[32];
    QVector<quint64> cancelling;
    for (int i = 0; i < length; ++i) {
        Change change{qHash(changed(quint64(1) << i), 1) ^ qHash(changed(0), 1), quint64(1) << i};
        for (int bit = 0; bit < 32 && change.hash != 0; ++bit) {
            if (!(change.hash >> bit & 1))
                continue;
            if (basis[bit].hash == 0) {
                basis[bit] = change;
                break;
            }
            change = {change.hash ^ basis[bit].hash, change.mask ^ basis[bit].mask};
            if (change.hash == 0)
                cancelling.append(change.mask);
        }
    }
    const auto byChecksum = [&](int number) {
        quint64 mask = 0;
        for (int bit = 0; bit < bits && bit < cancelling.size(); ++bit)
            mask ^= number >> bit & 1 ? cancelling.at(bit) : 0;
        return changed(mask);
    };
    // Without that instruction it is 31 * hash + character.
    const auto byProduct = [](int number) {
        QString text;
        for (int bit = 0; bit < bits; ++bit)
            text += QLatin1String(number >> bit & 1 ? "BB" : "Aa");
        return text;
    };
    const auto collide = [](const QString &a, const QString &b) {
        return a != b && qHash(a, 1) == qHash(b, 1) && qHash(a, 12345) == qHash(b, 12345);
    };

    QStringList names;
    const bool isProduct = collide(byProduct(0), byProduct(1));
    for (int i = 0; i < count && i < 1 << bits; ++i) {
        const QString name = isProduct ? byProduct(i) : byChecksum(i);
        if (i > 0 && !collide(name, names.first()))
            break;
        names.append(name);
    }
    return names;
}
} // namespace CollidingNames
