#pragma once

#include "hostapi/VariableScope.h"

#include <QMap>
#include <QVector>

namespace StepHost
{
/// What the variables of a trial run hold.
enum class ScopeContent {
    Mixed, ///< Lists with elements of every type.
    Numbers, ///< Lists of whole numbers.
    Texts, ///< Lists of texts.
    Rows, ///< Lists of lists.
    Empty, ///< Empty lists and texts, zeros.
    Short, ///< Lists of one element.
    Odd, ///< Lists with invalid values, maps and deep lists.
    Extreme, ///< The smallest and largest numbers, long texts.
};

/// All of them, the likeliest to let a step write first.
const QVector<ScopeContent> &scopeContents();

/// What a message calls \a content, such as `empty lists and zeros`.
QString contentName(ScopeContent content);

/// Declares in \a scope a few variables of each type: the lists `items`, `more` and `others`, the table `table`, the
/// integers `number` and `counter`, the numbers `real` and `share`, the texts `text` and `word`, the truth values `flag`
/// and `state`, and `odd`, a list variable that holds a text.
void fillTrialScope(VariableScope &scope, ScopeContent content);

/// The same with lists of \a length elements, of the kind that \a content has, or else numbers and texts in turn.
void fillLongScope(VariableScope &scope, ScopeContent content, int length);

/// One variable of a scope, with its declared type.
struct ScopeEntry
{
    VarType type = VarType::Undeclared;
    QVariant value;
};

/// The variables of \a scope by name.
QMap<QString, ScopeEntry> entriesOf(const VariableScope &scope);

/// The names of the variables that are in one of the two only, or have another value or type there.
QStringList changedNames(const QMap<QString, ScopeEntry> &before, const QMap<QString, ScopeEntry> &after);
} // namespace StepHost
