#pragma once

#include "hostapi/VariableScope.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

class QObject;
struct QMetaObject;

namespace StepHost
{
/// With what a host lets the user edit a setting.
enum class EditorKind {
    Default, ///< The host's editor for the property's type.
    VariableName, ///< `VARNAME`: the name of a variable, chosen or typed.
    VariableReference, ///< `VARREF`: a value, written literally or as a reference to a variable.
    IntegerOrVariable, ///< `NUMVAR:INT`: an integer, given as a number or as a variable.
    Choice, ///< `COMBO`: one of the choices; the property holds its index.
};

/// The word that class info uses for \a kind, such as `VARNAME`; empty for EditorKind::Default.
QString editorWord(EditorKind kind);

/// Which variables a `VARNAME` editor offers.
enum class VariableKind {
    Any, ///< The class info does not say.
    List,
    Scalar,
};

/// The word that class info uses for \a kind; empty for VariableKind::Any.
QString variableKindWord(VariableKind kind);

/// Whether a variable of type \a type is of the kind \a kind. A table is neither a list nor a scalar.
bool isOfKind(VarType type, VariableKind kind);

/// The condition under which a setting is shown: the property \a property has the value \a value.
struct VisibilityRule
{
    QString property;
    int value = 0;
};

/// How one setting of a step is edited.
struct SettingSchema
{
    QString property; ///< The property's name.
    int type = 0; ///< Its `QMetaType` id.
    QString label; ///< For the user to read; empty when the class info has none.
    EditorKind editor = EditorKind::Default;
    VariableKind variableKind = VariableKind::Any;
    VarType literalType = VarType::Undeclared; ///< Of a `VARREF` editor; undeclared when not stated.
    QVector<VarType> valueTypes; ///< That a `VARREF` editor accepts; empty when not stated.
    QStringList choices; ///< Of a `COMBO` editor, in the order of their indexes.
    std::optional<VisibilityRule> showWhen; ///< Without a rule the setting is always shown.
};

/// What can be wrong with a class-info entry.
enum class SchemaFault {
    UnknownPrefix, ///< The key begins with none of the known prefixes.
    UnknownProperty, ///< The key is about a property that the class does not have.
    DuplicateKey, ///< The key was declared before.
    MissingLabel, ///< A setting has no label, or an empty one.
    UnknownEditor, ///< The editor word is none of the known ones.
    UnknownKind, ///< A variable kind or value type is none of the known ones.
    UnusedKey, ///< The entry is for another editor than the setting has.
    MissingChoices, ///< A choice editor has no choices, or an empty one.
    ChoiceNotInteger, ///< A choice editor stands on a property that is not an `int`.
    UnreadableRule, ///< A visibility rule is not a property name, "=" and an integer.
    RuleUnknownProperty, ///< A visibility rule names a property that the class does not have.
    RuleImpossibleValue, ///< A visibility rule waits for a value that its property cannot have.
    RuleCycle, ///< Visibility rules depend on each other in a circle.
};

/// One thing that is wrong, and where.
struct SchemaProblem
{
    SchemaFault fault;
    QString text; ///< One line that names the key or the property and says what would be right.
};

/// The editors of a step's settings, and what is wrong with their declaration.
struct EditorSchema
{
    QVector<SettingSchema> settings; ///< One for each property, in the order of declaration.
    QVector<SchemaProblem> problems;

    /// The setting of the property \a property; null when there is none.
    const SettingSchema *find(const QString &property) const;
};

/// A property as readEditorSchema() needs it.
struct PropertyDeclaration
{
    QString name;
    int type = 0; ///< `QMetaType` id.
};

/// A class-info entry as readEditorSchema() needs it.
struct ClassInfoDeclaration
{
    QString key;
    QString value;
};

/// Reads the editor schema out of the class info of a step class, from the first class below Operation
/// on. A class that does not derive from Operation is read whole.
///
/// Nothing in the class info is trusted. An entry that cannot be used is reported in
/// EditorSchema::problems and left out: the setting then has the default editor, or is always shown. Of
/// entries with the same key the last one counts, as in `QMetaObject::indexOfClassInfo()`.
EditorSchema readEditorSchema(const QMetaObject &metaObject);

/// The same for \a properties and \a entries that need not belong to a class.
EditorSchema readEditorSchema(const QVector<PropertyDeclaration> &properties,
                              const QVector<ClassInfoDeclaration> &entries);

/// Whether \a setting is to be shown for the present settings of \a step.
bool isVisible(const SettingSchema &setting, const QObject &step);
} // namespace StepHost
