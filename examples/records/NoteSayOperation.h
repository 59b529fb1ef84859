#pragma once

#include <hostapi/Operation.h>

/// Writes a text into a text variable; from release 2 on, several times in a row.
///
/// Its record has a version in front.
class NoteSayOperation : public Operation
{
    Q_OBJECT
    Q_PROPERTY(QString text MEMBER m_text)
    Q_PROPERTY(QString targetVar MEMBER m_targetVar)
    Q_CLASSINFO("prop_text", "Text")
    Q_CLASSINFO("prop_targetVar", "Target variable")
    Q_CLASSINFO("editor_targetVar", "VARNAME")
    Q_CLASSINFO("varname_type_targetVar", "scalar")
#if RELEASE >= 2
    Q_PROPERTY(int times MEMBER m_times)
    Q_CLASSINFO("prop_times", "How often")
#endif

public:
    explicit NoteSayOperation(QObject *parent = nullptr);

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
    QString m_text;
    QString m_targetVar;
    int m_times = 1;
};
