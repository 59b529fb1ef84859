#pragma once

#include "UnusualSteps.h"

/// Reads its records from before it had a number and a mark.
class GrowingStep : public NoteStep
{
    Q_OBJECT
    Q_PROPERTY(QString note MEMBER note)
    Q_PROPERTY(int times MEMBER times)
    Q_PROPERTY(bool loud MEMBER loud)
    Q_CLASSINFO("prop_note", "Note")
    Q_CLASSINFO("prop_times", "Times")
    Q_CLASSINFO("prop_loud", "Loud")

public:
    void saveOperation(QDataStream &stream) const override;
    void loadOperation(QDataStream &stream) override;
    Operation *clone(QObject *parent) const override;

    QString note;
    int times = 1;
    bool loud = true;
};
