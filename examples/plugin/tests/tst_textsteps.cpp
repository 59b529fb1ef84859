#include <hostapi/IOperationPlugin.h>
#include <hostapi/Operation.h>
#include <hostapi/VariableScope.h>

#include <QPluginLoader>
#include <QtTest>

#include <memory>

class TestTextSteps : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void run_data();
    void run();
    void skip_data();
    void skip();
    void records_data();
    void records();
    void cleanupTestCase();

private:
    std::unique_ptr<Operation> createStep(const QString &typeId, const QVariantMap &settings = {}) const;

    QPluginLoader m_loader{PLUGIN_FILE};
    QList<Operation *> m_prototypes;
    VariableScope m_variables;
};

void TestTextSteps::initTestCase()
{
    auto *plugin = qobject_cast<IOperationPlugin *>(m_loader.instance());
    QVERIFY2(plugin, qPrintable(m_loader.errorString()));
    m_prototypes = plugin->createPrototypes();

    m_variables.set("names", QVariantList{"梨", 2.5, "", 3, true});
    m_variables.set("nested", QVariantList{"梨", QVariantList{1, 2}});
    m_variables.set("nothing", QVariantList());
    m_variables.set("line", "a,b,,c");
    m_variables.set("two", 2);
    m_variables.set("text", "before");
    m_variables.set("list", QVariantList{"before"});
}

void TestTextSteps::cleanupTestCase()
{
    qDeleteAll(m_prototypes);
}

std::unique_ptr<Operation> TestTextSteps::createStep(const QString &typeId, const QVariantMap &settings) const
{
    for (const Operation *prototype : m_prototypes) {
        if (prototype->typeId() != typeId)
            continue;
        std::unique_ptr<Operation> step(prototype->clone(nullptr));
        for (auto it = settings.begin(); it != settings.end(); ++it)
            step->setProperty(it.key().toUtf8().constData(), it.value());
        return step;
    }
    return nullptr;
}

void TestTextSteps::run_data()
{
    QTest::addColumn<QString>("typeId");
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QVariant>("expected");

    const auto join = [](const char *row, QVariantMap settings, const QString &expected) {
        settings.insert("targetVar", "text");
        QTest::newRow(row) << "text.join" << settings << "text" << QVariant(expected);
    };
    join("join", {{"sourceVar", "names"}, {"separator", "、"}}, "梨、2.5、、3、true");
    join("join, no empty items", {{"sourceVar", "$names"}, {"separator", "、"}, {"skipEmpty", true}},
         "梨、2.5、3、true");
    join("join without separator", {{"sourceVar", "names"}}, "梨2.53true");
    join("join nothing", {{"sourceVar", "nothing"}, {"separator", "、"}}, "");

    const auto split = [](const char *row, QVariantMap settings, const QVariantList &expected) {
        settings.insert("targetVar", "list");
        QTest::newRow(row) << "text.split" << settings << "list" << QVariant(expected);
    };
    split("split a literal", {{"value", "1-2-3"}, {"separator", "-"}}, {"1", "2", "3"});
    split("split a variable", {{"value", "$line"}, {"separator", ","}}, {"a", "b", "", "c"});
    split("split a number", {{"value", "$two"}, {"separator", ","}}, {"2"});
    split("split a count of items", {{"value", "$names.Count"}, {"separator", ","}}, {"5"});
    split("keep leading zeros", {{"value", "007"}, {"separator", ","}}, {"007"});
    split("by length", {{"value", "abcde"}, {"mode", 1}, {"length", " 2 "}}, {"ab", "cd", "e"});
    split("by the length in a variable", {{"value", "abc"}, {"mode", 1}, {"length", "$two"}}, {"ab", "c"});
    split("by a count of items", {{"value", "abcdefg"}, {"mode", 1}, {"length", "$names.Count"}},
          {"abcde", "fg"});
    split("by a length beyond the text", {{"value", "abc"}, {"mode", 1}, {"length", "2147483647"}}, {"abc"});
    split("nothing by length", {{"value", ""}, {"mode", 1}, {"length", "1"}}, {});
}

void TestTextSteps::run()
{
    QFETCH(QString, typeId);
    QFETCH(QVariantMap, settings);
    QFETCH(QString, target);
    QFETCH(QVariant, expected);
    const std::unique_ptr<Operation> step = createStep(typeId, settings);
    QVERIFY(step);
    VariableScope scope = m_variables;
    step->setVariableScope(&scope);
    step->doOperation();
    QCOMPARE(scope.get(target), expected);
}

void TestTextSteps::skip_data()
{
    QTest::addColumn<QString>("typeId");
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<QString>("warning");

    const auto skip = [](const char *row, const char *typeId, const QVariantMap &settings,
                         const char *warning) { QTest::newRow(row) << typeId << settings << warning; };
    skip("join no list", "text.join", {{"sourceVar", "line"}, {"targetVar", "text"}},
         "[TextJoin] 变量 \"line\" 不是列表类型，已跳过");
    skip("join into no text", "text.join", {{"sourceVar", "names"}, {"targetVar", "two"}},
         "[TextJoin] 目标变量 \"two\" 不是文本类型，已跳过");
    skip("join a list of lists", "text.join", {{"sourceVar", "nested"}, {"targetVar", "text"}},
         "[TextJoin] 列表 \"nested\" 中有不能转为文本的项，已跳过");
    skip("split into no list", "text.split", {{"value", "a"}, {"separator", ","}, {"targetVar", "text"}},
         "[TextSplit] 目标变量 \"text\" 不是列表类型，已跳过");
    skip("split no text", "text.split", {{"value", "$nested"}, {"separator", ","}, {"targetVar", "list"}},
         "[TextSplit] 内容 \"$nested\" 不是文本，已跳过");
    skip("split at nothing", "text.split", {{"value", "a"}, {"targetVar", "list"}},
         "[TextSplit] 分隔符 \"\" 为空，已跳过");
    for (const char *length : {"", "0", "-1", "1.5", "$line", "$missing"}) {
        QTest::addRow("split by the length '%s'", length)
            << "text.split"
            << QVariantMap{{"value", "abc"}, {"mode", 1}, {"length", length}, {"targetVar", "list"}}
            << QStringLiteral("[TextSplit] 每段长度 \"%1\" 不是正整数，已跳过").arg(length);
    }
}

void TestTextSteps::skip()
{
    QFETCH(QString, typeId);
    QFETCH(QVariantMap, settings);
    QFETCH(QString, warning);
    const std::unique_ptr<Operation> step = createStep(typeId, settings);
    QVERIFY(step);
    VariableScope scope = m_variables;
    step->setVariableScope(&scope);
    QTest::ignoreMessage(QtWarningMsg, warning.toUtf8().constData());
    step->doOperation();
    const QStringList names = scope.names();
    for (const QString &name : names)
        QCOMPARE(scope.get(name), m_variables.get(name));
}

void TestTextSteps::records_data()
{
    QTest::addColumn<QString>("typeId");
    QTest::addColumn<QVariantMap>("settings");
    QTest::newRow("join") << "text.join"
                          << QVariantMap{{"sourceVar", "names"},
                                         {"separator", " "},
                                         {"skipEmpty", true},
                                         {"targetVar", "t"}};
    QTest::newRow("split")
        << "text.split"
        << QVariantMap{{"value", "$a"}, {"mode", 1}, {"separator", ","}, {"length", "3"}, {"targetVar", "l"}};
}

void TestTextSteps::records()
{
    QFETCH(QString, typeId);
    QFETCH(QVariantMap, settings);
    const std::unique_ptr<Operation> step = createStep(typeId, settings);
    QVERIFY(step);
    QByteArray record;
    QDataStream writer(&record, QIODevice::WriteOnly);
    step->saveOperation(writer);

    const std::unique_ptr<Operation> loaded = createStep(typeId);
    QDataStream reader(record);
    loaded->loadOperation(reader);
    QVERIFY(reader.atEnd());
    QCOMPARE(reader.status(), QDataStream::Ok);
    const std::unique_ptr<Operation> copy(loaded->clone(nullptr));
    for (auto it = settings.begin(); it != settings.end(); ++it)
        QCOMPARE(copy->property(it.key().toUtf8().constData()), it.value());
}

QTEST_GUILESS_MAIN(TestTextSteps)
#include "tst_textsteps.moc"
