#pragma once

#include "VariableUses.h"
#include "hostapi/VariableScope.h"

#include <QString>
#include <QVariant>
#include <QVector>

#include <vector>

namespace StepHost
{
/// What is looked for. A pattern without text is found nowhere.
struct SearchPattern
{
    QString text;
    Qt::CaseSensitivity caseSensitivity = Qt::CaseInsensitive;
    bool isWhole = false; ///< Only texts that have nothing before or behind it.

    /// Whether it is in \a searched.
    bool isIn(const QString &searched) const;

    /// \a searched with \a replacement wherever the pattern is in it.
    QString replacedIn(const QString &searched, const QString &replacement) const;
};

/// A place of a script in which a pattern was found.
struct SearchHit
{
    enum Place {
        Step, ///< The name or the type of the step `row`.
        Setting, ///< The setting `property` of the step `row`.
        VariableName, ///< The name of `variable`.
        Value, ///< The value of `variable`, or something in it.
    };

    Place place = Step;
    int row = -1; ///< The step's, from 0; -1 for a variable.
    QString property;
    QString variable; ///< Without the mark.
    QString text; ///< What it was found in: of a value, the first such text.
    int count = 1; ///< In how many texts of the value it was found.
};

/// A script as it is searched: nothing in it is copied.
struct SearchedScript
{
    std::vector<const Operation *> steps; ///< None is null.
    const VariableScope &variables;
};

/// What a script has to become.
struct Replacement
{
    QVector<SettingChange> settings;
    VariableScope variables;
    int count = 0; ///< How many texts have changed.
};

/// Where \a pattern is in \a script: in the names and types of steps, in settings, in the names and the values of
/// variables. A setting that is a choice is searched as the text that the user sees; a number as it is written. Steps come
/// first, then variables, each in their order.
QVector<SearchHit> findInScript(const SearchedScript &script, const SearchPattern &pattern);

/// \a script with \a replacement wherever \a pattern is in a setting or a value that is a text, also within lists. Names
/// of steps and of variables, numbers and choices stay as they are.
Replacement replaceInScript(const SearchedScript &script, const SearchPattern &pattern,
                            const QString &replacement);
} // namespace StepHost
