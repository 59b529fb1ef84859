#include "host/checks/CheckContext.h"
#include "host/checks/CheckSteps.h"
#include "host/checks/trial/SettingValues.h"
#include "host/running/Breadcrumb.h"
#include "host/running/ProcessProbe.h"

#include <algorithm>
#include <new>
#include <random>

namespace StepHost
{
namespace
{
constexpr int mutations = 10000;
constexpr qint64 allowedGrowth = qint64(64) * 1024 * 1024;

// The base's own part of a record.
QByteArray baseRecordOf(const Operation &step)
{
    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    step.Operation::saveOperation(stream);
    return record;
}

// Settings worth saving: changed ones, then the hostile ones.
void forEachContent(Operation &step, const std::function<void()> &check)
{
    changeSettings(step);
    check();
    for (const QString &text : hostileTexts()) {
        setTexts(step, text);
        check();
    }
    for (const int number : edgeIntegers()) {
        setIntegers(step, number);
        check();
    }
}

void expectRoundTrip(const Operation &step, Operation &twin, StreamForm form, const QString &where)
{
    const QByteArray record = recordOf(step, form);
    const LoadEnd end = loadRecord(twin, record, form);
    expectSettings(twin, readSettings(step), QStringLiteral("after save and load%1").arg(where));
    if (end.status != QDataStream::Ok || end.position != record.size())
        fail(QStringLiteral("loading reads %1 of the %2 bytes that saving wrote%3")
                 .arg(end.position)
                 .arg(record.size())
                 .arg(where));
}

void checkSettings(CheckContext &context)
{
    context.forEachTwins([](Operation &step, Operation &twin) {
        forEachContent(step, [&] { expectRoundTrip(step, twin, {}, QString()); });
    });
}

void checkBytes(CheckContext &context)
{
    context.forEachTwins([](Operation &step, Operation &twin) {
        forEachContent(step, [&] {
            const QByteArray record = recordOf(step);
            loadRecord(twin, record);
            if (recordOf(twin) != record)
                fail(QStringLiteral("saving what was loaded gives other bytes"));
        });
    });
}

void checkRepeatable(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        changeSettings(step);
        const QVariantList settings = readSettings(step);
        const QByteArray record = recordOf(step);
        expectSettings(step, settings, QStringLiteral("after saving"));
        if (recordOf(step) != record)
            fail(QStringLiteral("saving twice gives different bytes"));
    });
}

void checkReplaces(CheckContext &context)
{
    context.forEachTwins([](const Operation &step, Operation &twin) {
        changeSettings(twin);
        loadRecord(twin, recordOf(step));
        expectSettings(twin, readSettings(step), QStringLiteral("after loading over other settings"));
    });
}

void checkBaseFirst(CheckContext &context)
{
    context.forEachTwins([](Operation &step, Operation &twin) {
        const quint32 state = 0x12345678;
        setBaseState(step, state);
        const QByteArray record = recordOf(step);
        if (!record.startsWith(baseRecordOf(step)))
            fail(QStringLiteral("the record does not begin with what Operation::saveOperation() writes"));
        loadRecord(twin, record);
        if (baseStateOf(twin) != state)
            fail(QStringLiteral("loading does not restore the base state"));
    });
}

void checkVersions(CheckContext &context)
{
    context.forEachTwins([](Operation &step, Operation &twin) {
        changeSettings(step);
        for (int version = QDataStream::Qt_4_0; version <= QDataStream::Qt_5_15; ++version)
            expectRoundTrip(step, twin, {version}, QStringLiteral(" in stream version %1").arg(version));
    });
}

void checkByteOrders(CheckContext &context)
{
    context.forEachTwins([](Operation &step, Operation &twin) {
        changeSettings(step);
        for (const QDataStream::ByteOrder order : {QDataStream::BigEndian, QDataStream::LittleEndian}) {
            for (int version = QDataStream::Qt_4_0; version <= QDataStream::Qt_5_15; ++version)
                expectRoundTrip(step, twin, {version, order},
                                order == QDataStream::BigEndian ? QStringLiteral(" in big-endian order")
                                                                : QStringLiteral(" in little-endian order"));
        }
    });
}

void checkRow(CheckContext &context)
{
    context.forEachTwins([](Operation &step, Operation &twin) {
        const QVariantList defaults = readSettings(step);
        changeSettings(twin);
        const QVariantList changed = readSettings(twin);
        QByteArray row;
        {
            QDataStream stream(&row, QIODevice::WriteOnly);
            step.saveOperation(stream);
            twin.saveOperation(stream);
            step.saveOperation(stream);
        }
        QDataStream stream(row);
        step.loadOperation(stream);
        expectSettings(step, defaults, QStringLiteral("after loading the first of three records"));
        step.loadOperation(stream);
        expectSettings(step, changed, QStringLiteral("after loading the second of three records"));
        twin.loadOperation(stream);
        expectSettings(twin, defaults, QStringLiteral("after loading the third of three records"));
        if (!stream.atEnd())
            fail(QStringLiteral("three records are not read to their end"));
    });
}

bool isSameList(const QVariantList &values, const QVariantList &others)
{
    return std::equal(values.begin(), values.end(), others.begin(), others.end(), isSameValue);
}

// Whether `twin` takes `cut`, the beginning of a record of `step`, for a record from before some settings were there:
// it keeps what is there, and what is missing is as in a new step, whatever the step held before.
bool isOlderRecord(const QByteArray &cut, const Operation &step, Operation &twin,
                   const QVariantList &defaults)
{
    const QVariantList saved = readSettings(step);
    const QVariantList loaded = readSettings(twin);
    for (int i = 0; i < loaded.size(); ++i) {
        if (!isSameValue(loaded.at(i), saved.at(i)) && !isSameValue(loaded.at(i), defaults.at(i)))
            return false;
    }
    changeSettings(twin);
    loadRecord(twin, cut);
    return isSameList(readSettings(twin), loaded) && recordOf(twin).startsWith(cut);
}

void checkTruncation(CheckContext &context)
{
    context.forEachTwins([](Operation &step, Operation &twin) {
        const QVariantList defaults = readSettings(twin);
        changeSettings(step);
        const QByteArray record = recordOf(step);
        const int baseSize = baseRecordOf(step).size();
        QByteArray before; // What the cut by one byte less became, if that was an older record.
        for (int size = 0; size < record.size(); ++size) {
            const QByteArray cut = record.left(size);
            const bool isTaken = loadRecord(twin, cut).status == QDataStream::Ok;
            const QByteArray became = recordOf(twin);
            if (isTaken && (size < baseSize || became == before || !isOlderRecord(cut, step, twin, defaults)))
                fail(QStringLiteral("a record that is cut after %1 of %2 bytes is loaded as if it were whole")
                         .arg(size)
                         .arg(record.size()));
            before = isTaken ? became : QByteArray();
        }
    });
}

// Loads every one of the mutated records into `twin`: bytes changed, inserted and taken out. Calls `check` from
// time to time.
void loadMutations(Operation &step, Operation &twin, const std::function<void()> &check)
{
    constexpr int checkInterval = 100;
    std::mt19937 random(1);
    const auto below = [&random](int limit) { return int(random() % std::mt19937::result_type(limit)); };
    changeSettings(step);
    const QByteArray record = recordOf(step);
    for (int i = 0; i < mutations; ++i) {
        QByteArray mutated = record;
        for (int change = below(4); change >= 0; --change) {
            const int at = below(mutated.size() + 1);
            switch (below(4)) {
            case 0:
                mutated.insert(at, char(below(256)));
                break;
            case 1:
                mutated.replace(at, 1, QByteArray(1, char(below(256))));
                break;
            case 2:
                mutated.replace(at, 4, QByteArray(4, below(2) == 0 ? '\x7f' : '\xff'));
                break;
            default:
                mutated.remove(at, below(8));
                break;
            }
        }
        noteCall("loadOperation() for a damaged record", &twin);
        loadRecord(twin, mutated);
        noteCall("toString()", &twin);
        twin.toString();
        if (i % checkInterval == 0)
            check();
    }
}

void checkMutation(CheckContext &context)
{
    context.forEachTwins([](Operation &step, Operation &twin) { loadMutations(step, twin, [] {}); });
}

void checkMutationMemory(CheckContext &context)
{
    context.newSteps();
    const std::optional<qint64> before = peakMemory();
    if (!before)
        skip(QStringLiteral("this system does not tell how much memory a process uses"));
    // Twice what is allowed: a step that goes a little too far is measured, one without bounds is stopped.
    const MemoryGrowthLimit limit(2 * allowedGrowth);
    const auto expectNoGrowth = [&before] {
        const qint64 growth = peakMemory().value_or(*before) - *before;
        if (growth > allowedGrowth)
            fail(QStringLiteral("damaged records make the process grow by %1 MiB, at most %2 are allowed")
                     .arg(growth >> 20)
                     .arg(allowedGrowth >> 20));
    };
    context.forEachTwins([&expectNoGrowth](Operation &step, Operation &twin) {
        try {
            loadMutations(step, twin, expectNoGrowth);
        } catch (const std::bad_alloc &) {
            fail(QStringLiteral("a damaged record makes loading ask for more memory than there is"));
        }
    });
}
} // namespace

QVector<PluginCheck> persistenceChecks()
{
    return {
        {"persistence.settings", "Saving and loading gives the same settings, whatever they hold.",
         checkSettings},
        {"persistence.bytes", "Saving what was loaded gives the same bytes.", checkBytes},
        {"persistence.repeatable", "Saving changes nothing, and gives the same bytes each time.",
         checkRepeatable},
        {"persistence.replaces", "Loading replaces every setting, also by its default.", checkReplaces},
        {"persistence.base-first", "A record begins with the base's own part.", checkBaseFirst},
        {"persistence.versions", "Records are read back in every stream version from 4.0 to 5.15.",
         checkVersions},
        {"persistence.byte-orders", "Records are read back in both byte orders.", checkByteOrders},
        {"persistence.row", "Records in a row do not eat each other's bytes.", checkRow},
        {"persistence.truncation",
         "A record that ends early is loaded without harm, and the stream tells it.", checkTruncation},
        {"persistence.mutation", "10,000 damaged records for each step are loaded without crash or hang.",
         checkMutation},
        {"persistence.mutation-memory", "Damaged records do not make the process grow by more than 64 MiB.",
         checkMutationMemory},
    };
}
} // namespace StepHost
