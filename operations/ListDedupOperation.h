#pragma once

#include "ListOperationsExport.h"
#include "hostapi/Operation.h"

/// Keeps the first occurrence of each value of a list variable and drops the later ones.
class LISTOPERATIONS_EXPORT ListDedupOperation : public Operation
{
    Q_OBJECT
    Q_PROPERTY(QString targetVar READ targetVar WRITE setTargetVar)
    Q_CLASSINFO("prop_targetVar", "目标列表")
    Q_CLASSINFO("editor_targetVar", "VARNAME")
    Q_CLASSINFO("varname_type_targetVar", "list")

public:
    explicit ListDedupOperation(QObject *parent = nullptr);
    ListDedupOperation(ListDedupOperation *other, QObject *parent);
    ~ListDedupOperation() override;

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
