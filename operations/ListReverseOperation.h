#pragma once

#include "ListOperationsExport.h"
#include "hostapi/Operation.h"

/// Reverses the order of the elements of a list variable.
class LISTOPERATIONS_EXPORT ListReverseOperation : public Operation
{
    Q_OBJECT
    Q_PROPERTY(QString targetVar READ targetVar WRITE setTargetVar)
    Q_CLASSINFO("prop_targetVar", "目标列表")
    Q_CLASSINFO("editor_targetVar", "VARNAME")
    Q_CLASSINFO("varname_type_targetVar", "list")

public:
    explicit ListReverseOperation(QObject *parent = nullptr);
    ListReverseOperation(ListReverseOperation *other, QObject *parent);
    ~ListReverseOperation() override;

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
    QString m_targetVar;
};
