#pragma once

#include "ListOperationsExport.h"
#include "hostapi/Operation.h"

/// Writes the values of list A that also occur in list B, each once and in A's order, into a variable that
/// is declared as a list.
class LISTOPERATIONS_EXPORT ListIntersectOperation : public Operation
{
    Q_OBJECT
    Q_PROPERTY(QString listA READ listA WRITE setListA)
    Q_PROPERTY(QString listB READ listB WRITE setListB)
    Q_PROPERTY(QString targetVar READ targetVar WRITE setTargetVar)
    Q_CLASSINFO("prop_listA", "列表A")
    Q_CLASSINFO("editor_listA", "VARNAME")
    Q_CLASSINFO("varname_type_listA", "list")
    Q_CLASSINFO("prop_listB", "列表B")
    Q_CLASSINFO("editor_listB", "VARNAME")
    Q_CLASSINFO("varname_type_listB", "list")
    Q_CLASSINFO("prop_targetVar", "目标列表")
    Q_CLASSINFO("editor_targetVar", "VARNAME")
    Q_CLASSINFO("varname_type_targetVar", "list")

public:
    explicit ListIntersectOperation(QObject *parent = nullptr);
    ListIntersectOperation(ListIntersectOperation *other, QObject *parent);
    ~ListIntersectOperation() override;

    QString listA() const;
    void setListA(const QString &listA);
    QString listB() const;
    void setListB(const QString &listB);
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
    QString m_listA;
    QString m_listB;
    QString m_targetVar;
};
