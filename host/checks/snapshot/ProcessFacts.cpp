#include "ProcessFacts.h"

#include "LiveTimers.h"

#include <QDateTime>
#include <QDir>
#include <QLocale>
#include <QRandomGenerator>
#include <QTextCodec>
#include <QThread>
#include <QTimeZone>

namespace StepHost
{
const QVector<ProcessFacet> &processFacets()
{
    static const QVector<ProcessFacet> facets = qtFacets() + systemFacets() + fileFacets();
    return facets;
}

void warmUp()
{
    QDateTime::currentDateTime().toString();
    QTimeZone::systemTimeZone().displayName(QDateTime::currentDateTime());
    QLocale::system().toString(1.5);
    QLocale::system().toString(QDate(2024, 2, 29));
    QTextCodec::codecForLocale();
    QRandomGenerator::global()->generate();
    QDir::temp().entryList();
    // The main thread's dispatcher, and what starting and ending any thread leaves.
    QThread thread;
    thread.start();
    thread.quit();
    thread.wait();
    watchObjects();
}
} // namespace StepHost
