#include "tests/support/ShowValue.h"
#include "tests/support/StepFamily.h"
#include "tests/support/StepTable.h"

#include <QBuffer>
#include <QDataStream>
#include <QRandomGenerator>
#include <QtEndian>
#include <QtTest>

Q_DECLARE_METATYPE(QDataStream::ByteOrder)

namespace
{
struct Format
{
    const char *name;
    QDataStream::Version version;
    QDataStream::ByteOrder byteOrder;
};

constexpr Format formats[] = {
    {"Qt 4.0, big endian", QDataStream::Qt_4_0, QDataStream::BigEndian},
    {"Qt 4.0, little endian", QDataStream::Qt_4_0, QDataStream::LittleEndian},
    {"Qt 4.6, big endian", QDataStream::Qt_4_6, QDataStream::BigEndian},
    {"Qt 4.6, little endian", QDataStream::Qt_4_6, QDataStream::LittleEndian},
    {"Qt 5.15, big endian", QDataStream::Qt_5_15, QDataStream::BigEndian},
    {"Qt 5.15, little endian", QDataStream::Qt_5_15, QDataStream::LittleEndian},
};

constexpr quint32 baseState = 0x01020304;

// The encodings, written out by hand.

template<typename Integer>
QByteArray encodedInteger(Integer number, QDataStream::ByteOrder order)
{
    QByteArray bytes(sizeof(Integer), '\0');
    if (order == QDataStream::BigEndian)
        qToBigEndian(number, bytes.data());
    else
        qToLittleEndian(number, bytes.data());
    return bytes;
}

QByteArray encodedText(const QString &text, QDataStream::ByteOrder order)
{
    if (text.isNull())
        return QByteArray(4, '\xff');
    QByteArray bytes = encodedInteger(quint32(text.size() * 2), order);
    for (const QChar unit : text)
        bytes += encodedInteger(unit.unicode(), order);
    return bytes;
}

QByteArray encoded(const QVariant &field, QDataStream::ByteOrder order)
{
    switch (field.userType()) {
    case QMetaType::QString:
        return encodedText(field.toString(), order);
    case QMetaType::Int:
        return encodedInteger(qint32(field.toInt()), order);
    case QMetaType::Bool:
        return QByteArray(1, field.toBool() ? '\1' : '\0');
    default:
        return QByteArray();
    }
}

QByteArray encodedRecord(const QVariantList &fields, QDataStream::ByteOrder order)
{
    QByteArray bytes = encodedInteger(baseState, order);
    for (const QVariant &field : fields)
        bytes += encoded(field, order);
    return bytes;
}

QByteArray recordOf(const Operation &step, const Format &format)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(format.version);
    stream.setByteOrder(format.byteOrder);
    step.saveOperation(stream);
    return bytes;
}

QDataStream::Status load(Operation &step, const QByteArray &record, const Format &format)
{
    QDataStream stream(record);
    stream.setVersion(format.version);
    stream.setByteOrder(format.byteOrder);
    step.loadOperation(stream);
    return stream.status();
}

// The fields of a step in the order of its record.
QVariantList fieldsOf(const Operation &step)
{
    QVariantList fields;
    for (const StepSetting &setting : stepRow(step.typeId()).settings)
        fields.append(step.property(setting.name.toUtf8()));
    return fields;
}

StepPointer stepWith(const QString &typeId, const QVariantList &fields)
{
    StepPointer step = newStep(typeId);
    const QVector<StepSetting> &settings = stepRow(typeId).settings;
    for (int i = 0; i < fields.size(); ++i)
        step->setProperty(settings.at(i).name.toUtf8(), fields.at(i));
    load(*step, encodedInteger(baseState, QDataStream::BigEndian) + recordOf(*step, formats[0]).mid(4),
         formats[0]);
    return step;
}

struct Sample
{
    QString typeId;
    QVariantList fields;
};

// Every step with fields of every kind, each at every place.
QVector<Sample> samples()
{
    const QVariantList texts{"names",     QString("列表 \U0001F600") + QChar(0) + QChar(0xd800) + " ",
                             QString(""), QString(),
                             "$x",        " 1 "};
    const QVariantList numbers{0, 1, -2147483647 - 1, 0x7f000002, -1, 2};
    QVector<Sample> samples;
    for (const StepPointer &step : newStepOfEachKind()) {
        const QVector<StepSetting> &settings = stepRow(step->typeId()).settings;
        for (int shift = 0; shift < texts.size(); ++shift) {
            QVariantList fields;
            for (const StepSetting &setting : settings) {
                const int place = (fields.size() + shift) % texts.size();
                const int type = setting.defaultValue.userType();
                fields.append(type == QMetaType::QString   ? texts.at(place)
                                  : type == QMetaType::Int ? numbers.at(place)
                                                           : QVariant(place % 2 == 0));
            }
            samples.append({step->typeId(), fields});
        }
    }
    return samples;
}

void addSampleRows()
{
    QTest::addColumn<QString>("typeId");
    QTest::addColumn<QVariantList>("fields");
    for (const Sample &sample : samples())
        QTest::addRow("%s, %s", qPrintable(sample.typeId), qPrintable(shown(sample.fields)))
            << sample.typeId << sample.fields;
}
} // namespace

class TestRecords : public QObject
{
    Q_OBJECT

private slots:
    void literalBytes_data();
    void literalBytes();
    void layout_data();
    void layout();
    void loadingReplacesEverySetting_data();
    void loadingReplacesEverySetting();
    void truncated_data();
    void truncated();
    void randomBytes_data();
    void randomBytes();
    void recordsInARow();
    void streamsStayAsTheyAreSet_data();
    void streamsStayAsTheyAreSet();
};

void TestRecords::literalBytes_data()
{
    QTest::addColumn<QString>("typeId");
    QTest::addColumn<QVariantList>("fields");
    QTest::addColumn<QDataStream::ByteOrder>("byteOrder");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("three texts, big endian")
        << "list.add" << QVariantList{"n", QString("表"), ""} << QDataStream::BigEndian
        << QByteArray::fromHex("01020304 00000002 006e 00000002 8868 00000000");
    QTest::newRow("three texts, little endian")
        << "list.merge" << QVariantList{"n", QString("表"), ""} << QDataStream::LittleEndian
        << QByteArray::fromHex("04030201 02000000 6e00 02000000 6888 00000000");
    QTest::newRow("remove, big endian")
        << "list.remove" << QVariantList{"n", 1, QString(), "v"} << QDataStream::BigEndian
        << QByteArray::fromHex("01020304 00000002 006e 00000001 ffffffff 00000002 0076");
    QTest::newRow("remove, little endian, mode -2")
        << "list.remove" << QVariantList{"n", -2, QString(), "v"} << QDataStream::LittleEndian
        << QByteArray::fromHex("04030201 02000000 6e00 feffffff ffffffff 02000000 7600");
    QTest::newRow("one text") << "list.dedup" << QVariantList{"ab"} << QDataStream::BigEndian
                              << QByteArray::fromHex("01020304 00000004 00610062");
    QTest::newRow("ascending") << "list.sort" << QVariantList{"n", true} << QDataStream::BigEndian
                               << QByteArray::fromHex("01020304 00000002 006e 01");
    QTest::newRow("descending") << "list.sort" << QVariantList{"n", false} << QDataStream::LittleEndian
                                << QByteArray::fromHex("04030201 02000000 6e00 00");
}

void TestRecords::literalBytes()
{
    QFETCH(QString, typeId);
    QFETCH(QVariantList, fields);
    QFETCH(QDataStream::ByteOrder, byteOrder);
    QFETCH(QByteArray, bytes);
    const StepPointer step = stepWith(typeId, fields);
    for (const Format &format : formats) {
        if (format.byteOrder == byteOrder)
            QCOMPARE(recordOf(*step, format).toHex(' '), bytes.toHex(' '));
    }
}

void TestRecords::layout_data()
{
    addSampleRows();
}

void TestRecords::layout()
{
    QFETCH(QString, typeId);
    QFETCH(QVariantList, fields);
    QVERIFY2(!fields.isEmpty(), "no settings in tests/support/StepTable.cpp");
    const StepPointer step = stepWith(typeId, fields);
    for (const Format &format : formats) {
        const QByteArray expected = encodedRecord(fields, format.byteOrder);
        QCOMPARE(recordOf(*step, format).toHex(' '), expected.toHex(' '));

        const StepPointer loaded = newStep(typeId);
        QCOMPARE(load(*loaded, expected, format), QDataStream::Ok);
        QCOMPARE(shown(fieldsOf(*loaded)), shown(fields));
        QCOMPARE(recordOf(*loaded, format).toHex(' '), expected.toHex(' '));
    }
}

void TestRecords::loadingReplacesEverySetting_data()
{
    addSampleRows();
}

void TestRecords::loadingReplacesEverySetting()
{
    QFETCH(QString, typeId);
    QFETCH(QVariantList, fields);
    const Format &format = formats[0];
    const StepPointer step = stepWith(typeId, fields);
    const StepPointer blank = newStep(typeId);
    QCOMPARE(load(*step, recordOf(*blank, format), format), QDataStream::Ok);
    QCOMPARE(shown(fieldsOf(*step)), shown(fieldsOf(*blank)));
    QCOMPARE(recordOf(*step, format).toHex(' '), recordOf(*blank, format).toHex(' '));
}

void TestRecords::truncated_data()
{
    addSampleRows();
}

void TestRecords::truncated()
{
    QFETCH(QString, typeId);
    QFETCH(QVariantList, fields);
    for (const Format &format : formats) {
        const QByteArray whole = encodedRecord(fields, format.byteOrder);
        for (int length = 0; length < whole.size(); ++length) {
            const StepPointer step = stepWith(typeId, fields);
            QCOMPARE(load(*step, whole.left(length), format), QDataStream::ReadPastEnd);

            int end = 4;
            const QVariantList loaded = fieldsOf(*step);
            for (int i = 0; i < fields.size(); ++i) {
                end += encoded(fields.at(i), format.byteOrder).size();
                if (end <= length) {
                    QCOMPARE(shown(loaded.at(i)), shown(fields.at(i)));
                    continue;
                }
                QCOMPARE(loaded.at(i).userType(), fields.at(i).userType());
                QVERIFY(loaded.at(i) == QVariant(fields.at(i).userType(), nullptr));
            }
            const QByteArray base = encodedInteger(length < 4 ? 0u : baseState, format.byteOrder);
            QCOMPARE(recordOf(*step, format).left(4), base);
        }
    }
}

void TestRecords::randomBytes_data()
{
    QTest::addColumn<QString>("typeId");
    for (const StepPointer &step : newStepOfEachKind())
        QTest::newRow(step->typeId().toUtf8()) << step->typeId();
}

// Whatever is loaded can be saved and loads back as it is.
void TestRecords::randomBytes()
{
    QFETCH(QString, typeId);
    QRandomGenerator random(20150);
    for (int round = 0; round < 500; ++round) {
        const Format &format = formats[round % int(std::size(formats))];
        QByteArray bytes(random.bounded(80), '\0');
        for (char &byte : bytes) // small numbers make plausible lengths
            byte = char(random.bounded(4) ? random.bounded(8) : random.bounded(256));
        const StepPointer step = newStep(typeId);
        load(*step, bytes, format);

        const QByteArray record = recordOf(*step, format);
        const StepPointer again = newStep(typeId);
        QCOMPARE(load(*again, record, format), QDataStream::Ok);
        QCOMPARE(shown(fieldsOf(*again)), shown(fieldsOf(*step)));
        QCOMPARE(recordOf(*again, format), record);
    }
}

void TestRecords::recordsInARow()
{
    for (const Format &format : formats) {
        QByteArray bytes;
        QDataStream writer(&bytes, QIODevice::WriteOnly);
        writer.setVersion(format.version);
        writer.setByteOrder(format.byteOrder);
        for (const Sample &sample : samples())
            stepWith(sample.typeId, sample.fields)->saveOperation(writer);

        QDataStream reader(bytes);
        reader.setVersion(format.version);
        reader.setByteOrder(format.byteOrder);
        for (const Sample &sample : samples()) {
            const StepPointer step = newStep(sample.typeId);
            step->loadOperation(reader);
            QCOMPARE(shown(fieldsOf(*step)), shown(sample.fields));
        }
        QVERIFY(reader.atEnd());
        QCOMPARE(reader.status(), QDataStream::Ok);
    }
}

void TestRecords::streamsStayAsTheyAreSet_data()
{
    addSampleRows();
}

void TestRecords::streamsStayAsTheyAreSet()
{
    QFETCH(QString, typeId);
    QFETCH(QVariantList, fields);
    const StepPointer step = stepWith(typeId, fields);
    for (const Format &format : formats) {
        for (const auto precision : {QDataStream::SinglePrecision, QDataStream::DoublePrecision}) {
            QBuffer buffer;
            QVERIFY(buffer.open(QIODevice::ReadWrite));
            QDataStream stream(&buffer);
            stream.setVersion(format.version);
            stream.setByteOrder(format.byteOrder);
            stream.setFloatingPointPrecision(precision);
            const auto isAsSet = [&] {
                return stream.version() == format.version && stream.byteOrder() == format.byteOrder
                    && stream.floatingPointPrecision() == precision && stream.status() == QDataStream::Ok;
            };
            step->saveOperation(stream);
            QVERIFY2(isAsSet(), format.name);
            QVERIFY(buffer.seek(0));
            step->loadOperation(stream);
            QVERIFY2(isAsSet(), format.name);
        }
    }
}

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
