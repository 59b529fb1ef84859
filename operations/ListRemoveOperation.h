#pragma once

#include "ListOperationsExport.h"
#include "hostapi/Operation.h"

/// Removes one element from a list variable: the one at a position (mode 0), or the first that equals a
/// value (any other mode). A position out of range, or a value that is not found, skips the step.
class LISTOPERATIONS_EXPORT ListRemoveOperation : public Operation
{
    Q_OBJECT
    Q_PROPERTY(QString targetVar READ targetVar WRITE setTargetVar)
    Q_PROPERTY(int mode READ mode WRITE setMode)
    Q_PROPERTY(QString index READ index WRITE setIndex)
    Q_PROPERTY(QString value READ value WRITE setValue)
    Q_CLASSINFO("prop_targetVar", "目标列表")
    Q_CLASSINFO("editor_targetVar", "VARNAME")
    Q_CLASSINFO("varname_type_targetVar", "list")
    Q_CLASSINFO("prop_mode", "移除依据")
    Q_CLASSINFO("editor_mode", "COMBO")
    Q_CLASSINFO("choices_mode", "按索引值|按元素值")
    Q_CLASSINFO("prop_index", "索引值(从0开始)")
    Q_CLASSINFO("editor_index", "NUMVAR:INT")
    Q_CLASSINFO("show_when_index", "mode=0")
    Q_CLASSINFO("prop_value", "元素值")
    Q_CLASSINFO("editor_value", "VARREF")
    Q_CLASSINFO("varref_type_value", "int,double,string,bool")
    Q_CLASSINFO("show_when_value", "mode=1")

public:
    explicit ListRemoveOperation(QObject *parent = nullptr);
    ListRemoveOperation(ListRemoveOperation *other, QObject *parent);
    ~ListRemoveOperation() override;

    QString targetVar() const;
    void setTargetVar(const QString &targetVar);
    int mode() const;
    void setMode(int mode);
    QString index() const;
    void setIndex(const QString &index);
    QString value() const;
    void setValue(const QString &value);

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
    int m_mode = 0;
    QString m_index;
    QString m_value;
};
