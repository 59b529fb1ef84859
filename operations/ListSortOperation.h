#pragma once

#include "ListOperationsExport.h"
#include "hostapi/Operation.h"

/// Sorts a list variable: numbers by value, everything else as text. Descending order is the mirror of
/// the ascending result.
class LISTOPERATIONS_EXPORT ListSortOperation : public Operation
{
    Q_OBJECT
    Q_PROPERTY(QString targetVar READ targetVar WRITE setTargetVar)
    Q_PROPERTY(bool ascending READ ascending WRITE setAscending)
    Q_CLASSINFO("prop_targetVar", "目标列表")
    Q_CLASSINFO("editor_targetVar", "VARNAME")
    Q_CLASSINFO("varname_type_targetVar", "list")
    Q_CLASSINFO("prop_ascending", "升序")

public:
    explicit ListSortOperation(QObject *parent = nullptr);
    ListSortOperation(ListSortOperation *other, QObject *parent);
    ~ListSortOperation() override;

    QString targetVar() const;
    void setTargetVar(const QString &targetVar);
    bool ascending() const;
    void setAscending(bool ascending);

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
    bool m_ascending = true;
};
