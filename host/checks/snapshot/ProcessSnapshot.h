#pragma once

#include "ProcessFacts.h"

#include <functional>

namespace StepHost
{
/// What a process is and has of one kind at one time.
class ProcessSnapshot
{
public:
    /// Takes one of \a facet now.
    explicit ProcessSnapshot(const ProcessFacet &facet);

    /// What has come, gone or changed since, in one line; empty when nothing has. What is about to go by itself, such
    /// as a thread that has ended, is given time to.
    QString differenceNow() const;

private:
    QString differenceTo(const QStringList &facts) const;

    const ProcessFacet &m_facet;
    QStringList m_facts;
};
} // namespace StepHost
