#pragma once

#include <hostapi/Operation.h>

/// Joins the items of a list variable into one text and writes it into a text variable. An item that has no
/// text form, such as a list, skips the step.
class TextJoinOperation : public Operation
{
    Q_OBJECT
    Q_PROPERTY(QString sourceVar READ sourceVar WRITE setSourceVar)
    Q_PROPERTY(QString separator READ separator WRITE setSeparator)
    Q_PROPERTY(bool skipEmpty READ skipEmpty WRITE setSkipEmpty)
    Q_PROPERTY(QString targetVar READ targetVar WRITE setTargetVar)
    Q_CLASSINFO("prop_sourceVar", "源列表")
    Q_CLASSINFO("editor_sourceVar", "VARNAME")
    Q_CLASSINFO("varname_type_sourceVar", "list")
    Q_CLASSINFO("prop_separator", "分隔符")
    Q_CLASSINFO("prop_skipEmpty", "忽略空项")
    Q_CLASSINFO("prop_targetVar", "目标变量(存文本)")
    Q_CLASSINFO("editor_targetVar", "VARNAME")
    Q_CLASSINFO("varname_type_targetVar", "scalar")

public:
    explicit TextJoinOperation(QObject *parent = nullptr);

    QString sourceVar() const;
    void setSourceVar(const QString &sourceVar);
    QString separator() const;
    void setSeparator(const QString &separator);
    bool skipEmpty() const;
    void setSkipEmpty(bool skipEmpty);
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
    QString m_separator;
    bool m_skipEmpty = false;
    QString m_targetVar;
};
