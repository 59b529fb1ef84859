#pragma once

#include "host/plugins/StepRecord.h"
#include "host/plugins/StepSettings.h"
#include "hostapi/Operation.h"
#include "hostapi/VariableScope.h"

#include <QByteArray>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <functional>

namespace StepHost
{
class CheckContext;

/// The values of the settings of \a step, in the order of settingsOf().
QVariantList readSettings(const Operation &step);

/// Ends the check as failed, with \a what in front, when the settings of \a step are not \a expected.
void expectSettings(const Operation &step, const QVariantList &expected, const QString &what);

/// Gives \a setting of \a step a value that is not its present one. Leaves a setting alone whose type is
/// none of text, truth value, integer and number.
void changeSetting(Operation &step, const QMetaProperty &setting);

/// The same for every setting of \a step. No two texts become the same.
void changeSettings(Operation &step);

/// Gives every text setting of \a step that is not empty a longer text.
void changeTexts(Operation &step);

/// Texts that users do not type and files can hold.
const QStringList &hostileTexts();

/// Integers at the edges.
const QVector<int> &edgeIntegers();

/// Gives every text setting of \a step the value \a text.
void setTexts(Operation &step, const QString &text);

/// Gives every integer setting of \a step the value \a number.
void setIntegers(Operation &step, int number);

/// The protected members of the base.
/// @{
quint32 baseStateOf(const Operation &step);
void setBaseState(Operation &step, quint32 state);
const VariableScope *scopeOf(const Operation &step);
/// @}

/// Declares a variable of each type, lists of mixed content, and a list variable that holds a text.
void fillScope(VariableScope &scope);

/// The variables of \a scope as values that share no data with it, in a form that can be compared.
QByteArray snapshotOf(const VariableScope &scope);

/// One run of a step.
struct StepRun
{
    Operation &step;
    QVariantList settings; ///< Before the run.
    QByteArray before; ///< The variables before the run.
    QByteArray after;
    QStringList warnings;
};

/// Runs every step of a new set many times, with settings that name variables of every type, variables that
/// do not exist, literals and nothing at all, and hands each run to \a check. \a prepare sets up the new
/// scope of each run.
void forEachRun(CheckContext &context, const std::function<void(VariableScope &)> &prepare,
                const std::function<void(const StepRun &)> &check);

/// The settings of \a run in one line, for a reason.
QString settingsText(const StepRun &run);
} // namespace StepHost
