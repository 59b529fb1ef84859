#pragma once

#include "tests/support/FixtureStep.h"

// Steps that keep the contract, each in a way of its own.

/// Has nothing to set and nothing to do.
class NoteStep : public FixtureStep
{
    Q_OBJECT

public:
    explicit NoteStep(QObject *parent = nullptr) : FixtureStep("join.store", parent) { }

    QString root() const override
    {
        return QString("Storing");
    }
    QString icon() const override
    {
        return QString(":/unlisted/other.svg");
    }
    Operation *clone(QObject *parent) const override;
};

/// Looks at a variable and writes none.
class WatchStep : public NoteStep
{
    Q_OBJECT
    Q_PROPERTY(QString watched MEMBER watched)
    Q_CLASSINFO("prop_watched", "Watched")
    Q_CLASSINFO("editor_watched", "VARNAME")

public:
    void doOperation() const override;
    void saveOperation(QDataStream &stream) const override;
    void loadOperation(QDataStream &stream) override;
    Operation *clone(QObject *parent) const override;

    QString watched;
};

/// Writes to each of several variables that one setting names.
class FillStep : public NoteStep
{
    Q_OBJECT
    Q_PROPERTY(QString names MEMBER names)
    Q_PROPERTY(bool deep MEMBER deep)
    Q_PROPERTY(int depth MEMBER depth)
    Q_PROPERTY(int breadth MEMBER breadth)
    Q_CLASSINFO("prop_names", "Variables, parted by commas")
    Q_CLASSINFO("prop_deep", "Deep")
    Q_CLASSINFO("prop_depth", "Extent")
    Q_CLASSINFO("show_when_depth", "deep=1")
    Q_CLASSINFO("prop_breadth", "Extent")
    Q_CLASSINFO("show_when_breadth", "deep=0")

public:
    void doOperation() const override;
    void saveOperation(QDataStream &stream) const override;
    void loadOperation(QDataStream &stream) override;
    Operation *clone(QObject *parent) const override;
    bool isContainer() const override
    {
        return true;
    }

    QString names = QString("first,second");
    bool deep = false;
    int depth = 1;
    int breadth = 1;
};

/// A value that only this plug-in knows.
struct Range
{
    int from = 0;
    int to = 0;
};

Q_DECLARE_METATYPE(Range)

/// Has a setting of a type of its own.
class RangeStep : public NoteStep
{
    Q_OBJECT
    Q_PROPERTY(Range range MEMBER range)
    Q_CLASSINFO("prop_range", "Range")

public:
    void saveOperation(QDataStream &stream) const override;
    void loadOperation(QDataStream &stream) override;
    Operation *clone(QObject *parent) const override;

    Range range;
};

inline bool operator!=(const Range &a, const Range &b)
{
    return a.from != b.from || a.to != b.to;
}
