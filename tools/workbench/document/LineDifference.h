#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

namespace Workbench
{
/// A line of one text, of another, or of both.
struct DifferenceLine
{
    enum Side { Both, First, Second };

    Side side;
    QString text;
};

/// The lines of \a first and \a second in one sequence, which takes as many as it can for lines of both. Where two
/// stretches are too long to be compared line by line, each stands as a whole.
QVector<DifferenceLine> lineDifference(const QStringList &first, const QStringList &second);
} // namespace Workbench
