#pragma once

/// \file
/// The variables of a script and their types.

#include "OperationCoreExport.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

/// The declared type of a script variable, and the shape that its value has.
enum class VarType : qint32 {
    Undeclared = 0, ///< No variable of that name has a declared type.
    Int = 1, ///< `QVariant(int)`
    Double = 2, ///< `QVariant(double)`
    String = 3, ///< `QVariant(QString)`
    Bool = 4, ///< `QVariant(bool)`
    List = 5, ///< `QVariant` holding a `QVariantList`
    Table = 6, ///< `QVariant` holding a `QVariantList` of row `QVariantList`s
};

/// A script's store of named, typed variables.
///
/// **Names.** One leading "$" is the mark of a reference and not a part of the name: `$names` and
/// `names` address the same variable. The mark is taken off once, so `$$a` addresses the variable
/// named `$a`. The value text of a step has a mark of its own, which the step takes off before it hands
/// on the rest: there `$a` and `$$a` both refer to the variable `a`, and only `$$$a` to one named `$a`.
/// A host had better let no variable be made whose own name begins with the mark. An empty name, and
/// the mark alone, address no variable: reading gives what an unknown name gives, writing changes
/// nothing. Names are compared exactly, case included.
///
/// **Values.** A value is kept as it was given; the scope converts nothing. Values are implicitly
/// shared, so handing a list in or out copies a pointer, and no later change of the scope shows in a
/// value that was read before.
///
/// **Threads.** A scope takes no locks: use it, and the steps that it is attached to, from one thread
/// at a time.
class OPERATIONCORE_EXPORT VariableScope
{
public:
    /// A scope without variables.
    VariableScope();
    /// A scope with the variables of \a other, sharing their values. Later changes of one do not show in the other.
    VariableScope(const VariableScope &other);
    /// Takes the variables of \a other, which may only be assigned to or destroyed afterwards.
    VariableScope(VariableScope &&other) noexcept;
    /// The same as a copy.
    VariableScope &operator=(const VariableScope &other);
    /// The same as a move.
    VariableScope &operator=(VariableScope &&other) noexcept;
    ~VariableScope();

    /// Creates or overwrites the variable \a name with \a value.
    ///
    /// A declared variable keeps its declared type, whatever \a value is. A new variable gets the type
    /// that \a value has: any integer kind gives VarType::Int, `double` and `float` VarType::Double,
    /// `QString` VarType::String, `bool` VarType::Bool, `QVariantList` and `QStringList`
    /// VarType::List. A value of any other kind (an invalid one, a map, an object) is kept too, under
    /// VarType::Undeclared, until declare() gives the name a type. A table has to be declared.
    void set(const QString &name, const QVariant &value);

    /// The current value of the variable \a name; an invalid `QVariant` for an unknown name.
    QVariant get(const QString &name) const;

    /// The declared type of the variable \a name; VarType::Undeclared for an unknown name.
    VarType typeOf(const QString &name) const;

    /// Declares the variable \a name with \a type and the type's empty value (0, 0.0, "", false, an
    /// empty list, an empty table). A variable of that name is replaced and keeps its place in names().
    ///
    /// Returns false, and changes nothing, when \a name addresses no variable or \a type is not one of
    /// the six declarable types.
    bool declare(const QString &name, VarType type);

    /// The names of all variables, without the reference mark, in the order in which they were first
    /// declared or set.
    QStringList names() const;

    /// Whether there is a variable \a name, declared or just set.
    bool contains(const QString &name) const;

    /// Removes the variable \a name. Returns whether there was one.
    bool remove(const QString &name);

    /// How many times set() has stored a value so far. A host that compares the numbers before and after
    /// a step knows whether the step wrote, even if it wrote the value that was there. A copy of the scope
    /// goes on from the same number.
    quint64 writeCount() const;

private:
    struct Variable
    {
        VarType type = VarType::Undeclared;
        QVariant value;
        quint64 place = 0; // In m_order.
    };

    void store(const QString &key, VarType type, const QVariant &value);

    QMap<QString, Variable>
        m_variables; // By order: names from a script can be chosen to have one hash value.
    QMap<quint64, QString> m_order; // The names by their places, which are never moved.
    quint64 m_writeCount = 0;
};
