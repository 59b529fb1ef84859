#pragma once

#include <QRegularExpression>

/// Whether \a text is \a pattern, in which each "*" stands for any text on one line.
inline bool isLike(const QString &text, const QString &pattern)
{
    const QString expression = QRegularExpression::escape(pattern).replace("\\*", ".*");
    return QRegularExpression("\\A" + expression + "\\z").match(text).hasMatch();
}
