#include "host/skeleton/PluginSkeleton.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TestPaths.h"

#include <QDir>
#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace StepHost;

Q_DECLARE_METATYPE(PluginSkeleton)

namespace
{
// Whatever line ends the tree was checked out with.
QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll().replace("\r\n", "\n") : QByteArray();
}

QStringList filesBelow(const QString &folder)
{
    QStringList files;
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        files.append(QDir(folder).relativeFilePath(it.next()));
    files.sort();
    return files;
}

QStringList sorted(QStringList texts)
{
    texts.sort();
    return texts;
}
} // namespace

class TestPluginSkeleton : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void writesWhatTheExampleBeganAs_data();
    void writesWhatTheExampleBeganAs();
    void derivesNames_data();
    void derivesNames();
    void fillsAllMarks();
    void refusesNames_data();
    void refusesNames();
    void keepsWhatIsThere();
    void refusesMissingParent();

private:
    QString path(const char *name) const
    {
        return m_folder->filePath(QLatin1String(name));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestPluginSkeleton::init()
{
    m_folder.reset(new QTemporaryDir);
    QVERIFY(m_folder->isValid());
}

void TestPluginSkeleton::writesWhatTheExampleBeganAs_data()
{
    QTest::addColumn<QString>("file");
    // The files that the example has not filled in.
    for (const char *file : {"CMakeLists.txt", "CMakePresets.json", "TextSteps.h", "TextSteps.qrc"})
        QTest::newRow(file) << file;
}

void TestPluginSkeleton::writesWhatTheExampleBeganAs()
{
    QFETCH(QString, file);
    PluginSkeleton skeleton;
    skeleton.category = "文本";
    skeleton.steps = {{"join", "文本拼接"}, {"split", "文本拆分"}};
    const Result<QStringList> result = writePluginSkeleton(skeleton, path("text-steps"));
    QVERIFY2(result, qPrintable(errorOf(result)));
    const QByteArray expected = contentOf(TestPaths::source("examples/plugin/" + file));
    QVERIFY(!expected.isEmpty());
    QCOMPARE(contentOf(path("text-steps/") + file), expected);
}

void TestPluginSkeleton::derivesNames_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<PluginSkeleton>("skeleton");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("text");

    const auto row = [](const char *folder, const PluginSkeleton &skeleton, const char *file,
                        const char *text) {
        QTest::addRow("%s: %s", folder, text) << folder << skeleton << file << QByteArray(text);
    };
    const PluginSkeleton empty;
    row("text-steps", empty, "CMakeLists.txt", "project(TextSteps ");
    row("text_steps.2", empty, "CMakeLists.txt", "project(TextSteps2 ");
    row("TextSteps", empty, "tests/tst_textsteps.cpp", "class TestTextSteps :");
    row("text-steps", empty, "TextSteps.cpp", "\"com.example.TextSteps\"");
    row("text-steps", empty, "TextSteps.cpp", "\"text.\"");
    row("text-steps", empty, "TextSetOperation.cpp", "tr(\"Text\")");
    row("text-steps", empty, "TextSetOperation.cpp", "tr(\"Text set\")");
    row("CSVSteps", empty, "CsvSetOperation.cpp", "\"csv.set\"");

    PluginSkeleton given;
    given.name = "Numbers";
    given.pluginId = "org.example.numbers";
    given.prefix = "num";
    given.category = "数字";
    given.steps = {{"add", "加"}, {"half", ""}};
    row("x", given, "CMakeLists.txt", "project(Numbers ");
    row("x", given, "Numbers.cpp", "\"org.example.numbers\"");
    row("x", given, "Numbers.cpp", "(QLatin1String(\"num.half\"), 10)");
    row("x", given, "Numbers.cpp", "tr(\"数字插件\")");
    row("x", given, "Numbers.cpp", "categoryOrder.insert(NumAddOperation().root(), ");
    row("x", given, "NumHalfOperation.cpp", "tr(\"数字\")");
    row("x", given, "NumHalfOperation.cpp", "tr(\"把 %1 写入 %2\")");
    row("x", given, "NumAddOperation.cpp", "tr(\"加\")");
    row("x", given, "NumHalfOperation.cpp", "tr(\"Num half\")");
    row("x", given, "images/num_half.svg", "<svg ");

    PluginSkeleton english;
    english.language = SkeletonLanguage::English;
    row("text-steps", english, "TextSteps.cpp", "tr(\"Text steps\")");
    row("text-steps", english, "TextSetOperation.h", "(\"prop_targetVar\", \"Target variable\")");
    row("text-steps", english, "TextSetOperation.cpp", "\"is no text variable, skipped\"");
    row("text-steps", english, "scripts/example.json", "\"hello\"");
}

void TestPluginSkeleton::derivesNames()
{
    QFETCH(QString, folder);
    QFETCH(PluginSkeleton, skeleton);
    QFETCH(QString, file);
    QFETCH(QByteArray, text);
    const Result<QStringList> result = writePluginSkeleton(skeleton, m_folder->filePath(folder));
    QVERIFY2(result, qPrintable(errorOf(result)));
    QVERIFY2(result->contains(file), qPrintable(result->join(' ')));
    const QByteArray content = contentOf(m_folder->filePath(folder) + '/' + file);
    QVERIFY2(content.contains(text), content.constData());
}

void TestPluginSkeleton::fillsAllMarks()
{
    const Result<QStringList> result = writePluginSkeleton(PluginSkeleton(), path("new-steps"));
    QVERIFY2(result, qPrintable(errorOf(result)));
    const QString folder = path("new-steps");
    QCOMPARE(filesBelow(folder), sorted(*result));
    const QRegularExpression mark("@\\w+@");
    for (const QString &file : *result) {
        QVERIFY2(!file.contains('@'), qPrintable(file));
        const QString content = contentOf(folder + '/' + file);
        QVERIFY2(!content.isEmpty() && !content.contains(mark), qPrintable(file));
    }
    QCOMPARE(filesBelow(m_folder->path()).size(), result->size());
}

void TestPluginSkeleton::refusesNames_data()
{
    QTest::addColumn<PluginSkeleton>("skeleton");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *name, PluginSkeleton skeleton, const char *error) {
        QTest::newRow(name) << skeleton << error;
    };
    const QVector<SkeletonStep> none;
    row("small letter", {"text", "", "", "", none},
        "the name \"text\" should be a capital letter, then letters and digits, such as \"TextSteps\"");
    row("blank in the name", {"Text Steps", "", "", "", none},
        "the name \"Text Steps\" should be a capital letter, then letters and digits, such as \"TextSteps\"");
    row("line end in the name", {"TextSteps\n", "", "", "", none},
        "the name \"TextSteps\\u000a\" should be a capital letter, then letters and digits, such as "
        "\"TextSteps\"");
    for (const char *name : {"QObject", "QtSteps", "Qt", "QSteps"}) {
        QTest::addRow("Qt's: %s", name)
            << PluginSkeleton{name, "", "text", "", none}
            << QString("the name \"%1\" begins as Qt's own names do; choose another, such as \"TextSteps\"")
                   .arg(name);
    }
    for (const char *name :
         {"Operation", "IOperationPlugin", "OperationCore", "OperationKit", "ValueRef", "VariableScope",
          "VarType", "PluginManifest", "IEditorRegistry", "ListOperPlugin"}) {
        QTest::addRow("the host's: %s", name)
            << PluginSkeleton{name, "", "text", "", none}
            << QString("the name \"%1\" is one of the host's own; choose another, such as \"TextSteps\"")
                   .arg(name);
    }
    for (const char *name : {"EOF", "NULL", "NAN", "X", "SIGINT"}) {
        QTest::addRow("a macro's: %s", name)
            << PluginSkeleton{name, "", "text", "", none}
            << QString("the name \"%1\" may be a macro's, which are in capitals; "
                       "give it a small letter, such as \"CsvSteps\"")
                   .arg(name);
    }
    row("a target of CTest", {"NightlyTest", "", "", "", none},
        "the name \"NightlyTest\" begins as targets of CTest do; choose another, such as \"TextSteps\"");
    row("a device of Windows", {"Com1", "", "", "", none},
        "the name \"Com1\" is that of a device, which Windows has no files of; choose another, such as "
        "\"TextSteps\"");
    row("a long name", {"T" + QString(64, 'x'), "", "text", "", none},
        "the name \"Txxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx\"...\"xxxxxxxxxxxxxxxxxxxx\" (65 characters) "
        "should "
        "have at most 64 letters");
    row("file of its own in capitals", {"TextsetoperatioN", "", "text", "", none},
        "the name \"TextsetoperatioN\" is taken by another file of the plug-in");
    row("prefix of the list steps", {"ListSteps", "", "", "", {{"add", ""}}},
        "the prefix \"list\" is that of the list steps, which hosts have already; choose another with "
        "--prefix");
    row("long step", {"Text", "", "", "", {{QString(33, 'a'), ""}}},
        "the step \"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa\" should be lower-case letters and digits, at most 32, "
        "such "
        "as \"join\"");
    row("file of its own", {"TextSetOperation", "", "", "", none},
        "the name \"TextSetOperation\" is taken by another file of the plug-in");
    row("id without a dot", {"Text", "text", "", "", none},
        "the plug-in id \"text\" should have the form \"com.example.TextSteps\"");
    row("prefix with a dot", {"Text", "", "text.", "", none},
        "the prefix \"text.\" should be lower-case letters and digits, at most 32, such as \"text\"");
    row("quote in the category", {"Text", "", "", "a\"b", none},
        "the category \"a\"b\" has a quote, a backslash or a character that is not seen");
    row("line end in the category", {"Text", "", "", "a\nb", none},
        "the category \"a\\u000ab\" has a quote, a backslash or a character that is not seen");
    row("category that deceives", {"Text", "", "", QString::fromUtf8("a\u202eb"), none},
        "the category \"a\\u202eb\" has a quote, a backslash or a character that is not seen");
    row("prefix with a place marker", {"Text", "", "%1", "", none},
        "the prefix \"%1\" should be lower-case letters and digits, at most 32, such as \"text\"");
    row("capital step", {"Text", "", "", "", {{"Join", ""}}},
        "the step \"Join\" should be lower-case letters and digits, at most 32, such as \"join\"");
    row("empty step", {"Text", "", "", "", {{"", "x"}}},
        "the step \"\" should be lower-case letters and digits, at most 32, such as \"join\"");
    row("backslash in a step name", {"Text", "", "", "", {{"join", "a\\"}}},
        "the step name \"a\\\" has a quote, a backslash or a character that is not seen");
    row("step twice", {"Text", "", "", "", {{"join", ""}, {"join", ""}}}, "the step \"join\" is named twice");
}

void TestPluginSkeleton::refusesNames()
{
    QFETCH(PluginSkeleton, skeleton);
    QFETCH(QString, error);
    const Result<QStringList> result = writePluginSkeleton(skeleton, path("new"));
    QCOMPARE(errorOf(result), error);
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

void TestPluginSkeleton::keepsWhatIsThere()
{
    QVERIFY(QDir(m_folder->path()).mkdir("folder"));
    QFile file(path("file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    for (const char *name : {"folder", "file", "folder/", "."}) {
        const Result<QStringList> result = writePluginSkeleton({"Text", {}, {}, {}, {}}, path(name));
        QVERIFY2(errorOf(result).endsWith(": there is something of that name already; name a new folder"),
                 qPrintable(errorOf(result)));
    }
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
             QStringList({"file", "folder"}));
    QVERIFY(QDir(path("folder")).isEmpty());
}

void TestPluginSkeleton::refusesMissingParent()
{
    const Result<QStringList> result = writePluginSkeleton(PluginSkeleton(), path("missing/new"));
    QCOMPARE(errorOf(result), path("missing") + ": there is no such folder");
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

QTEST_GUILESS_MAIN(TestPluginSkeleton)
#include "tst_pluginskeleton.moc"
