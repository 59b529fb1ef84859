#pragma once

#include "OperationCoreExport.h"

#include <QList>
#include <QObject>
#include <QString>

class QDataStream;
class VariableScope;

/// The base of every script step.
///
/// A plug-in derives one class from it for each kind of step that it offers. The host creates a step
/// from a prototype with clone(), edits its settings through its Qt properties, attaches a scope with
/// setVariableScope() and runs it with doOperation().
///
/// **Ownership.** A step is a `QObject`: it belongs to its `QObject` parent or, without one, to whoever
/// created it. It owns none of what it points to: not the scope, not its parent operation, not its
/// child operations.
///
/// **Errors.** No member throws or returns an error. A step that cannot do its work says so in one line
/// on Qt's warning log and leaves every variable as it was.
///
/// **Threads.** A step takes no locks. The host calls it, and the scope attached to it, from one thread
/// at a time.
///
/// The virtual members stand in the order of their slots. Plug-ins are compiled against that order:
/// nothing may be inserted, removed or moved.
class OPERATIONCORE_EXPORT Operation : public QObject
{
    Q_OBJECT

public:
    /// Creates a step that belongs to \a parent, or to the caller when \a parent is null. The base
    /// state is 0; there is no scope, no parent operation and no child.
    explicit Operation(QObject *parent);
    ~Operation() override;

    /// The category under which a host lists the step, for the user to read. A manifest's
    /// `categoryOrder` is keyed by this text.
    virtual QString root() const = 0;

    /// The persistent key of the step's class, such as `list.sort`. Never translated, never changed. Letters,
    /// digits, dots and dashes of ASCII, 1,000 characters at most; it begins with the plug-in's prefix.
    virtual QString typeId() const = 0;

    /// The step's display name.
    virtual QString typeName() const = 0;

    /// The Qt resource path of the step's icon, such as `:/images/list_sort.svg`: an SVG drawing, or an image of
    /// a format that Qt Gui reads. Resources of all plug-ins share one tree, so the path has to be the
    /// plug-in's own.
    virtual QString icon() const = 0;

    /// Runs the step on the attached scope. Does nothing without a scope. Running changes variables
    /// only, never the step's own settings.
    ///
    /// A host takes a run in which VariableScope::set() is not called for one that was skipped, whatever else
    /// the step did.
    virtual void doOperation() const = 0;

    /// Writes the step's record to \a stream. An override calls this first, then writes its own fields.
    ///
    /// The stream's version and byte order are the host's choice, and stay as they are: version
    /// `QDataStream::Qt_5_15` and big-endian in the files of stepctl and the workbench.
    ///
    /// The base's part is the base state as one `quint32`. A record holds no type id and no children: the
    /// host keeps those beside it. It holds a version only when the step writes one among its own fields.
    virtual void saveOperation(QDataStream &stream) const;

    /// Reads what saveOperation() wrote. An override calls this first, then reads its own fields.
    ///
    /// A record that ends early leaves `stream.status()` at `QDataStream::ReadPastEnd`; a field that
    /// could not be read has its type's empty value.
    virtual void loadOperation(QDataStream &stream);

    /// The step in one line, for a script listing.
    virtual QString toString() const = 0;

    /// A sentence that tells the user what the step does with its present settings.
    virtual QString description() const = 0;

    /// A new step of the same class with the same settings and base state. It belongs to \a parent, or
    /// to the caller when \a parent is null. Not copied: the scope, the parent operation, the children,
    /// the object name and dynamic properties.
    virtual Operation *clone(QObject *parent) const = 0;

    /// Whether the step can hold child steps. False here; a container step overrides it.
    ///
    /// Children are for hosts that nest steps. stepctl and the workbench do not: their scripts are rows of steps,
    /// and they neither run, show nor save children. A container that is to work there runs its children
    /// itself, and saves them in its own record.
    virtual bool isContainer() const;

    /// The number of child operations.
    virtual int childCount() const;

    /// The child operation at position \a index, counted from 0; null when there is none.
    virtual Operation *childAt(int index) const;

    /// The child operations in order, for the host to change. They are not owned: a child that is
    /// deleted has to be taken out first. This list is not `QObject::children()`, which counts objects
    /// by ownership.
    virtual QList<Operation *> &children();

    /// The container step that this step stands in, as last told; null at first.
    virtual Operation *parentOperation() const;

    /// Notes \a parent as the container step. Not owned; neither the `QObject` parent nor the children
    /// of \a parent change.
    virtual void setParentOperation(Operation *parent);

    /// Attaches \a scope, on which doOperation() will act. Not owned: it has to live until another scope
    /// or null is attached.
    virtual void setVariableScope(VariableScope *scope);

protected:
    /// The base's own 32 bits of state. A step never interprets them; its copy constructor copies them
    /// from the source as they are.
    quint32 m_baseState = 0;

private:
    QList<Operation *> m_children;
    Operation *m_parentOperation = nullptr;

protected:
    /// The scope to run on; null until the host attaches one. Not owned.
    VariableScope *m_variableScope = nullptr;
};
