#include "stepkit/Records.h"

#include <QDataStream>
#include <QtTest>

class TestKitRecords : public QObject
{
    Q_OBJECT

private slots:
    void versionIsWritten();
    void version_data();
    void version();
    void tail_data();
    void tail();
};

Q_DECLARE_METATYPE(QDataStream::Status)

void TestKitRecords::versionIsWritten()
{
    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    writeRecordVersion(stream, 2);
    QCOMPARE(record.toHex(), QByteArray("00000002"));
}

void TestKitRecords::version_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<quint32>("version");
    QTest::addColumn<QDataStream::Status>("status");
    const auto row = [](const char *record, quint32 version, QDataStream::Status status) {
        QTest::addRow("'%s'", record) << QByteArray::fromHex(record) << version << status;
    };
    row("00000001", 1, QDataStream::Ok);
    row("00000003", 3, QDataStream::Ok);
    row("00000000", 0, QDataStream::ReadCorruptData);
    row("00000004", 0, QDataStream::ReadCorruptData);
    row("ffffffff", 0, QDataStream::ReadCorruptData);
    row("000000", 0, QDataStream::ReadPastEnd);
    row("", 0, QDataStream::ReadPastEnd);
}

void TestKitRecords::version()
{
    QFETCH(QByteArray, record);
    QFETCH(quint32, version);
    QFETCH(QDataStream::Status, status);
    QDataStream stream(record);
    QCOMPARE(readRecordVersion(stream, 3), version);
    QCOMPARE(stream.status(), status);

    QDataStream broken(record);
    broken.setStatus(QDataStream::ReadCorruptData);
    QCOMPARE(readRecordVersion(broken, 3), 0u);
    QCOMPARE(broken.status(), QDataStream::ReadCorruptData);
}

void TestKitRecords::tail_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<bool>("hasTail");
    QTest::newRow("nothing") << QByteArray() << false;
    QTest::newRow("a cut field") << QByteArray::fromHex("0000") << false;
    QTest::newRow("the field alone") << QByteArray::fromHex("00000001") << false;
    QTest::newRow("a byte more") << QByteArray::fromHex("0000000100") << true;
    QTest::newRow("a field more") << QByteArray::fromHex("0000000100000002") << true;
}

void TestKitRecords::tail()
{
    QFETCH(QByteArray, record);
    QFETCH(bool, hasTail);
    QDataStream stream(record);
    qint32 field = 0;
    stream >> field;
    const QDataStream::Status status = stream.status();
    QCOMPARE(hasRecordTail(stream), hasTail);
    QCOMPARE(stream.status(), status);

    stream.setStatus(QDataStream::ReadCorruptData);
    QVERIFY(!hasRecordTail(stream));
}

QTEST_GUILESS_MAIN(TestKitRecords)
#include "tst_kitrecords.moc"
