#include "ProcessSnapshot.h"

#include "host/values/QuotedText.h"

#include <QElapsedTimer>
#include <QThread>

namespace StepHost
{
namespace
{
QStringList without(const QStringList &facts, const QStringList &others)
{
    QStringList rest = facts;
    for (const QString &other : others)
        rest.removeOne(other);
    return rest;
}

QString listed(const char *word, const QStringList &facts)
{
    constexpr int shown = 3;
    QStringList texts;
    const QStringList some = facts.mid(0, shown);
    for (const QString &fact : some)
        texts.append(quoted(fact));
    if (facts.size() > shown)
        texts.append(QStringLiteral("and %1 more").arg(facts.size() - shown));
    return QLatin1String(word) + texts.join(QLatin1String(", "));
}
} // namespace

ProcessSnapshot::ProcessSnapshot(const ProcessFacet &facet) : m_facet(facet), m_facts(facet.facts()) { }

QString ProcessSnapshot::differenceNow() const
{
    constexpr int patience = 300;
    constexpr int pause = 5;
    QElapsedTimer timer;
    timer.start();
    QString difference = differenceTo(m_facet.facts());
    while (!difference.isEmpty() && timer.elapsed() < patience) {
        QThread::msleep(pause);
        difference = differenceTo(m_facet.facts());
    }
    return difference;
}

QString ProcessSnapshot::differenceTo(const QStringList &facts) const
{
    const QStringList gone = without(m_facts, facts);
    const QStringList come = without(facts, m_facts);
    QStringList parts;
    if (!gone.isEmpty() && !m_facet.mayGo)
        parts.append(listed("before there was ", gone));
    if (!come.isEmpty())
        parts.append(listed("now there is ", come));
    return parts.join(QLatin1String(", "));
}
} // namespace StepHost
