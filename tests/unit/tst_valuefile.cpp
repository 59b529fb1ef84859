#include "host/files/ValueFile.h"
#include "host/files/ValueImport.h"
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
    void tables_data();
    void tables();
    void options_data();
    void options();
    void appends();
    void refusesFiles_data();
    void refusesFiles();
    void refusesOptions_data();
    void refusesOptions();
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
    QTest::newRow("CSV") << "a.CSV" << QByteArray("\"b,c\"\nd\n") << QVariantList{"b,c", "d"};
    QTest::newRow("CSV with byte order mark")
        << "a.csv" << QByteArray("\xEF\xBB\xBF\"a\"\n") << QVariantList{"a"};
    QTest::newRow("TSV") << "a.tsv" << QByteArray("a,b\n") << QVariantList{"a,b"};
    QTest::newRow("empty") << "a.txt" << QByteArray() << QVariantList{};
}

void TestValueFile::lists()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QVariantList, list);
    const QTemporaryDir folder;
    const auto result = importFile(writeTemporary(folder, name, content), VarType::List);
    QVERIFY2(result, qPrintable(errorOf(result)));
    QCOMPARE(*result, list);

    const QString copy = folder.filePath("copy-" + name);
    QVERIFY(writeList(copy, list));
    const auto back = importFile(copy, VarType::List);
    QVERIFY2(back, qPrintable(errorOf(back)));
    QCOMPARE(*back, list);
}

void TestValueFile::tables_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("CSV") << "t.csv" << QByteArray("a,\"b,c\"\n1\n");
    QTest::newRow("TSV") << "t.tsv" << QByteArray("a\tb,c\n1\n");
    QTest::newRow("text") << "t.txt" << QByteArray("a\tb,c\n1\n");
    QTest::newRow("JSON") << "t.json" << QByteArray("[[\"a\", \"b,c\"], [\"1\"]]\n");
}

void TestValueFile::tables()
{
    QFETCH(QString, name);
    const QTemporaryDir folder;
    const QVariantList rows{QVariant(QVariantList{"a", "b,c"}), QVariant(QVariantList{"1"})};
    const QString fileName = folder.filePath(name);
    QCOMPARE(errorOf(writeTable(fileName, rows)), QString());
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QTEST(file.readAll(), "content");
    if (!holdsRows(name))
        return;
    const auto back = importFile(fileName, VarType::Table);
    QVERIFY2(back, qPrintable(errorOf(back)));
    QVERIFY(ItemValue::same(*back, rows));
}

void TestValueFile::options_data()
{
    QTest::addColumn<bool>("isTable");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("options");
    QTest::addColumn<QVariantList>("value");
    const auto list = [](const char *options, const QByteArray &content, const QVariantList &value) {
        QTest::newRow(options) << false << content << options << value;
    };
    const auto table = [](const QVector<QVariantList> &rows) {
        QVariantList value;
        for (const QVariantList &row : rows)
            value.append(QVariant(row));
        return value;
    };
    list("as=cells", "a,b\nc\n", {"a", "b", "c"});
    list("as=rows", "a,b\nc\n", table({{"a", "b"}, {"c"}}));
    list("as=column:2", "a,b\nc\nd,e,f\n", {"b", "e"});
    list("as=lines", "a,b\nc\n", {"a,b", "c"});
    list("header", "a\nb\n", {"b"});
    list("header,as=lines", "a\nb\n", {"b"});
    list("separator=semicolon,as=cells", "a,b;c\n", {"a,b", "c"});
    list("separator=tab,quotes=none,as=cells", "\"a\tb\n", {"\"a", "b"});
    list("quotes=single,as=cells", "'a,b',c\n", {"a,b", "c"});
    list("encoding=gb18030", "\xC0\xEE\n", {"李"});
    list("encoding=latin-1", "caf\xE9\n", {"café"});
    list("types=auto", "1\n-2\n\n9999999999\n", {1, -2, QVariant(), 9999999999LL});
    list("types=auto,header", "n\n1\n2.50\n", {1.0, 2.5});
    list("types=auto,as=lines", "true\nFALSE\n", {true, false});
    list("types=int,as=cells", "1, 2\n", {1, 2});
    list("types=auto,as=rows", "007,1,x,true\n8,2,,\n",
         table({{"007", 1, "x", true}, {"8", 2, "", QVariant()}}));
    list("types=text+double,as=rows", "1,2,3\n", table({{"1", 2.0, 3.0}}));
    list("types=auto+text,as=column:2", "1,2\n", {"2"});
    for (const char *kept : {"+5", "00", "-0", "1e", "1.", ".5", "0x10", "1234567890123456789012",
                             "0.1234567890123456", "1,5", " 1", "nan", "yes"})
        QTest::newRow(kept) << false << QByteArray("\"").append(kept).append('"') << "types=auto"
                            << QVariantList{kept};
    QTest::newRow("table") << true << QByteArray("a;1\n") << "separator=semicolon,types=auto"
                           << table({{"a", 1}});
    QTest::newRow("table of lines") << true << QByteArray("a,b\n") << "as=lines" << table({{"a,b"}});
}

void TestValueFile::options()
{
    QFETCH(bool, isTable);
    QFETCH(QByteArray, content);
    QFETCH(QString, options);
    QFETCH(QVariantList, value);
    const QTemporaryDir folder;
    const auto result = importFile(writeTemporary(folder, "a.csv", content),
                                   isTable ? VarType::Table : VarType::List, options);
    QVERIFY2(result, qPrintable(errorOf(result)));
    QVERIFY2(ItemValue::same(*result, value), qPrintable(ItemValue::summary(*result)));
}

void TestValueFile::appends()
{
    const QTemporaryDir folder;
    const QString fileName = writeTemporary(folder, "a.txt", "b\n");
    QCOMPARE(importFile(fileName, VarType::List, "append", {"a"}).value_or(QVariantList()),
             QVariantList({"a", "b"}));
    QCOMPARE(importFile(fileName, VarType::List, QString(), {"a"}).value_or(QVariantList()),
             QVariantList({"b"}));
}

void TestValueFile::refusesFiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const QByteArray &content, const char *options,
                        const char *reason) {
        QTest::newRow(reason) << name << content << options << reason;
    };
    QTest::newRow("missing") << QString() << QByteArray() << QString() << "";
    row("a.txt", "a\nb\xFF\n", "",
        "line 2, character 2 is not UTF-8 text; it looks like Latin-1: choose the encoding, as with "
        "encoding=latin-1");
    row("a.csv", "\xC0\xEE", "",
        "line 1, character 1 is not UTF-8 text; it looks like GB18030: choose the encoding, as with "
        "encoding=gb18030");
    row("a.txt", QByteArray("a\0\n\0", 4), "",
        "it looks like UTF-16: choose the encoding, as with encoding=utf-16");
    row("a.txt", "a\n\xFF\n", "encoding=utf-8", "line 2, character 1 is not UTF-8 text");
    row("a.csv", "a\nb,\"c\n", "as=cells",
        "line 2, column 2: the quotation mark that opens here is never closed");
    row("a.csv", "a\nb,c,d\n", "header",
        "row 2 has 3 columns; choose what a list takes of them: all cells, the rows, or one column "
        "(as=cells, "
        "as=rows, as=column:1)");
    row("a.csv", "n,m\n1,x\n", "header,types=int,as=rows",
        "row 2, column 2: “x” is not an integer between "
        "-9223372036854775808 and 9223372036854775807");
}

void TestValueFile::refusesFiles()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, options);
    QFETCH(QString, reason);
    const QTemporaryDir folder;
    const QString fileName =
        name.isEmpty() ? folder.filePath("missing.txt") : writeTemporary(folder, name, content);
    const QString error = errorOf(importFile(fileName, VarType::List, options));
    QVERIFY2(error.startsWith(fileName + ": ") && error.endsWith(": " + reason) == !reason.isEmpty(),
             qPrintable(error));
}

void TestValueFile::refusesOptions_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *options, const char *error) {
        QTest::newRow(options) << options << error;
    };
    row("rows",
        R"(there is no option "rows"; there are "encoding=", "separator=", "quotes=", "as=", "types=", "header", "append")");
    row("header=1", R"(there is no option "header="; did you mean "header"? There are)");
    row("encoding=big5", R"(there is no encoding "big5"; there are "utf-8", "gb18030", "utf-16", "latin-1")");
    row("header,separator=;",
        R"(there is no choice for separator= ";"; there are "comma", "semicolon", "tab", "bar", "space")");
    row("quotes=no", R"(there is no choice for quotes= "no"; there are "double", "single", "none")");
    row("as=list", R"(there is no choice for as= "list"; there are "lines", "cells", "rows", "column:1")");
    row("as=column:0", R"("column:0" should have the number of a column behind it, counted from 1)");
    row("types=int+date",
        R"(there is no choice for types= "date"; there are "text", "auto", "int", "double", "bool")");
}

void TestValueFile::refusesOptions()
{
    QFETCH(QString, options);
    QFETCH(QString, error);
    const QString told = errorOf(chosenForm(options, ImportForm()));
    QVERIFY2(told.startsWith(error), qPrintable(told));
}

void TestValueFile::refusesLineBreaks()
{
    const QTemporaryDir folder;
    const QString fileName = writeTemporary(folder, "a.txt", "old");
    const auto written = writeList(fileName, {"a", "b\nc"});
    QVERIFY(!written);
    QVERIFY(written.error().contains("1"));
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("old"));
    const QString missing = folder.filePath("no folder/a.txt");
    const auto nowhere = writeList(missing, {"a"});
    QVERIFY(!nowhere);
    QVERIFY(nowhere.error().startsWith(QDir::toNativeSeparators(missing) + ": "));
}

QTEST_GUILESS_MAIN(TestValueFile)
#include "tst_valuefile.moc"
