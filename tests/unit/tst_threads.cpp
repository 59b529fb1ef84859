#include "hostapi/IOperationPlugin.h"
#include "hostapi/Operation.h"
#include "hostapi/VariableScope.h"
#include "tests/support/TestPaths.h"

#include <QDataStream>
#include <QPluginLoader>
#include <QtTest>

#include <map>
#include <memory>
#include <thread>
#include <vector>

/// Threads that share a plug-in's prototypes and the values that they start with, and nothing else.
class TestThreads : public QObject
{
    Q_OBJECT

private slots:
    void stepsRunInManyThreads();
};

namespace
{
using StepPointer = std::unique_ptr<Operation>;
using Prototypes = std::map<QString, StepPointer>;

struct Settings
{
    QString typeId;
    QVariantMap values;
};

// Each step once, and each writes.
const std::vector<Settings> settingsOfAllSteps{
    {"list.sort", {{"targetVar", "items"}}},
    {"list.reverse", {{"targetVar", "items"}}},
    {"list.intersect", {{"listA", "items"}, {"listB", "few"}, {"targetVar", "both"}}},
    {"list.subtract", {{"listA", "items"}, {"listB", "few"}, {"targetVar", "rest"}}},
    {"list.add", {{"targetVar", "items"}, {"value", "$text"}, {"index", "0"}}},
    {"list.get", {{"sourceVar", "items"}, {"index", "1"}, {"targetVar", "text"}}},
    {"list.remove", {{"targetVar", "items"}, {"mode", 0}, {"index", "0"}}},
    {"list.merge", {{"listA", "items"}, {"listB", "rest"}, {"targetVar", "all"}}},
    {"list.dedup", {{"targetVar", "all"}}},
    {"list.clear", {{"targetVar", "rest"}}},
};

// A clone with `settings`, by way of a record, as a host reads one that it has written.
StepPointer configuredClone(const Operation &prototype, const QVariantMap &settings)
{
    const StepPointer step(prototype.clone(nullptr));
    for (auto it = settings.cbegin(); it != settings.cend(); ++it)
        step->setProperty(it.key().toUtf8().constData(), it.value());
    QByteArray record;
    QDataStream out(&record, QIODevice::WriteOnly);
    step->saveOperation(out);
    StepPointer read(prototype.clone(nullptr));
    QDataStream in(record);
    read->loadOperation(in);
    return read;
}

// What a thread does, and all that came of it.
QVariantList runAllSteps(const Prototypes &prototypes, const VariableScope &start)
{
    constexpr int rounds = 20;
    QVariantList seen;
    for (int round = 0; round < rounds; ++round) {
        VariableScope scope = start;
        for (const Settings &settings : settingsOfAllSteps) {
            const StepPointer step = configuredClone(*prototypes.at(settings.typeId), settings.values);
            step->setVariableScope(&scope);
            step->doOperation();
            seen << step->typeName() << step->toString() << step->description() << scope.writeCount();
        }
        const QStringList names = scope.names();
        for (const QString &name : names)
            seen << name << scope.get(name);
    }
    return seen;
}
} // namespace

void TestThreads::stepsRunInManyThreads()
{
    QPluginLoader loader(TestPaths::listPlugin());
    auto *plugin = qobject_cast<IOperationPlugin *>(loader.instance());
    QVERIFY2(plugin, qPrintable(loader.errorString()));
    Prototypes prototypes;
    for (Operation *prototype : plugin->createPrototypes())
        prototypes[prototype->typeId()].reset(prototype);
    QCOMPARE(prototypes.size(), settingsOfAllSteps.size());

    VariableScope scope;
    scope.set("items", QVariantList{"b", 3, 1.5, QVariantList{"a", true}, "a", "b", QVariant()});
    scope.set("few", QVariantList{"a", 3});
    scope.set("text", "new");
    for (const char *name : {"both", "rest", "all"})
        scope.declare(name, VarType::List);
    const quint64 writes = scope.writeCount();
    const QVariantList expected = runAllSteps(prototypes, scope);
    // Of the first round: four entries for each step, the last of which is the number of writes.
    const int lastOfRound = 4 * int(settingsOfAllSteps.size()) - 1;
    QCOMPARE(expected.at(lastOfRound).toULongLong(), writes + settingsOfAllSteps.size());

    constexpr int count = 8;
    std::vector<QVariantList> seen(count);
    std::vector<std::thread> threads;
    for (QVariantList &own : seen)
        threads.emplace_back([&prototypes, &scope, &own] { own = runAllSteps(prototypes, scope); });
    for (std::thread &thread : threads)
        thread.join();
    for (const QVariantList &own : seen)
        QCOMPARE(own, expected);
}

QTEST_GUILESS_MAIN(TestThreads)
#include "tst_threads.moc"
