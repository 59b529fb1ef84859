#include "hostapi/IOperationPlugin.h"
#include "hostapi/Operation.h"
#include "hostapi/VariableScope.h"
#include "tests/support/StepTable.h"
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
        for (const StepRow &row : stepTable()) {
            VariableScope scope = start;
            const StepPointer step = configuredClone(*prototypes.at(row.typeId), row.sample);
            step->setVariableScope(&scope);
            step->doOperation();
            seen << step->typeName() << step->toString() << step->description();
            const QStringList names = scope.names();
            for (const QString &name : names)
                seen << name << scope.get(name);
            seen << scope.writeCount() - start.writeCount();
        }
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
    QCOMPARE(int(prototypes.size()), stepTable().size());

    VariableScope scope;
    scope.set("a", QVariantList{"b", 3, 1.5, QVariantList{"a", true}, "a", "b", QVariant()});
    scope.set("b", QVariantList{"a", 3});
    scope.declare("c", VarType::List);
    scope.set("text", "new");
    const QVariantList expected = runAllSteps(prototypes, scope);
    const int perStep = 3 + 2 * scope.names().size() + 1;
    for (int last = perStep - 1; last < expected.size(); last += perStep)
        QCOMPARE(expected.at(last), QVariant(quint64(1)));

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
