#include "host/files/ValueFile.h"
#include "host/values/ItemValue.h"
#include "tests/support/ErrorOf.h"

#include <QtTest>

using namespace StepHost;

namespace
{
QString writeTemporary(const QTemporaryDir &folder, const QString &name, const QByteArray &content)
{
    QFile file(folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly))
        return QString();
    file.write(content);
    return file.fileName();
}
} // namespace

class TestValueFile : public QObject
{
    Q_OBJECT

private slots:
    void lists_data();
    void lists();
    void tables();
    void refusesFiles_data();
    void refusesFiles();
    void refusesLineBreaks();
};

void TestValueFile::lists_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QVariantList>("list");
    QTest::newRow("lines") << "a.txt" << QByteArray("007\n\xE5\x90\x8D\n\nlast")
                           << QVariantList{"007", "名", "", "last"};
    QTest::newRow("byte order mark") << "a.txt"
                                     << QByteArray("\xEF\xBB\xBF"
                                                   "a\r\nb\r\n")
                                     << QVariantList{"a", "b"};
    QTest::newRow("CSV") << "a.CSV" << QByteArray("a,\"b,c\"\nd\n") << QVariantList{"a", "b,c", "d"};
    QTest::newRow("CSV with byte order mark")
        << "a.csv" << QByteArray("\xEF\xBB\xBF\"a\"\n") << QVariantList{"a"};
    QTest::newRow("empty") << "a.txt" << QByteArray() << QVariantList{};
}

void TestValueFile::lists()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QVariantList, list);
    const QTemporaryDir folder;
    const auto result = ValueFile::readList(writeTemporary(folder, name, content));
    QVERIFY2(result, qPrintable(errorOf(result)));
    QCOMPARE(*result, list);

    const QString copy = folder.filePath("copy-" + name);
    QVERIFY(ValueFile::writeList(copy, list));
    const auto back = ValueFile::readList(copy);
    QVERIFY2(back, qPrintable(errorOf(back)));
    QCOMPARE(*back, list);
}

void TestValueFile::tables()
{
    const QTemporaryDir folder;
    const QVariantList rows{QVariant(QVariantList{"a", "b,c"}), QVariant(QVariantList{"1"})};
    QVERIFY(ValueFile::writeTable(folder.filePath("t.csv"), rows));
    const auto back = ValueFile::readTable(folder.filePath("t.csv"));
    QVERIFY2(back, qPrintable(errorOf(back)));
    QVERIFY(ItemValue::same(*back, rows));
    const auto lines = ValueFile::readTable(writeTemporary(folder, "t.txt", "a,b\nc\n"));
    QVERIFY2(lines, qPrintable(errorOf(lines)));
    QVERIFY(
        ItemValue::same(*lines, QVariantList({QVariant(QVariantList{"a,b"}), QVariant(QVariantList{"c"})})));
}

void TestValueFile::refusesFiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing") << QString() << QByteArray() << "";
    QTest::newRow("no UTF-8") << "a.txt" << QByteArray("a\n\xFF\n") << "line 2 is not UTF-8 text";
    QTest::newRow("no UTF-8 in CSV") << "a.csv" << QByteArray("a\n\xFF\n") << "line 2 is not UTF-8 text";
    QTest::newRow("broken CSV") << "a.csv" << QByteArray("\"a\n")
                                << "line 1: the quotation mark that opens here is never closed";
}

void TestValueFile::refusesFiles()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    const QTemporaryDir folder;
    const QString fileName =
        name.isEmpty() ? folder.filePath("missing.txt") : writeTemporary(folder, name, content);
    for (const auto &result : {ValueFile::readList(fileName), ValueFile::readTable(fileName)}) {
        QVERIFY(!result);
        QVERIFY2(result.error().startsWith(fileName + ": " + reason), qPrintable(result.error()));
    }
}

void TestValueFile::refusesLineBreaks()
{
    const QTemporaryDir folder;
    const QString fileName = writeTemporary(folder, "a.txt", "old");
    const auto written = ValueFile::writeList(fileName, {"a", "b\nc"});
    QVERIFY(!written);
    QVERIFY(written.error().contains("1"));
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("old"));
    const QString missing = folder.filePath("no folder/a.txt");
    const auto nowhere = ValueFile::writeList(missing, {"a"});
    QVERIFY(!nowhere);
    QVERIFY(nowhere.error().startsWith(QDir::toNativeSeparators(missing) + ": "));
}

QTEST_GUILESS_MAIN(TestValueFile)
#include "tst_valuefile.moc"
