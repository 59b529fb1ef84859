#pragma once

#include <hostapi/Operation.h>

/// Puts a mark behind the text of a variable; from release 2 on, one that the user chooses.
///
/// It was shipped without a version in its record.
class NoteMarkOperation : public Operation
{
    Q_OBJECT
    Q_PROPERTY(QString targetVar MEMBER m_targetVar)
    Q_CLASSINFO("prop_targetVar", "Target variable")
    Q_CLASSINFO("editor_targetVar", "VARNAME")
    Q_CLASSINFO("varname_type_targetVar", "scalar")
#if RELEASE >= 2
    Q_PROPERTY(QString mark MEMBER m_mark)
    Q_CLASSINFO("prop_mark", "Mark")
#endif

public:
    explicit NoteMarkOperation(QObject *parent = nullptr);

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
    static QString newMark();

    QString m_targetVar;
    QString m_mark = newMark();
};
