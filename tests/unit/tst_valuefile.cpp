#include "host/values/ItemValue.h"
#include "host/values/ValueFile.h"

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
    void errorsChangeNothing_data();
    void errorsChangeNothing();
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
    QVariantList result;
    QCOMPARE(ValueFile::readList(writeTemporary(folder, name, content), result), QString());
    QCOMPARE(result, list);

    const QString copy = folder.filePath("copy-" + name);
    QCOMPARE(ValueFile::writeList(copy, list), QString());
    QVariantList back;
    QCOMPARE(ValueFile::readList(copy, back), QString());
    QCOMPARE(back, list);
}

void TestValueFile::tables()
{
    const QTemporaryDir folder;
    const QVariantList rows{QVariant(QVariantList{"a", "b,c"}), QVariant(QVariantList{"1"})};
    QCOMPARE(ValueFile::writeTable(folder.filePath("t.csv"), rows), QString());
    QVariantList back;
    QCOMPARE(ValueFile::readTable(folder.filePath("t.csv"), back), QString());
    QVERIFY(ItemValue::same(back, rows));
    QCOMPARE(ValueFile::readTable(writeTemporary(folder, "t.txt", "a,b\nc\n"), back), QString());
    QVERIFY(
        ItemValue::same(back, QVariantList({QVariant(QVariantList{"a,b"}), QVariant(QVariantList{"c"})})));
}

void TestValueFile::errorsChangeNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("missing") << QString() << QByteArray();
    QTest::newRow("no UTF-8") << "a.txt" << QByteArray("a\n\xFF\n");
    QTest::newRow("no UTF-8 in CSV") << "a.csv" << QByteArray("a\n\xFF\n");
    QTest::newRow("broken CSV") << "a.csv" << QByteArray("\"a\n");
}

void TestValueFile::errorsChangeNothing()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    const QTemporaryDir folder;
    const QString fileName =
        name.isEmpty() ? folder.filePath("missing.txt") : writeTemporary(folder, name, content);
    QVariantList list{"untouched"};
    QVERIFY(ValueFile::readList(fileName, list).contains(QFileInfo(fileName).fileName()));
    QVERIFY(ValueFile::readTable(fileName, list).contains(QFileInfo(fileName).fileName()));
    QCOMPARE(list, QVariantList{"untouched"});
}

void TestValueFile::refusesLineBreaks()
{
    const QTemporaryDir folder;
    const QString fileName = writeTemporary(folder, "a.txt", "old");
    QVERIFY(ValueFile::writeList(fileName, {"a", "b\nc"}).contains("1"));
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("old"));
    QVERIFY(!ValueFile::writeList(folder.filePath("no folder/a.txt"), {"a"}).isEmpty());
}

QTEST_GUILESS_MAIN(TestValueFile)
#include "tst_valuefile.moc"
