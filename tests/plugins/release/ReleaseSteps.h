#pragma once

#include "tests/support/FixtureStep.h"

#include <QStringList>

/// Whether the plug-in is the release \a name.
bool isRelease(const char *name);

/// Puts the items of a list, or some of them, into a text variable. Each release has its own class of it.
class TakeBase : public FixtureStep
{
    Q_OBJECT
    Q_PROPERTY(QString listVar MEMBER listVar)
    Q_PROPERTY(QString targetVar MEMBER targetVar)
    Q_CLASSINFO("prop_listVar", "List")
    Q_CLASSINFO("editor_listVar", "VARNAME")
    Q_CLASSINFO("varname_type_listVar", "list")
    Q_CLASSINFO("prop_targetVar", "Text")
    Q_CLASSINFO("editor_targetVar", "VARNAME")
    Q_CLASSINFO("varname_type_targetVar", "scalar")

public:
    TakeBase();

    void doOperation() const override;
    void saveOperation(QDataStream &stream) const override;
    void loadOperation(QDataStream &stream) override;

    QString listVar;
    QString targetVar;
    QString separator;
    QStringList separators;
    int part = 0;
    bool isQuoted = false;

protected:
    Operation *made(TakeBase *copy, QObject *parent) const;
};

/// Of the older release, and of those that change something else.
class TakeStep : public TakeBase
{
    Q_OBJECT
    Q_PROPERTY(QString separator MEMBER separator)
    Q_PROPERTY(int part MEMBER part)
    Q_CLASSINFO("prop_separator", "Separator")
    Q_CLASSINFO("prop_part", "Part")
    Q_CLASSINFO("editor_part", "COMBO")
    Q_CLASSINFO("choices_part", "all|first %2|last")

public:
    Operation *clone(QObject *parent) const override
    {
        return made(new TakeStep, parent);
    }
};

class NoSeparatorStep : public TakeBase
{
    Q_OBJECT
    Q_PROPERTY(int part MEMBER part)
    Q_CLASSINFO("prop_part", "Part")
    Q_CLASSINFO("editor_part", "COMBO")
    Q_CLASSINFO("choices_part", "all|first %2|last")

public:
    Operation *clone(QObject *parent) const override
    {
        return made(new NoSeparatorStep, parent);
    }
};

class SeparatorsStep : public TakeBase
{
    Q_OBJECT
    Q_PROPERTY(QStringList separator MEMBER separators)
    Q_PROPERTY(int part MEMBER part)

public:
    Operation *clone(QObject *parent) const override
    {
        return made(new SeparatorsStep, parent);
    }
};

class FewerPartsStep : public TakeStep
{
    Q_OBJECT
    Q_CLASSINFO("choices_part", "all|first %2")

public:
    Operation *clone(QObject *parent) const override
    {
        return made(new FewerPartsStep, parent);
    }
};

class MovedPartsStep : public TakeStep
{
    Q_OBJECT
    Q_CLASSINFO("choices_part", "all|last|first %2")

public:
    Operation *clone(QObject *parent) const override
    {
        return made(new MovedPartsStep, parent);
    }
};

class RenamedPartStep : public TakeStep
{
    Q_OBJECT
    Q_CLASSINFO("choices_part", "all|first %2|final")

public:
    Operation *clone(QObject *parent) const override
    {
        return made(new RenamedPartStep, parent);
    }
};

/// A setting and a choice more.
class NewerStep : public TakeStep
{
    Q_OBJECT
    Q_PROPERTY(bool isQuoted MEMBER isQuoted)
    Q_CLASSINFO("prop_isQuoted", "In quotes")
    Q_CLASSINFO("choices_part", "all|first %2|last|none")

public:
    Operation *clone(QObject *parent) const override
    {
        return made(new NewerStep, parent);
    }
};
