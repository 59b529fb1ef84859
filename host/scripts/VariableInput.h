#pragma once

#include "Script.h"
#include "host/values/Result.h"

#include <QString>
#include <QVariant>

/// Values that are given to a script's variables from outside: on a command line, in an input field.
namespace StepHost
{
/// Sets the variable \a name of \a script to what \a text says.
///
/// A declared string variable takes the text as it is. A declared variable of another type takes JSON of
/// its type. A variable that the script does not have is added with the type of its value: \a text as
/// JSON, or the text itself when it is no JSON. JSON that cborFromJson() does not take is refused.
///
/// When something is wrong, the script is unchanged.
Result<void> assignText(Script &script, const QString &name, const QString &text);

/// Sets the list variable \a name of \a script to \a list, and adds it when the script does not have it.
///
/// When something is wrong, the script is unchanged.
Result<void> assignList(Script &script, const QString &name, const QVariantList &list);

/// Sets the variable \a name of \a script to what the file \a fileName, or standard input for "-", holds.
///
/// A variable that the script declares as a table takes the rows of a CSV file. Any other variable takes a list, as
/// assignList() does: the cells of a CSV file with one column, or the lines of another file. \a options, those of
/// chosenForm(), say what else it takes.
///
/// When something is wrong, the script is unchanged.
Result<void> assignFile(Script &script, const QString &name, const QString &fileName,
                        const QString &options = QString());
} // namespace StepHost
