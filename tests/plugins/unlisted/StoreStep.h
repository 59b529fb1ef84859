#pragma once

#include "hostapi/Operation.h"

#include <QByteArray>
#include <QDateTime>
#include <QStringList>
#include <QVariant>

/// Puts its settings, one of each type that a property can have, into a list variable.
///
/// Sound, except where the plug-in has a fault.
class StoreStep : public Operation
{
    Q_OBJECT
    Q_PROPERTY(QString targetVar READ targetVar WRITE setTargetVar)
    Q_PROPERTY(qlonglong big READ big WRITE setBig)
    Q_PROPERTY(quint64 huge READ huge WRITE setHuge)
    Q_PROPERTY(float ratio READ ratio WRITE setRatio)
    Q_PROPERTY(QStringList names READ names WRITE setNames)
    Q_PROPERTY(QVariant anything READ anything WRITE setAnything)
    Q_PROPERTY(QDate day READ day WRITE setDay)
    Q_PROPERTY(QDateTime moment READ moment WRITE setMoment)
    Q_PROPERTY(QByteArray bytes READ bytes WRITE setBytes)
    Q_PROPERTY(Level level READ level WRITE setLevel)
    Q_CLASSINFO("prop_targetVar", "List")
    Q_CLASSINFO("editor_targetVar", "VARNAME")
    Q_CLASSINFO("varname_type_targetVar", "list")
    Q_CLASSINFO("prop_big", "Whole number")
    Q_CLASSINFO("prop_huge", "Large number")
    Q_CLASSINFO("prop_ratio", "Ratio")
    Q_CLASSINFO("prop_names", "Names")
    Q_CLASSINFO("prop_anything", "Anything")
    Q_CLASSINFO("prop_day", "Day")
    Q_CLASSINFO("prop_moment", "Moment")
    Q_CLASSINFO("prop_bytes", "Bytes")
    Q_CLASSINFO("prop_level", "Level")

public:
    enum Level { Low = 1, Middle = 5, High = 9 };
    Q_ENUM(Level)

    explicit StoreStep(QObject *parent = nullptr);

    QString targetVar() const
    {
        return m_settings.targetVar;
    }
    void setTargetVar(const QString &name)
    {
        m_settings.targetVar = name;
    }
    qlonglong big() const
    {
        return m_settings.big;
    }
    void setBig(qlonglong big);
    quint64 huge() const
    {
        return m_settings.huge;
    }
    void setHuge(quint64 huge);
    float ratio() const
    {
        return m_settings.ratio;
    }
    void setRatio(float ratio);
    QStringList names() const
    {
        return m_settings.names;
    }
    void setNames(const QStringList &names);
    QVariant anything() const
    {
        return m_settings.anything;
    }
    void setAnything(const QVariant &value);
    QDate day() const
    {
        return m_settings.day;
    }
    void setDay(const QDate &day);
    QDateTime moment() const
    {
        return m_settings.moment;
    }
    void setMoment(const QDateTime &moment);
    QByteArray bytes() const
    {
        return m_settings.bytes;
    }
    void setBytes(const QByteArray &bytes);
    Level level() const
    {
        return m_settings.level;
    }
    void setLevel(Level level);

    QString root() const override
    {
        return QString("Storing");
    }
    QString typeId() const override
    {
        return QString("join.store");
    }
    QString typeName() const override
    {
        return QString("Store");
    }
    QString icon() const override
    {
        return QString(":/unlisted/other.svg");
    }
    void doOperation() const override;
    void saveOperation(QDataStream &stream) const override;
    void loadOperation(QDataStream &stream) override;
    QString toString() const override
    {
        return QString("Store into ") + m_settings.targetVar;
    }
    QString description() const override
    {
        return QString("Stores settings.");
    }
    Operation *clone(QObject *parent) const override;

private:
    struct Settings
    {
        QString targetVar;
        qlonglong big = 0;
        quint64 huge = 0;
        float ratio = 0;
        QStringList names;
        QVariant anything = 0;
        QDate day = QDate(2020, 1, 31);
        QDateTime moment = QDateTime(QDate(2020, 1, 31), QTime(12, 0), Qt::UTC);
        QByteArray bytes;
        Level level = Middle;
    };

    Settings m_settings;
};

// Classes whose class info has a fault.

class BlankLabelStep : public StoreStep
{
    Q_OBJECT
    Q_PROPERTY(bool extra MEMBER extra)
    Q_CLASSINFO("prop_extra", "  ")

public:
    bool extra = false;
};

class DoubleLabelStep : public StoreStep
{
    Q_OBJECT
    Q_PROPERTY(bool extra MEMBER extra)
    Q_CLASSINFO("prop_extra", "Ratio")

public:
    bool extra = false;
};

class ControlLabelStep : public StoreStep
{
    Q_OBJECT
    Q_PROPERTY(bool extra MEMBER extra)
    Q_CLASSINFO("prop_extra", "Extra\tvalue\001")

public:
    bool extra = false;
};

class LatinLabelStep : public StoreStep
{
    Q_OBJECT
    Q_PROPERTY(bool extra MEMBER extra)
    Q_CLASSINFO("prop_extra", "Gr\366\337e")

public:
    bool extra = false;
};

class DoubleChoiceStep : public StoreStep
{
    Q_OBJECT
    Q_PROPERTY(int extra MEMBER extra)
    Q_CLASSINFO("prop_extra", "Extra")
    Q_CLASSINFO("editor_extra", "COMBO")
    Q_CLASSINFO("choices_extra", "a|b|a")

public:
    int extra = 0;
};

class BlankChoiceStep : public StoreStep
{
    Q_OBJECT
    Q_PROPERTY(int extra MEMBER extra)
    Q_CLASSINFO("prop_extra", "Extra")
    Q_CLASSINFO("editor_extra", "COMBO")
    Q_CLASSINFO("choices_extra", "a| |b")

public:
    int extra = 0;
};

class NameOnIntStep : public StoreStep
{
    Q_OBJECT
    Q_PROPERTY(int extra MEMBER extra)
    Q_CLASSINFO("prop_extra", "Extra")
    Q_CLASSINFO("editor_extra", "VARNAME")

public:
    int extra = 0;
};

class NumberOnBoolStep : public StoreStep
{
    Q_OBJECT
    Q_PROPERTY(bool extra MEMBER extra)
    Q_CLASSINFO("prop_extra", "Extra")
    Q_CLASSINFO("editor_extra", "NUMVAR:INT")

public:
    bool extra = false;
};

class ValueOnDateStep : public StoreStep
{
    Q_OBJECT
    Q_PROPERTY(QDate extra MEMBER extra)
    Q_CLASSINFO("prop_extra", "Extra")
    Q_CLASSINFO("editor_extra", "VARREF")

public:
    QDate extra = QDate(2020, 1, 1);
};

class OwnRuleStep : public StoreStep
{
    Q_OBJECT
    Q_CLASSINFO("show_when_level", "level=1")
};

class RuleOnTextStep : public StoreStep
{
    Q_OBJECT
    Q_CLASSINFO("show_when_big", "targetVar=1")
};

class KindCaseStep : public StoreStep
{
    Q_OBJECT
    Q_CLASSINFO("varname_type_targetVar", "List")
};

/// Sound.
class OddChoicesStep : public StoreStep
{
    Q_OBJECT
    Q_PROPERTY(int extra MEMBER extra)
    Q_CLASSINFO("prop_extra", "<b>Größe</b> & 尺寸")
    Q_CLASSINFO("editor_extra", "COMBO")
    Q_CLASSINFO("choices_extra", "<全部>|½ & ¼|%1|😀")

public:
    int extra = 0;
};
