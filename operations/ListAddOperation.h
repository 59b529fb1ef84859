#pragma once

#include "ListOperationsExport.h"
#include "hostapi/Operation.h"

/// Inserts one item into a list variable, at a position or at the end.
///
/// The value text may be a literal or a reference to a variable; one that cannot be found inserts an
/// invalid element. A position out of range is clamped; one that is not an integer skips the step.
class LISTOPERATIONS_EXPORT ListAddOperation : public Operation
{
    Q_OBJECT
    Q_PROPERTY(QString targetVar READ targetVar WRITE setTargetVar)
    Q_PROPERTY(QString value READ value WRITE setValue)
    Q_PROPERTY(QString index READ index WRITE setIndex)
    Q_CLASSINFO("prop_targetVar", "目标列表")
    Q_CLASSINFO("editor_targetVar", "VARNAME")
    Q_CLASSINFO("varname_type_targetVar", "list")
    Q_CLASSINFO("prop_value", "项值")
    Q_CLASSINFO("editor_value", "VARREF")
    Q_CLASSINFO("varref_kind_value", "string")
    Q_CLASSINFO("prop_index", "插入位置(空=末尾)")

public:
    explicit ListAddOperation(QObject *parent = nullptr);
    ListAddOperation(ListAddOperation *other, QObject *parent);
    ~ListAddOperation() override;

    QString targetVar() const;
    void setTargetVar(const QString &targetVar);
    QString value() const;
    void setValue(const QString &value);
    QString index() const;
    void setIndex(const QString &index);

    QString root() const override;
    QString typeId() const override;
    QString typeName() const override;
    QString icon() const override;
    void doOperation() const override;
    void saveOperation(QDataStream &stream) const override;
    void loadOperation(QDataStream &stream) override;
    QString toString() const override;
    QString description() const override;
    Operation *clone(QObject *parent) const override;

private:
    QString m_targetVar;
    QString m_value;
    QString m_index;
};
