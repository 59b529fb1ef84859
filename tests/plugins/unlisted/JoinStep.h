#pragma once

#include "hostapi/Operation.h"

#include <QStringList>
#include <QVariant>

/// Joins the items of two lists, and what else is asked for, into a text variable.
///
/// Sound, except where the plug-in has a fault.
class JoinStep : public Operation
{
    Q_OBJECT
    Q_PROPERTY(QString listA READ listA WRITE setListA)
    Q_PROPERTY(QString listB READ listB WRITE setListB)
    Q_PROPERTY(int mode READ mode WRITE setMode)
    Q_PROPERTY(QString separator READ separator WRITE setSeparator)
    Q_PROPERTY(QString limit READ limit WRITE setLimit)
    Q_PROPERTY(bool reversed READ isReversed WRITE setReversed)
    Q_PROPERTY(QString targetVar READ targetVar WRITE setTargetVar)
    Q_CLASSINFO("prop_listA", "First list")
    Q_CLASSINFO("editor_listA", "VARNAME")
    Q_CLASSINFO("varname_type_listA", "list")
    Q_CLASSINFO("prop_listB", "Second list")
    Q_CLASSINFO("editor_listB", "VARNAME")
    Q_CLASSINFO("varname_type_listB", "list")
    Q_CLASSINFO("prop_mode", "Join by")
    Q_CLASSINFO("editor_mode", "COMBO")
    Q_CLASSINFO("choices_mode", "separator|line|nothing")
    Q_CLASSINFO("prop_separator", "Separator")
    Q_CLASSINFO("editor_separator", "VARREF")
    Q_CLASSINFO("varref_type_separator", "string")
    Q_CLASSINFO("show_when_separator", "mode=0")
    Q_CLASSINFO("prop_limit", "At most")
    Q_CLASSINFO("editor_limit", "NUMVAR:INT")
    Q_CLASSINFO("prop_reversed", "From the end")
    Q_CLASSINFO("prop_targetVar", "Result")
    Q_CLASSINFO("editor_targetVar", "VARNAME")
    Q_CLASSINFO("varname_type_targetVar", "scalar")

public:
    explicit JoinStep(QObject *parent = nullptr);
    ~JoinStep() override;

    QString listA() const;
    void setListA(const QString &name);
    QString listB() const;
    void setListB(const QString &name);
    int mode() const;
    void setMode(int mode);
    QString separator() const;
    void setSeparator(const QString &separator);
    QString limit() const;
    void setLimit(const QString &limit);
    bool isReversed() const;
    void setReversed(bool isReversed);
    QString targetVar() const;
    void setTargetVar(const QString &name);

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
    void setVariableScope(VariableScope *scope) override;

protected:
    struct Settings
    {
        QString listA;
        QString listB;
        int mode = 0;
        QString separator;
        QString limit;
        bool isReversed = false;
        QString targetVar;
        int version = 3; ///< Saved, and no property.
    };

    void copyTo(JoinStep &copy) const;

private:
    bool isSkipped(VariableScope &scope) const;
    QStringList items(const VariableScope &scope) const;
    void write(VariableScope &scope, const QString &text) const;

    Settings m_settings;
    bool m_isClone = false;
    bool m_isDamaged = false;
    const JoinStep *m_source = nullptr; ///< Of a clone that is linked with it.
    mutable QStringList m_kept;
    mutable bool m_hasRun = false;
};

/// The same under another id.
class GlueStep : public JoinStep
{
    Q_OBJECT

public:
    using JoinStep::JoinStep;

    QString typeId() const override;
    QString typeName() const override;
    Operation *clone(QObject *parent) const override;
};
