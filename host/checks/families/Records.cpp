// Checks of records beyond saving and loading once: values of every type, streams of every kind, other processes.

#include "host/checks/CheckContext.h"
#include "host/checks/CheckSteps.h"
#include "host/checks/trial/SettingValues.h"
#include "host/checks/trial/Trials.h"
#include "host/running/Breadcrumb.h"
#include "host/running/ProcessProbe.h"
#include "host/values/QuotedText.h"

#include <QCryptographicHash>
#include <QIODevice>

#include <new>

namespace StepHost
{
namespace
{
constexpr qint64 allowedGrowth = qint64(256) * 1024 * 1024;

/// A device that can be read and written only in a row, such as a pipe.
class Pipe : public QIODevice
{
public:
    explicit Pipe(const QByteArray &bytes = QByteArray()) : m_bytes(bytes)
    {
        open(QIODevice::ReadWrite | QIODevice::Unbuffered);
    }

    bool isSequential() const override
    {
        return true;
    }
    qint64 bytesAvailable() const override
    {
        return m_bytes.size() + QIODevice::bytesAvailable();
    }
    const QByteArray &bytes() const
    {
        return m_bytes;
    }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const int count = int(qMin(size, qint64(m_bytes.size())));
        std::copy_n(m_bytes.constData(), count, data);
        m_bytes.remove(0, count);
        return count;
    }
    qint64 writeData(const char *data, qint64 size) override
    {
        m_bytes.append(data, int(size));
        return size;
    }

private:
    QByteArray m_bytes;
};

void expectLoaded(const Operation &step, Operation &twin, const QString &when)
{
    const QByteArray record = recordOf(step);
    noteCall("loadOperation()", &twin);
    loadRecord(twin, record);
    expectSettings(twin, readSettings(step), when);
}

void checkValues(CheckContext &context)
{
    context.forEachTwins([](Operation &step, Operation &twin) {
        const QVector<QMetaProperty> settings = settingsOf(step);
        for (const QMetaProperty &setting : settings) {
            const QVariant byDefault = setting.read(&step);
            const QVariantList values = storableValues(setting);
            for (const QVariant &value : values) {
                setting.write(&step, value);
                expectLoaded(step, twin, QStringLiteral("after save and load"));
            }
            setting.write(&step, byDefault);
        }
    });
}

void checkCombinations(CheckContext &context)
{
    context.forEachTwins([&context](Operation &step, Operation &twin) {
        const StepTrials trials = findTrials(step, context.seed());
        const QVector<Trial> all = trials.writing + trials.skipping;
        for (const Trial &trial : all) {
            applySettings(step, trial.settings);
            changeTexts(step);
            expectLoaded(step, twin, QStringLiteral("after save and load"));
        }
    });
}

// Fails when `stream` is not as a host left it.
void expectForm(const QDataStream &stream, StreamForm form, QDataStream::FloatingPointPrecision precision,
                const char *call)
{
    if (stream.version() != form.version)
        fail(QStringLiteral("%1 leaves the stream with version %2 instead of %3")
                 .arg(QLatin1String(call))
                 .arg(stream.version())
                 .arg(form.version));
    if (stream.byteOrder() != form.order)
        fail(QStringLiteral("%1 leaves the stream with the other byte order").arg(QLatin1String(call)));
    if (stream.floatingPointPrecision() != precision)
        fail(QStringLiteral("%1 leaves the stream with another precision of numbers")
                 .arg(QLatin1String(call)));
}

void checkStreamKept(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        for (const StreamForm form :
             {StreamForm{}, StreamForm{QDataStream::Qt_4_8, QDataStream::LittleEndian},
              StreamForm{QDataStream::Qt_5_6, QDataStream::BigEndian}}) {
            for (const auto precision : {QDataStream::SinglePrecision, QDataStream::DoublePrecision}) {
                QByteArray record;
                QDataStream out(&record, QIODevice::WriteOnly);
                out.setVersion(form.version);
                out.setByteOrder(form.order);
                out.setFloatingPointPrecision(precision);
                step.saveOperation(out);
                expectForm(out, form, precision, "saveOperation()");
                QDataStream in(record);
                in.setVersion(form.version);
                in.setByteOrder(form.order);
                in.setFloatingPointPrecision(precision);
                step.loadOperation(in);
                expectForm(in, form, precision, "loadOperation()");
            }
        }
    });
}

void checkSequential(CheckContext &context)
{
    context.forEachTwins([](Operation &step, Operation &twin) {
        changeSettings(step);
        const QByteArray record = recordOf(step);
        Pipe written;
        QDataStream out(&written);
        out.setVersion(StreamForm{}.version);
        step.saveOperation(out);
        if (written.bytes() != record)
            fail(QStringLiteral(
                "saving to a device that is written in a row, such as a pipe, gives other bytes"));
        // Something follows the record, and nobody can look how much.
        Pipe read(record + record);
        QDataStream in(&read);
        in.setVersion(StreamForm{}.version);
        twin.loadOperation(in);
        expectSettings(twin, readSettings(step),
                       QStringLiteral("after loading from a device that is read in a row"));
        if (read.bytesAvailable() != record.size())
            fail(QStringLiteral(
                "loading from a device that is read in a row takes other bytes than the record's"));
    });
}

// The records are the same wherever in a device they stand.
void checkPlace(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        changeSettings(step);
        const QByteArray record = recordOf(step);
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setVersion(StreamForm{}.version);
        stream << quint32(1) << quint32(2);
        step.saveOperation(stream);
        if (bytes.mid(8) != record)
            fail(QStringLiteral("the record has other bytes where something stands in front of it"));
    });
}

void checkAnywhere(CheckContext &context)
{
    context.forEachStep([&context](Operation &step) {
        const auto tell = [&](const char *which) {
            const QByteArray record = recordOf(step);
            const QByteArray digest =
                QCryptographicHash::hash(record, QCryptographicHash::Sha1).toHex().left(12);
            context.tell(QStringLiteral("the record of %1 with %2 settings")
                             .arg(QString::fromUtf8(step.metaObject()->className()), QLatin1String(which)),
                         QStringLiteral("%1 bytes with the checksum %2")
                             .arg(record.size())
                             .arg(QString::fromLatin1(digest)));
        };
        tell("default");
        changeSettings(step);
        tell("changed");
    });
}

// Takes a count of elements, wherever there is one, for a large one, and lets as many follow.
void checkLongRecords(CheckContext &context)
{
    constexpr int mostPlaces = 64;
    constexpr int padding = 1024 * 1024;
    const QByteArray counts[] = {QByteArray::fromHex("0003ffff"), QByteArray::fromHex("7fffffff")};
    const QByteArray fills[] = {QByteArray(padding, '\0'),
                                QByteArray(QByteArray::fromHex("00000001").repeated(padding / 4))};
    context.newSteps();
    const MemoryGrowthLimit limit(2 * allowedGrowth);
    context.forEachStep([&](Operation &step) {
        changeSettings(step);
        const QByteArray record = recordOf(step);
        for (int at = 0; at + 4 <= record.size() && at < mostPlaces; ++at) {
            for (const QByteArray &count : counts) {
                for (const QByteArray &fill : fills) {
                    noteCall("loadOperation() for a long record", &step);
                    try {
                        loadRecord(step, record.left(at) + count + fill);
                    } catch (const std::bad_alloc &) {
                        fail(QStringLiteral("a long record makes loading ask for more memory than there is"));
                    }
                }
            }
        }
    });
}
} // namespace

QVector<PluginCheck> recordChecks()
{
    return {
        {"persistence.values", "Records keep every value that a setting can hold.", checkValues},
        {"persistence.combinations", "Records keep all settings, whichever of them are shown.",
         checkCombinations},
        {"persistence.stream-kept", "The stream's version, byte order and precision are left alone.",
         checkStreamKept},
        {"persistence.sequential",
         "Records can be written to and read from a device in a row, such as a pipe.", checkSequential},
        {"persistence.place", "A record is the same wherever in a file it stands.", checkPlace},
        {"persistence.anywhere",
         "A record is the same in every process, locale and time zone, whatever day it is there.",
         checkAnywhere, CheckWorlds::Elsewhere},
        {"persistence.long-records", "Long records are loaded without a crash and within a bound of memory.",
         checkLongRecords},
    };
}
} // namespace StepHost
