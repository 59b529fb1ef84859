#pragma once

#include "tests/plugins/FixturePlugin.h"

#include <QSharedPointer>

/// Whether the plug-in that is loaded has the fault \a id. A fault is named after the check that finds it.
bool has(const char *id);

/// A step that keeps the contract, except where the plug-in has a fault: it appends its amount to a list.
class SampleStep : public FixtureStep
{
    Q_OBJECT
    Q_PROPERTY(QString target READ target WRITE setTarget)
    Q_PROPERTY(QString value READ value WRITE setValue)
    Q_PROPERTY(int mode READ mode WRITE setMode)
    Q_PROPERTY(bool deep READ deep WRITE setDeep)
    Q_PROPERTY(double amount READ amount WRITE setAmount)
    Q_CLASSINFO("prop_target", "Target")
    Q_CLASSINFO("editor_target", "VARNAME")
    Q_CLASSINFO("varname_type_target", "list")
    Q_CLASSINFO("prop_value", "Value")
    Q_CLASSINFO("editor_value", "VARREF")
    Q_CLASSINFO("varref_type_value", "int,double,string,bool")
    Q_CLASSINFO("show_when_value", "mode=1")
    Q_CLASSINFO("prop_mode", "Mode")
    Q_CLASSINFO("editor_mode", "COMBO")
    Q_CLASSINFO("choices_mode", "number|value")
    Q_CLASSINFO("prop_deep", "Deep")
    Q_CLASSINFO("prop_amount", "Amount")

public:
    explicit SampleStep(QObject *parent = nullptr);

    QString target() const;
    void setTarget(const QString &target);
    QString value() const;
    void setValue(const QString &value);
    int mode() const;
    void setMode(int mode);
    bool deep() const;
    void setDeep(bool deep);
    double amount() const;
    void setAmount(double amount);

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

signals:
    void edited();

protected:
    /// Makes \a copy, a new step, what a clone of this one has to be. Returns it.
    Operation *madeClone(SampleStep *copy, QObject *parent) const;

private:
    struct Settings
    {
        QString target;
        QString value;
        int mode = 0;
        bool deep = false;
        double amount = 0.5;
    };

    // Behind a pointer for the one fault of sharing it with a clone; const members may write to it.
    QSharedPointer<Settings> m_settings{new Settings};
    VariableScope *m_remembered = nullptr;
    mutable int m_calls = 0;
};

/// Another kind of step, so that there are two.
class OtherStep : public SampleStep
{
    Q_OBJECT

public:
    using SampleStep::SampleStep;

    QString typeId() const override;
    QString typeName() const override;
    Operation *clone(QObject *parent) const override;
};

/// Has the class of SampleStep as its own.
class NamelessStep : public SampleStep
{
public:
    QString typeId() const override;
    QString typeName() const override;
};

class OddCastStep : public SampleStep
{
public:
    void *qt_metacast(const char *className) override;
};

class ReadOnlyStep : public SampleStep
{
    Q_OBJECT
    Q_PROPERTY(int fixed READ fixed)
    Q_CLASSINFO("prop_fixed", "Fixed")

public:
    int fixed() const
    {
        return 1;
    }
};

// One class for each fault that class info can have.

class UnknownPrefixStep : public SampleStep
{
    Q_OBJECT
    Q_CLASSINFO("hint_target", "The list")
};

class UnknownPropertyStep : public SampleStep
{
    Q_OBJECT
    Q_CLASSINFO("prop_goal", "Goal")
};

class DuplicateKeyStep : public SampleStep
{
    Q_OBJECT
    Q_CLASSINFO("prop_target", "Target")
};

class MissingLabelStep : public SampleStep
{
    Q_OBJECT
    Q_PROPERTY(int extra MEMBER m_extra)

public:
    int m_extra = 0;
};

class UnknownEditorStep : public SampleStep
{
    Q_OBJECT
    Q_CLASSINFO("editor_deep", "CHECKBOX")
};

class UnknownKindStep : public SampleStep
{
    Q_OBJECT
    Q_PROPERTY(QString extra MEMBER m_extra)
    Q_CLASSINFO("prop_extra", "Extra")
    Q_CLASSINFO("editor_extra", "VARNAME")
    Q_CLASSINFO("varname_type_extra", "matrix")

public:
    QString m_extra;
};

class UnusedKeyStep : public SampleStep
{
    Q_OBJECT
    Q_CLASSINFO("choices_deep", "no|yes")
};

class MissingChoicesStep : public SampleStep
{
    Q_OBJECT
    Q_PROPERTY(int extra MEMBER m_extra)
    Q_CLASSINFO("prop_extra", "Extra")
    Q_CLASSINFO("editor_extra", "COMBO")

public:
    int m_extra = 0;
};

class ChoiceOfTextsStep : public SampleStep
{
    Q_OBJECT
    Q_PROPERTY(QString extra MEMBER m_extra)
    Q_CLASSINFO("prop_extra", "Extra")
    Q_CLASSINFO("editor_extra", "COMBO")
    Q_CLASSINFO("choices_extra", "a|b")

public:
    QString m_extra;
};

class UnreadableRuleStep : public SampleStep
{
    Q_OBJECT
    Q_CLASSINFO("show_when_deep", "mode is 1")
};

class RuleOnNothingStep : public SampleStep
{
    Q_OBJECT
    Q_CLASSINFO("show_when_deep", "kind=1")
};

class ImpossibleRuleStep : public SampleStep
{
    Q_OBJECT
    Q_CLASSINFO("show_when_deep", "mode=2")
};

class RuleCycleStep : public SampleStep
{
    Q_OBJECT
    Q_CLASSINFO("show_when_deep", "mode=1")
    Q_CLASSINFO("show_when_mode", "deep=1")
};
