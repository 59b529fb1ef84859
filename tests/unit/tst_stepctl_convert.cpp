#include "tests/support/StepctlFolder.h"

#include <QDir>
#include <QtTest>

#include <memory>

namespace
{
// As stepctl itself writes it.
const char cleanScript[] = R"({
  "variables": [
    {"name": "names", "type": "list", "value": ["李雷", 1, 1.0, null, {"$qlonglong": 1}]}
  ],
  "steps": [
    {"type": "list.dedup", "targetVar": "names"},
    {"type": "list.sort", "enabled": false, "targetVar": "names", "ascending": false}
  ]
}
)";
} // namespace

class TestStepctlConvert : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void convertsThereAndBack();
    void convertsStreams();
    void keepsTheFormWhenAsked();
    void replacesTheInput();
    void runsTheBinaryForm();
    void refuses_data();
    void refuses();
    void explainsItself();

private:
    Run run(const QStringList &arguments, const QByteArray &input = QByteArray())
    {
        return m_folder->run(arguments, input);
    }

    std::unique_ptr<StepctlFolder> m_folder;
};

void TestStepctlConvert::init()
{
    m_folder = std::make_unique<StepctlFolder>();
    m_folder->write("clean.json", cleanScript);
}

void TestStepctlConvert::convertsThereAndBack()
{
    const Run there = run({"convert", "clean.json", "clean.qms"});
    QCOMPARE(there.errors, QString());
    QCOMPARE(there.output, QString());
    QCOMPARE(there.status, 0);
    QVERIFY(m_folder->contentOf("clean.qms").startsWith("\x89QMS\r\n"));
    const Run back = run({"convert", "clean.qms", "again.json"});
    QCOMPARE(back.errors, QString());
    QCOMPARE(back.status, 0);
    QCOMPARE(m_folder->contentOf("again.json"), QByteArray(cleanScript));
}

void TestStepctlConvert::convertsStreams()
{
    QCOMPARE(run({"convert", "-", "clean.qms"}, cleanScript).status, 0);
    const Run back = run({"convert", "-", "-", "--to", "json"}, m_folder->contentOf("clean.qms"));
    QCOMPARE(back.errors, QString());
    QCOMPARE(back.output, QString::fromUtf8(cleanScript));
}

void TestStepctlConvert::keepsTheFormWhenAsked()
{
    QCOMPARE(run({"convert", "clean.json", "odd.json", "--to", "binary"}).status, 0);
    QVERIFY(m_folder->contentOf("odd.json").startsWith("\x89QMS\r\n"));
    // The content, not the name, tells the form of the input.
    QCOMPARE(run({"convert", "odd.json", "even.json"}).status, 0);
    QCOMPARE(m_folder->contentOf("even.json"), QByteArray(cleanScript));
}

void TestStepctlConvert::replacesTheInput()
{
    QCOMPARE(run({"convert", "clean.json", "clean.json", "--to", "binary"}).status, 0);
    QVERIFY(m_folder->contentOf("clean.json").startsWith("\x89QMS\r\n"));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList("clean.json"));
}

void TestStepctlConvert::runsTheBinaryForm()
{
    QCOMPARE(run({"convert", "clean.json", "clean.qms"}).status, 0);
    const Run fromJson = run({"run", "clean.json", "--format", "json"});
    const Run fromBinary = run({"run", "clean.qms", "--format", "json"});
    QCOMPARE(fromBinary.errors, QString());
    QVERIFY2(fromBinary.output.contains(QString::fromUtf8("\"value\": [\"李雷\", 1, null]")),
             qPrintable(fromBinary.output));
    QCOMPARE(fromBinary.output, fromJson.output);
}

void TestStepctlConvert::refuses_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QStringList &arguments, const char *error) {
        QTest::newRow(name) << arguments << error;
    };
    row("no output", {"convert", "clean.json"}, "out");
    row("unknown form", {"convert", "clean.json", "out.json", "--to", "xml"}, "xml");
    row("name without form", {"convert", "clean.json", "out.txt"},
        "stepctl: out.txt: the name tells no form; end it in .json or .qms, or give --to\n");
    row("standard output without form", {"convert", "clean.json", "-"},
        "stepctl: -: the name tells no form; end it in .json or .qms, or give --to\n");
    row("missing input", {"convert", "missing.json", "out.json"}, "stepctl: missing.json: ");
    row("bad JSON", {"convert", "bad.json", "out.json"}, "stepctl: bad.json: line 1, column 1: ");
    row("cut off", {"convert", "cut.qms", "out.json"},
        "stepctl: cut.qms: offset 10: the content should have ");
    row("damaged", {"convert", "damaged.qms", "out.json"},
        "stepctl: damaged.qms: offset 14: the checksum is not that of the content; the file is damaged\n");
    row("newer", {"convert", "newer.qms", "out.json"},
        "stepctl: newer.qms: offset 8: the form has version 258, this program knows version 1\n");
    row("missing plug-in", {"convert", "clean.json", "out.json", "--plugin", "none.so"}, "none.so");
    row("no such folder", {"convert", "clean.json", "none/out.json"},
        "stepctl: none/out.json cannot be written: ");
    row("run what is damaged", {"run", "damaged.qms"}, "stepctl: damaged.qms: offset 14: ");
}

void TestStepctlConvert::refuses()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    m_folder->write("bad.json", "{");
    QCOMPARE(run({"convert", "clean.json", "clean.qms"}).status, 0);
    const QByteArray bytes = m_folder->contentOf("clean.qms");
    m_folder->write("cut.qms", bytes.left(bytes.size() - 1));
    m_folder->write("damaged.qms", QByteArray(bytes).replace("list.sort", "list.tort"));
    m_folder->write("newer.qms", QByteArray(bytes).replace(8, 2, "\x01\x02"));
    m_folder->write("out.json", "as it was");
    const Run result = run(arguments);
    QCOMPARE(result.status, 2);
    QVERIFY2(result.errors.contains(error), qPrintable(result.errors));
    QCOMPARE(result.output, QString());
    QCOMPARE(m_folder->contentOf("out.json"), QByteArray("as it was"));
}

void TestStepctlConvert::explainsItself()
{
    const Run help = run({"convert", "--help"});
    QCOMPARE(help.status, 0);
    QVERIFY2(help.output.contains("stepctl convert clean.json clean.qms"), qPrintable(help.output));
}

QTEST_GUILESS_MAIN(TestStepctlConvert)
#include "tst_stepctl_convert.moc"
