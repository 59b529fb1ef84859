#pragma once

#include "host/scripts/ScriptFile.h"
#include "host/scripts/ScriptMerge.h"
#include "host/scripts/ScriptSearch.h"

#include <QCoreApplication>
#include <QList>

#include <functional>
#include <optional>

namespace Workbench
{
class ScriptDocument;

/// Changes that go through a whole script, each of them one step of undo, and what has to be known before them.
class ScriptEdits
{
    Q_DECLARE_TR_FUNCTIONS(Workbench::ScriptEdits)

public:
    /// Asks the user what becomes of the variables \a names, of which the script has others; nothing gives the edit up.
    using ClashQuestion = std::function<std::optional<StepHost::Clash>(const QStringList &names)>;

    /// Where the steps of \a document use the variable \a name.
    static QVector<StepHost::VariableUse> usesOf(const ScriptDocument &document, const QString &name);

    /// Gives the variable \a from the name \a to, in the settings that use it, too.
    /// \return in how many, or why it is not done
    static StepHost::Result<int> renameVariable(ScriptDocument &document, const QString &from,
                                                const QString &to);

    /// The steps of \a rows with the variables that they use, as a script in the form \a form; empty when that form would
    /// lose something of them.
    static QByteArray copyOf(const ScriptDocument &document, StepHost::ScriptForm form,
                             const QList<int> &rows);

    /// Places the steps of \a script, in either form, in front of \a row, and brings the variables along that are missing;
    /// without \a question the steps use those that are there. Refused is what is no script.
    static StepHost::Result<void> paste(ScriptDocument &document, const QByteArray &script, int row,
                                        const ClashQuestion &question);

    /// Where \a pattern is in \a document.
    static QVector<StepHost::SearchHit> find(const ScriptDocument &document,
                                             const StepHost::SearchPattern &pattern);

    /// Puts \a replacement wherever \a pattern is in settings and values of \a document.
    /// \return how many texts have changed
    static int replace(ScriptDocument &document, const StepHost::SearchPattern &pattern,
                       const QString &replacement);
};
} // namespace Workbench
