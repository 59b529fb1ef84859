#pragma once

#include "Script.h"
#include "host/values/Result.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace StepHost
{
/// What became of a step or of a variable between two scripts.
enum class ChangeKind {
    Added,
    Removed,
    Moved, ///< It is the same, and stands elsewhere among those that are there in both.
    Changed, ///< Some of its values are others; it may stand elsewhere, too.
};

/// The name of \a kind in reports: "added", "removed", "moved", "changed".
QString changeName(ChangeKind kind);

/// A value of a step or of a variable in both scripts, as JSON in one line. One that is not there is empty.
struct ValueChange
{
    QString name;
    QByteArray before;
    QByteArray after;
};

/// What became of one step or one variable.
struct ItemChange
{
    ChangeKind kind = ChangeKind::Changed;
    int before = -1; ///< Its place in the first script, from 0; -1 for one that was added.
    int after = -1; ///< Its place in the second script; -1 for one that was removed.
    /// The values that differ: of one that was added or removed all, of one that was moved none.
    ///
    /// Those of a variable are "type" and "value". Those of a step are "enabled" and its settings, in their order; what its
    /// record holds beside these is "(record)".
    std::vector<ValueChange> values;
};

/// The changes that make one script another, in the order of the scripts. None when the scripts are the same: what is
/// written differently and read as the same, such as a setting that is left out, is no difference.
struct ScriptDifference
{
    std::vector<ItemChange> variables;
    std::vector<ItemChange> steps;
};

/// Compares \a before with \a after. Steps that are the same in both are known by that. Of the others two of one type are
/// taken for one that was changed when they stand between the same ones, or when they are the only ones of their type that
/// are left. Of variables that goes by their names.
///
/// Takes n log n time. Refused is a value that is nested too deep or too large.
Result<ScriptDifference> differenceOf(const Script &before, const Script &after);
} // namespace StepHost
