#pragma once

#include "hostapi/Operation.h"

/// A sound step that does nothing. Tests derive from it what they need to be otherwise.
class FixtureStep : public Operation
{
public:
    explicit FixtureStep(const QString &typeId, QObject *parent = nullptr)
        : Operation(parent), m_typeId(typeId)
    {
    }

    QString root() const override
    {
        return QString("fixtures");
    }
    QString typeId() const override
    {
        return m_typeId;
    }
    QString typeName() const override
    {
        return QString("Fixture");
    }
    QString icon() const override
    {
        return QString();
    }
    void doOperation() const override { }
    QString toString() const override
    {
        return QString("Fixture");
    }
    QString description() const override
    {
        return QString("Does nothing.");
    }
    Operation *clone(QObject *parent) const override
    {
        return new FixtureStep(m_typeId, parent);
    }

private:
    QString m_typeId;
};
