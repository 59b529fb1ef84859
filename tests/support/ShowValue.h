#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include <cmath>

/// \a value as a text from which its type and its exact value can be read. Two values are shown alike only
/// when they are the same, type for type; a null text differs from an empty one.
inline QString shown(const QVariant &value)
{
    const auto number = [](double real) {
        return std::isnan(real) ? QString("nan")
                                : QString(std::signbit(real) ? "" : "+") + QString::number(real, 'g', 17);
    };
    const QString type = value.isValid() ? QString(value.typeName()) : QString("invalid");
    QStringList parts;
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return type;
    case QMetaType::Double:
    case QMetaType::Float:
        return type + ' ' + number(value.toDouble());
    case QMetaType::QString:
        return value.toString().isNull() ? "null text" : "text \"" + value.toString() + '"';
    case QMetaType::QByteArray:
        return type + ' ' + QString::fromLatin1(value.toByteArray().toHex());
    case QMetaType::QVariantList:
        for (const QVariant &element : value.toList())
            parts += shown(element);
        return '[' + parts.join(", ") + ']';
    case QMetaType::QStringList:
        for (const QString &element : value.toStringList())
            parts += shown(element);
        return type + " [" + parts.join(", ") + ']';
    case QMetaType::QVariantMap: {
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            parts += it.key() + ": " + shown(it.value());
        return '{' + parts.join(", ") + '}';
    }
    default:
        return type + (value.isNull() ? " null " : " ") + value.toString();
    }
}

inline QString shown(const QVariantList &list)
{
    return shown(QVariant(list));
}
