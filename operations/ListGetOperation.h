#pragma once

#include "ListOperationsExport.h"
#include "hostapi/Operation.h"

/// Copies the element at a position of a list variable into a declared variable, converted to that
/// variable's type. A position out of range, an undeclared destination, or an element that the
/// destination's type does not accept skips the step.
class LISTOPERATIONS_EXPORT ListGetOperation : public Operation
{
    Q_OBJECT
    Q_PROPERTY(QString sourceVar READ sourceVar WRITE setSourceVar)
    Q_PROPERTY(QString index READ index WRITE setIndex)
    Q_PROPERTY(QString targetVar READ targetVar WRITE setTargetVar)
    Q_CLASSINFO("prop_sourceVar", "源列表")
    Q_CLASSINFO("editor_sourceVar", "VARNAME")
    Q_CLASSINFO("varname_type_sourceVar", "list")
    Q_CLASSINFO("prop_index", "索引(从0开始的第几项)")
    Q_CLASSINFO("editor_index", "NUMVAR:INT")
    Q_CLASSINFO("prop_targetVar", "目标变量(存元素)")
    Q_CLASSINFO("editor_targetVar", "VARNAME")
    Q_CLASSINFO("varname_type_targetVar", "scalar")

public:
    explicit ListGetOperation(QObject *parent = nullptr);
    ListGetOperation(ListGetOperation *other, QObject *parent);
    ~ListGetOperation() override;

    QString sourceVar() const;
    void setSourceVar(const QString &sourceVar);
    QString index() const;
    void setIndex(const QString &index);
    QString targetVar() const;
    void setTargetVar(const QString &targetVar);

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
    QString m_sourceVar;
    QString m_index;
    QString m_targetVar;
};
