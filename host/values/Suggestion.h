#pragma once

#include <QString>
#include <QStringList>

namespace StepHost
{
/// The one of \a choices that a user who wrote \a name probably meant; empty when none is near enough to be told.
///
/// Near is one that becomes \a name, upper and lower case being the same, when a third of the characters, three at most,
/// are added, left out, replaced, or exchanged with their neighbour; of several the nearest, and of these the first.
/// Without such a one it is the only one that begins or ends with \a name. Names of fewer than three characters are
/// near to what differs from them in case alone.
///
/// It takes time for 10,000 choices at most, and names of more than 60 characters have no suggestion.
QString nearestOf(const QString &name, const QStringList &choices);
} // namespace StepHost
