#pragma once

#include "PluginCheck.h"
#include "host/values/Result.h"

namespace StepHost
{
/// The checks that \a only names, without those that \a skip names, in the order of the table; all when \a only is
/// empty. A name is that of a check, such as `clone.parent`, that of a family, such as `clone`, or a pattern such as
/// `*.texts`, in which `*` stands for any text and `?` for any character. Refused is a name that no check has.
///
/// Unless \a hasBaseline, the checks that compare with an older release are left out, and a name that only they have is
/// refused.
Result<QVector<PluginCheck>> selectChecks(const QStringList &only, const QStringList &skip,
                                          bool hasBaseline = false);
} // namespace StepHost
