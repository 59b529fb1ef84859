#include "host/plugins/StepRecord.h"

// Whoever sees these two still means one function.
#include "host/checks/CheckSteps.h"
#include "host/scripts/BinaryScript.h"

#include <QtTest>

#include <stdexcept>

using namespace StepHost;

namespace
{
const QByteArray record = QByteArray::fromHex("00000007 00000005");

/// A step with one number after the base state, which it may refuse to load.
class NumberStep : public Operation
{
public:
    NumberStep() : Operation(nullptr) { }
    QString root() const override
    {
        return QString();
    }
    QString typeId() const override
    {
        return QString();
    }
    QString typeName() const override
    {
        return QString();
    }
    QString icon() const override
    {
        return QString();
    }
    void doOperation() const override { }
    void saveOperation(QDataStream &stream) const override
    {
        Operation::saveOperation(stream);
        stream << m_number;
    }
    void loadOperation(QDataStream &stream) override
    {
        Operation::loadOperation(stream);
        stream >> m_number;
        if (m_number == 13)
            throw std::runtime_error("unlucky");
        if (m_number == 14)
            throw 14;
        if (m_number == 15)
            stream.setStatus(QDataStream::ReadCorruptData);
    }
    QString toString() const override
    {
        return QString();
    }
    QString description() const override
    {
        return QString();
    }
    Operation *clone(QObject *) const override
    {
        return nullptr;
    }

private:
    qint32 m_number = 0;
};
} // namespace

class TestStepRecord : public QObject
{
    Q_OBJECT

private slots:
    void loadsAndSaves();
    void loadsAndSavesInAnotherForm();
    void tellsWhereLoadingEnded();
    void tellsWhatIsWrong_data();
    void tellsWhatIsWrong();
};

void TestStepRecord::loadsAndSaves()
{
    NumberStep step;
    loadRecord(step, record);
    QCOMPARE(recordOf(step).toHex(), record.toHex());
}

void TestStepRecord::loadsAndSavesInAnotherForm()
{
    const StreamForm form{QDataStream::Qt_5_0, QDataStream::LittleEndian};
    NumberStep step;
    loadRecord(step, QByteArray::fromHex("07000000 05000000"), form);
    QCOMPARE(recordOf(step, form).toHex(), QByteArray("0700000005000000"));
    QCOMPARE(recordOf(step).toHex(), record.toHex());
}

void TestStepRecord::tellsWhereLoadingEnded()
{
    NumberStep step;
    const LoadEnd whole = loadRecord(step, record + "rest");
    QCOMPARE(whole.status, QDataStream::Ok);
    QCOMPARE(whole.position, record.size());
    QCOMPARE(loadRecord(step, record.left(6)).status, QDataStream::ReadPastEnd);
    QVERIFY_EXCEPTION_THROWN(loadRecord(step, QByteArray::fromHex("00000000 0000000d")), std::runtime_error);
}

void TestStepRecord::tellsWhatIsWrong_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("error");
    const auto number = [](const char *hex) {
        return QByteArray::fromHex("00000000") + QByteArray::fromHex(hex);
    };
    QTest::newRow("whole") << record << QString();
    QTest::newRow("nothing") << QByteArray() << "the record ends too early";
    QTest::newRow("cut off") << record.left(7) << "the record ends too early";
    QTest::newRow("too long") << record + "rest"
                              << "the step leaves 4 bytes of the record";
    QTest::newRow("damaged") << number("0000000f")
                             << "the record is damaged, or one of a newer version of the step";
    QTest::newRow("exception") << number("0000000d") << "the step threw an exception: unlucky";
    QTest::newRow("thrown number") << number("0000000e") << "the step threw an exception";
}

void TestStepRecord::tellsWhatIsWrong()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, error);
    NumberStep step;
    const Result<void> loaded = loadWholeRecord(step, bytes);
    QCOMPARE(loaded ? QString() : loaded.error(), error);
}

QTEST_GUILESS_MAIN(TestStepRecord)
#include "tst_steprecord.moc"
