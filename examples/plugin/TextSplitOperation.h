#pragma once

#include <hostapi/Operation.h>

/// Splits a text, at a separator or into parts of one length, and writes the parts into a list variable.
class TextSplitOperation : public Operation
{
    Q_OBJECT
    Q_PROPERTY(QString value READ value WRITE setValue)
    Q_PROPERTY(int mode READ mode WRITE setMode)
    Q_PROPERTY(QString separator READ separator WRITE setSeparator)
    Q_PROPERTY(QString length READ length WRITE setLength)
    Q_PROPERTY(QString targetVar READ targetVar WRITE setTargetVar)
    Q_CLASSINFO("prop_value", "文本")
    Q_CLASSINFO("editor_value", "VARREF")
    Q_CLASSINFO("varref_kind_value", "string")
    Q_CLASSINFO("prop_mode", "拆分依据")
    Q_CLASSINFO("editor_mode", "COMBO")
    Q_CLASSINFO("choices_mode", "按分隔符|按固定长度")
    Q_CLASSINFO("prop_separator", "分隔符")
    Q_CLASSINFO("show_when_separator", "mode=0")
    Q_CLASSINFO("prop_length", "每段长度")
    Q_CLASSINFO("editor_length", "NUMVAR:INT")
    Q_CLASSINFO("show_when_length", "mode=1")
    Q_CLASSINFO("prop_targetVar", "目标列表")
    Q_CLASSINFO("editor_targetVar", "VARNAME")
    Q_CLASSINFO("varname_type_targetVar", "list")

public:
    explicit TextSplitOperation(QObject *parent = nullptr);

    QString value() const;
    void setValue(const QString &value);
    /// 0: split at the separator; any other value: into parts of one length.
    int mode() const;
    void setMode(int mode);
    QString separator() const;
    void setSeparator(const QString &separator);
    /// In UTF-16 code units, as a number or as a reference to a variable.
    QString length() const;
    void setLength(const QString &length);
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
    bool split(const QString &text, QStringList &parts) const;

    QString m_value;
    int m_mode = 0;
    QString m_separator;
    QString m_length;
    QString m_targetVar;
};
