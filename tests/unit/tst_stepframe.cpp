#include "hostapi/VariableScope.h"
#include "tests/support/ShowValue.h"
#include "tests/support/StepFamily.h"
#include "tests/support/WarningLog.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QMetaClassInfo>
#include <QTranslator>
#include <QtTest>

#include <type_traits>

using Texts = QVector<QPair<QString, QString>>;

// Every step adds its settings to the base and nothing else.

template<typename Step, typename Settings>
constexpr bool
    isStepWith = std::is_base_of_v<Operation, Step> && sizeof(Step) == sizeof(Operation) + sizeof(Settings)
    && std::is_default_constructible_v<Step> &&std::is_constructible_v<Step, QObject *>
        &&std::is_constructible_v<
                     Step, Step *,
                     QObject *> && !std::is_copy_constructible_v<Step> && !std::is_copy_assignable_v<Step>;

struct OneText
{
    QString text;
};
struct ThreeTexts
{
    QString texts[3];
};
struct RemoveSettings
{
    QString targetVar;
    int mode;
    QString index;
    QString value;
};
struct SortSettings
{
    QString targetVar;
    bool ascending;
};

static_assert(isStepWith<ListAddOperation, ThreeTexts>);
static_assert(isStepWith<ListRemoveOperation, RemoveSettings>);
static_assert(isStepWith<ListGetOperation, ThreeTexts>);
static_assert(isStepWith<ListClearOperation, OneText>);
static_assert(isStepWith<ListSortOperation, SortSettings>);
static_assert(isStepWith<ListMergeOperation, ThreeTexts>);
static_assert(isStepWith<ListReverseOperation, OneText>);
static_assert(isStepWith<ListDedupOperation, OneText>);
static_assert(isStepWith<ListIntersectOperation, ThreeTexts>);
static_assert(isStepWith<ListSubtractOperation, ThreeTexts>);

// Getters are const and return by value; setters take texts by reference and plain types by value.

template<typename Step, typename Value>
using Getter = Value (Step::*)() const;
template<typename Step, typename Argument>
using Setter = void (Step::*)(Argument);

template<typename Step, typename Value, typename Argument>
constexpr bool areAccessors(Getter<Step, Value>, Setter<Step, Argument>)
{
    return std::is_same_v<Value, QString> ? std::is_same_v<Argument, const QString &>
                                          : std::is_same_v<Argument, Value>;
}

static_assert(areAccessors(&ListAddOperation::targetVar, &ListAddOperation::setTargetVar));
static_assert(areAccessors(&ListAddOperation::value, &ListAddOperation::setValue));
static_assert(areAccessors(&ListAddOperation::index, &ListAddOperation::setIndex));
static_assert(areAccessors(&ListRemoveOperation::targetVar, &ListRemoveOperation::setTargetVar));
static_assert(areAccessors(&ListRemoveOperation::mode, &ListRemoveOperation::setMode));
static_assert(areAccessors(&ListRemoveOperation::index, &ListRemoveOperation::setIndex));
static_assert(areAccessors(&ListRemoveOperation::value, &ListRemoveOperation::setValue));
static_assert(areAccessors(&ListGetOperation::sourceVar, &ListGetOperation::setSourceVar));
static_assert(areAccessors(&ListGetOperation::index, &ListGetOperation::setIndex));
static_assert(areAccessors(&ListGetOperation::targetVar, &ListGetOperation::setTargetVar));
static_assert(areAccessors(&ListClearOperation::targetVar, &ListClearOperation::setTargetVar));
static_assert(areAccessors(&ListSortOperation::targetVar, &ListSortOperation::setTargetVar));
static_assert(areAccessors(&ListSortOperation::ascending, &ListSortOperation::setAscending));
static_assert(areAccessors(&ListMergeOperation::listA, &ListMergeOperation::setListA));
static_assert(areAccessors(&ListMergeOperation::listB, &ListMergeOperation::setListB));
static_assert(areAccessors(&ListMergeOperation::targetVar, &ListMergeOperation::setTargetVar));
static_assert(areAccessors(&ListReverseOperation::targetVar, &ListReverseOperation::setTargetVar));
static_assert(areAccessors(&ListDedupOperation::targetVar, &ListDedupOperation::setTargetVar));
static_assert(areAccessors(&ListIntersectOperation::listA, &ListIntersectOperation::setListA));
static_assert(areAccessors(&ListIntersectOperation::listB, &ListIntersectOperation::setListB));
static_assert(areAccessors(&ListIntersectOperation::targetVar, &ListIntersectOperation::setTargetVar));
static_assert(areAccessors(&ListSubtractOperation::listA, &ListSubtractOperation::setListA));
static_assert(areAccessors(&ListSubtractOperation::listB, &ListSubtractOperation::setListB));
static_assert(areAccessors(&ListSubtractOperation::targetVar, &ListSubtractOperation::setTargetVar));

namespace
{
struct Identity
{
    const char *className;
    const char *typeId;
    const char *typeName;
    const char *icon;
};

constexpr Identity identities[] = {
    {"ListAddOperation", "list.add", "列表添加项", ":/images/list_add.svg"},
    {"ListRemoveOperation", "list.remove", "列表移除项", ":/images/list_remove.svg"},
    {"ListGetOperation", "list.get", "列表取项", ":/images/list_get.svg"},
    {"ListClearOperation", "list.clear", "列表清空", ":/images/list_clear.svg"},
    {"ListSortOperation", "list.sort", "列表排序", ":/images/list_sort.svg"},
    {"ListMergeOperation", "list.merge", "列表合并", ":/images/list_merge.svg"},
    {"ListReverseOperation", "list.reverse", "列表反转", ":/images/list_reverse.svg"},
    {"ListDedupOperation", "list.dedup", "列表去重", ":/images/list_dedup.svg"},
    {"ListIntersectOperation", "list.intersect", "列表交集", ":/images/list_intersect.svg"},
    {"ListSubtractOperation", "list.subtract", "列表差集", ":/images/list_subtract.svg"},
};

struct Setting
{
    QString name;
    QVariant defaultValue;
    QVariant otherValue;
};

// The settings of each step in order of declaration.
QVector<Setting> settingsTable(const QString &typeId)
{
    const auto text = [](const char *name) {
        return Setting{name, QString(), QString("  a text of %1 with blanks  ").arg(name)};
    };
    if (typeId == "list.add")
        return {text("targetVar"), text("value"), text("index")};
    if (typeId == "list.remove")
        return {text("targetVar"), {"mode", 0, -7}, text("index"), text("value")};
    if (typeId == "list.get")
        return {text("sourceVar"), text("index"), text("targetVar")};
    if (typeId == "list.sort")
        return {text("targetVar"), {"ascending", true, false}};
    if (typeId == "list.merge" || typeId == "list.intersect" || typeId == "list.subtract")
        return {text("listA"), text("listB"), text("targetVar")};
    return {text("targetVar")};
}

// The editor schema of each step in order of declaration.
Texts classInfoTable(const QString &typeId)
{
    const Texts targetList = {
        {"prop_targetVar", "目标列表"}, {"editor_targetVar", "VARNAME"}, {"varname_type_targetVar", "list"}};
    if (typeId == "list.add")
        return targetList
            + Texts{{"prop_value", "项值"},
                    {"editor_value", "VARREF"},
                    {"varref_kind_value", "string"},
                    {"prop_index", "插入位置(空=末尾)"}};
    if (typeId == "list.remove")
        return targetList
            + Texts{{"prop_mode", "移除依据"},
                    {"editor_mode", "COMBO"},
                    {"choices_mode", "按索引值|按元素值"},
                    {"prop_index", "索引值(从0开始)"},
                    {"editor_index", "NUMVAR:INT"},
                    {"show_when_index", "mode=0"},
                    {"prop_value", "元素值"},
                    {"editor_value", "VARREF"},
                    {"varref_type_value", "int,double,string,bool"},
                    {"show_when_value", "mode=1"}};
    if (typeId == "list.get")
        return {{"prop_sourceVar", "源列表"},       {"editor_sourceVar", "VARNAME"},
                {"varname_type_sourceVar", "list"}, {"prop_index", "索引(从0开始的第几项)"},
                {"editor_index", "NUMVAR:INT"},     {"prop_targetVar", "目标变量(存元素)"},
                {"editor_targetVar", "VARNAME"},    {"varname_type_targetVar", "scalar"}};
    if (typeId == "list.sort")
        return targetList + Texts{{"prop_ascending", "升序"}};
    if (typeId == "list.merge" || typeId == "list.intersect" || typeId == "list.subtract")
        return Texts{{"prop_listA", "列表A"}, {"editor_listA", "VARNAME"}, {"varname_type_listA", "list"},
                     {"prop_listB", "列表B"}, {"editor_listB", "VARNAME"}, {"varname_type_listB", "list"}}
        + targetList;
    return targetList;
}

void configure(Operation &step)
{
    for (const Setting &setting : settingsTable(step.typeId()))
        step.setProperty(setting.name.toUtf8().constData(), setting.otherValue);
}

QByteArray recordOf(const Operation &step)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    step.saveOperation(stream);
    return bytes;
}

// Base state 0xdeadbeef and the step's present settings.
void giveBaseState(Operation &step)
{
    QByteArray record = recordOf(step);
    record.replace(0, 4, QByteArray::fromHex("deadbeef"));
    QDataStream stream(record);
    step.loadOperation(stream);
}

// Answers every text with its context in front.
class ContextTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *source, const char *disambiguation,
                      int n) const override
    {
        Q_UNUSED(disambiguation)
        Q_UNUSED(n)
        return '<' + QString::fromUtf8(context) + '>' + QString::fromUtf8(source);
    }
    bool isEmpty() const override
    {
        return false;
    }
};

void addStepColumn()
{
    QTest::addColumn<QString>("typeId");
    for (const Identity &identity : identities)
        QTest::newRow(identity.typeId) << QString(identity.typeId);
}
} // namespace

class TestStepFrame : public QObject
{
    Q_OBJECT

private slots:
    void stepsStandInPrototypeOrder();
    void identity_data();
    void identity();
    void metaObject_data();
    void metaObject();
    void classInfo_data();
    void classInfo();
    void properties_data();
    void properties();
    void construction_data();
    void construction();
    void propertiesReachTheSettings_data();
    void propertiesReachTheSettings();
    void clone_data();
    void clone();
    void cloneHasNoScope_data();
    void cloneHasNoScope();
    void metaCast_data();
    void metaCast();
    void texts_data();
    void texts();
    void markersInSettingsAreFilledToo_data();
    void markersInSettingsAreFilledToo();
    void translation_data();
    void translation();
};

void TestStepFrame::stepsStandInPrototypeOrder()
{
    QStringList actual;
    for (const StepPointer &step : newStepOfEachKind())
        actual += step->typeId();
    QStringList expected;
    for (const Identity &identity : identities)
        expected += identity.typeId;
    QCOMPARE(actual, expected);
}

void TestStepFrame::identity_data()
{
    QTest::addColumn<QString>("typeId");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("typeName");
    QTest::addColumn<QString>("icon");
    for (const Identity &identity : identities)
        QTest::newRow(identity.typeId) << QString(identity.typeId) << QString(identity.className)
                                       << QString(identity.typeName) << QString(identity.icon);
}

void TestStepFrame::identity()
{
    QFETCH(QString, typeId);
    QFETCH(QString, className);
    QFETCH(QString, typeName);
    QFETCH(QString, icon);

    const StepPointer fresh = newStep(typeId);
    const StepPointer configured = newStep(typeId);
    configure(*configured);
    const StepPointer cloned(configured->clone(nullptr));
    VariableScope scope;
    cloned->setVariableScope(&scope);
    for (const Operation *step : {fresh.get(), configured.get(), cloned.get()}) {
        QCOMPARE(QString(step->metaObject()->className()), className);
        QCOMPARE(step->typeId(), typeId);
        QCOMPARE(step->typeName(), typeName);
        QCOMPARE(step->root(), QString("列表"));
        QCOMPARE(step->icon(), icon);
    }
}

void TestStepFrame::metaObject_data()
{
    addStepColumn();
}

void TestStepFrame::metaObject()
{
    QFETCH(QString, typeId);
    const StepPointer step = newStep(typeId);
    const QMetaObject *meta = step->metaObject();
    QCOMPARE(meta->superClass(), &Operation::staticMetaObject);
    QCOMPARE(meta->methodCount(), meta->methodOffset());
    QCOMPARE(meta->enumeratorCount(), meta->enumeratorOffset());
    QCOMPARE(meta->constructorCount(), 0);
}

void TestStepFrame::classInfo_data()
{
    addStepColumn();
}

void TestStepFrame::classInfo()
{
    QFETCH(QString, typeId);
    const StepPointer step = newStep(typeId);
    const QMetaObject *meta = step->metaObject();
    Texts actual;
    for (int i = meta->classInfoOffset(); i < meta->classInfoCount(); ++i)
        actual.append(
            {QString::fromUtf8(meta->classInfo(i).name()), QString::fromUtf8(meta->classInfo(i).value())});
    QCOMPARE(actual, classInfoTable(typeId));
    QCOMPARE(meta->classInfoOffset(), Operation::staticMetaObject.classInfoCount());
}

void TestStepFrame::properties_data()
{
    addStepColumn();
}

void TestStepFrame::properties()
{
    QFETCH(QString, typeId);
    const StepPointer step = newStep(typeId);
    const QMetaObject *meta = step->metaObject();
    const QVector<Setting> expected = settingsTable(typeId);
    QCOMPARE(meta->propertyCount() - meta->propertyOffset(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        const QMetaProperty property = meta->property(meta->propertyOffset() + i);
        QCOMPARE(QString(property.name()), expected.at(i).name);
        QCOMPARE(property.userType(), expected.at(i).defaultValue.userType());
        QVERIFY(property.isReadable());
        QVERIFY(property.isWritable());
        QVERIFY(property.isDesignable());
        QVERIFY(property.isScriptable());
        QVERIFY(property.isStored());
        QVERIFY(!property.isUser());
        QVERIFY(!property.isResettable());
        QVERIFY(!property.hasNotifySignal());
        QVERIFY(!property.isConstant());
        QVERIFY(!property.isFinal());
        QVERIFY(!property.isRequired());
        QCOMPARE(property.revision(), 0);
    }
}

void TestStepFrame::construction_data()
{
    addStepColumn();
}

void TestStepFrame::construction()
{
    QFETCH(QString, typeId);
    const StepPointer step = newStep(typeId);
    QVERIFY(!step->parent());
    QVERIFY(!step->parentOperation());
    QVERIFY(!step->isContainer());
    QCOMPARE(step->childCount(), 0);
    QVERIFY(step->children().isEmpty());
    for (const Setting &setting : settingsTable(typeId))
        QCOMPARE(shown(step->property(setting.name.toUtf8())), shown(setting.defaultValue));
    QCOMPARE(recordOf(*step).left(4), QByteArray(4, '\0'));
}

void TestStepFrame::propertiesReachTheSettings_data()
{
    addStepColumn();
}

void TestStepFrame::propertiesReachTheSettings()
{
    QFETCH(QString, typeId);
    const StepPointer step = newStep(typeId);
    const QVector<Setting> settings = settingsTable(typeId);
    for (const Setting &changed : settings) {
        QVERIFY(step->setProperty(changed.name.toUtf8(), changed.otherValue));
        for (const Setting &setting : settings) {
            const QVariant expected =
                setting.name == changed.name ? setting.otherValue : setting.defaultValue;
            QCOMPARE(shown(step->property(setting.name.toUtf8())), shown(expected));
        }
        QVERIFY(step->setProperty(changed.name.toUtf8(), changed.defaultValue));
    }
    QVERIFY(step->dynamicPropertyNames().isEmpty());
}

void TestStepFrame::clone_data()
{
    addStepColumn();
}

void TestStepFrame::clone()
{
    QFETCH(QString, typeId);
    const StepPointer source = newStep(typeId);
    configure(*source);
    giveBaseState(*source);
    source->setObjectName("name");
    source->setProperty("dynamic", 1);
    const StepPointer container = newStep("list.clear");
    source->setParentOperation(container.get());
    source->children().append(container.get());

    QObject parent;
    Operation *const owned = source->clone(&parent);
    QCOMPARE(owned->parent(), &parent);
    QCOMPARE(parent.children(), QObjectList{owned});

    const StepPointer cloned(source->clone(nullptr));
    QVERIFY(!cloned->parent());
    QVERIFY(cloned.get() != source.get());
    QCOMPARE(cloned->metaObject(), source->metaObject());
    QCOMPARE(shown(settingsOf(*cloned)), shown(settingsOf(*source)));
    QCOMPARE(recordOf(*cloned), recordOf(*source));
    QCOMPARE(recordOf(*cloned).left(4), QByteArray::fromHex("deadbeef"));
    QVERIFY(cloned->objectName().isEmpty());
    QVERIFY(cloned->dynamicPropertyNames().isEmpty());
    QVERIFY(!cloned->parentOperation());
    QCOMPARE(cloned->childCount(), 0);

    const QVariantMap before = settingsOf(*source);
    for (const Setting &setting : settingsTable(typeId))
        cloned->setProperty(setting.name.toUtf8(), setting.defaultValue);
    QCOMPARE(shown(settingsOf(*source)), shown(before));
    QVERIFY(shown(settingsOf(*cloned)) != shown(before));
}

void TestStepFrame::cloneHasNoScope_data()
{
    addStepColumn();
}

void TestStepFrame::cloneHasNoScope()
{
    QFETCH(QString, typeId);
    const WarningLog log;
    VariableScope scope;
    const StepPointer source = newStep(typeId);
    configure(*source);
    source->setVariableScope(&scope);
    const StepPointer cloned(source->clone(nullptr));
    cloned->doOperation();
    QCOMPARE(log.take(), QStringList());
    source->doOperation();
    QCOMPARE(log.take().size(), 1);
    QVERIFY(scope.names().isEmpty());
}

void TestStepFrame::metaCast_data()
{
    addStepColumn();
}

void TestStepFrame::metaCast()
{
    QFETCH(QString, typeId);
    const StepPointer step = newStep(typeId);
    const void *const self = step.get();
    for (const Identity &identity : identities) {
        const void *const expected = typeId == identity.typeId ? self : nullptr;
        QCOMPARE(static_cast<const void *>(step->qt_metacast(identity.className)), expected);
        QCOMPARE(step->inherits(identity.className), expected != nullptr);
    }
    QCOMPARE(static_cast<const void *>(step->qt_metacast("Operation")), self);
    QCOMPARE(static_cast<const void *>(step->qt_metacast("QObject")), self);
    QVERIFY(!step->qt_metacast("Unknown"));
    QVERIFY(!step->qt_metacast(""));
    QVERIFY(!step->qt_metacast(nullptr));
    QCOMPARE(qobject_cast<Operation *>(static_cast<QObject *>(step.get())), step.get());
}

void TestStepFrame::texts_data()
{
    QTest::addColumn<QString>("typeId");
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<QString>("summary");
    QTest::addColumn<QString>("description");

    const auto row = [](const char *name, const char *typeId, const QVariantMap &settings,
                        const char *summary, const char *description) {
        QTest::addRow("%s: %s", typeId, name)
            << QString(typeId) << settings << QString(summary) << QString(description);
    };
    const auto pair = [](const QString &a, const QString &b, const QString &target) {
        return QVariantMap{{"listA", a}, {"listB", b}, {"targetVar", target}};
    };
    const auto target = [](const QString &name) { return QVariantMap{{"targetVar", name}}; };

    row("no settings", "list.add", {}, "列表添加项:  <- ", "向列表  添加项 ");
    row("plain name", "list.add", {{"targetVar", "names"}, {"value", "$x"}, {"index", "7"}},
        "列表添加项: $names <- $x", "向列表 $names 添加项 $x");
    row("marked name", "list.add", {{"targetVar", "$names"}, {"value", " x "}}, "列表添加项: $names <-  x ",
        "向列表 $names 添加项  x ");

    row("no settings", "list.remove", {}, "列表移除项:  (mode=0)", "从列表  按索引  移除项");
    row("by position", "list.remove", {{"targetVar", "names"}, {"index", " 1 "}, {"value", "v"}},
        "列表移除项: $names (mode=0)", "从列表 $names 按索引  1  移除项");
    row("by value", "list.remove", {{"targetVar", "$names"}, {"mode", 1}, {"index", "1"}, {"value", "$v"}},
        "列表移除项: $names (mode=1)", "从列表 $names 按值 $v 移除项");
    row("mode 2", "list.remove", {{"targetVar", "names"}, {"mode", 2}, {"value", "v"}},
        "列表移除项: $names (mode=2)", "从列表 $names 按值 v 移除项");
    row("negative mode", "list.remove", {{"targetVar", "names"}, {"mode", -2147483647 - 1}, {"value", "v"}},
        "列表移除项: $names (mode=-2147483648)", "从列表 $names 按值 v 移除项");

    row("no settings", "list.get", {}, "列表取项: [] -> ", "取列表  第  项写入 ");
    row("plain names", "list.get", {{"sourceVar", "names"}, {"index", "2"}, {"targetVar", "x"}},
        "列表取项: $names[2] -> $x", "取列表 $names 第 2 项写入 $x");
    row("marked names", "list.get", {{"sourceVar", "$names"}, {"index", "$i"}, {"targetVar", "$x"}},
        "列表取项: $names[$i] -> $x", "取列表 $names 第 $i 项写入 $x");

    row("no settings", "list.clear", {}, "列表清空: ", "清空列表 ");
    row("plain name", "list.clear", target("names"), "列表清空: $names", "清空列表 $names");
    row("marked name", "list.clear", target("$names"), "列表清空: $names", "清空列表 $names");
    row("the mark alone", "list.clear", target("$"), "列表清空: $", "清空列表 $");
    row("a blank before the mark", "list.clear", target(" $n"), "列表清空: $ $n", "清空列表 $ $n");

    row("no settings", "list.sort", {}, "列表排序:  (asc)", "对列表  排序（升序）");
    row("ascending", "list.sort", target("scores"), "列表排序: $scores (asc)", "对列表 $scores 排序（升序）");
    row("descending", "list.sort", {{"targetVar", "$scores"}, {"ascending", false}},
        "列表排序: $scores (desc)", "对列表 $scores 排序（降序）");

    row("no settings", "list.merge", {}, "列表合并:  +  -> ", "合并列表  与  写入 ");
    row("names", "list.merge", pair("a", "$b", "c"), "列表合并: $a + $b -> $c", "合并列表 $a 与 $b 写入 $c");

    row("no settings", "list.reverse", {}, "列表反转: ", "反转列表 ");
    row("plain name", "list.reverse", target("names"), "列表反转: $names", "反转列表 $names");
    row("marked name", "list.reverse", target("$names"), "列表反转: $names", "反转列表 $names");

    row("no settings", "list.dedup", {}, "列表去重: ", "对列表  去重");
    row("plain name", "list.dedup", target("names"), "列表去重: $names", "对列表 $names 去重");
    row("marked name", "list.dedup", target("$names"), "列表去重: $names", "对列表 $names 去重");

    row("no settings", "list.intersect", {}, "列表交集:  \u2229  -> ", "取列表  与  的交集写入 ");
    row("names", "list.intersect", pair("a", "$b", "c"), "列表交集: $a \u2229 $b -> $c",
        "取列表 $a 与 $b 的交集写入 $c");

    row("no settings", "list.subtract", {}, "列表差集:  -  -> ", "取列表  减去  写入 ");
    row("names", "list.subtract", pair("$a", "b", "$c"), "列表差集: $a - $b -> $c",
        "取列表 $a 减去 $b 写入 $c");
}

void TestStepFrame::texts()
{
    QFETCH(QString, typeId);
    QFETCH(QVariantMap, settings);
    QFETCH(QString, summary);
    QFETCH(QString, description);
    const StepPointer step = newStep(typeId, settings);
    QVERIFY(step);
    QCOMPARE(step->toString(), summary);
    QCOMPARE(step->description(), description);
    const StepPointer cloned(step->clone(nullptr));
    QCOMPARE(cloned->toString(), summary);
    QCOMPARE(cloned->description(), description);
}

void TestStepFrame::markersInSettingsAreFilledToo_data()
{
    QTest::addColumn<QString>("typeId");
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<QString>("summary");
    QTest::addColumn<QString>("description");

    QTest::newRow("add, a later marker")
        << "list.add" << QVariantMap{{"targetVar", "a%3"}, {"value", "v"}} << "列表添加项: $av <- v"
        << "向列表 $a%3 添加项 v";
    QTest::newRow("add, the description's marker")
        << "list.add" << QVariantMap{{"targetVar", "a%2"}, {"value", "v"}} << "列表添加项: $av <- %3"
        << "向列表 $av 添加项 v";
    QTest::newRow("add, the lowest marker first")
        << "list.add" << QVariantMap{{"targetVar", "a%1"}, {"value", "v"}} << "列表添加项: $av <- %3"
        << "向列表 $av 添加项 %2";
    QTest::newRow("add, the last text is not filled")
        << "list.add" << QVariantMap{{"targetVar", "a"}, {"value", "%1%2%3"}} << "列表添加项: $a <- %1%2%3"
        << "向列表 $a 添加项 %1%2%3";
    QTest::newRow("remove") << "list.remove" << QVariantMap{{"targetVar", "a%3"}, {"mode", 1}, {"value", "v"}}
                            << "列表移除项: $a1 (mode=1)"
                            << "从列表 $a%3 按值 v 移除项";
    QTest::newRow("remove, description")
        << "list.remove" << QVariantMap{{"targetVar", "a%2"}, {"index", "5"}} << "列表移除项: $a0 (mode=%3)"
        << "从列表 $a5 按索引 5 移除项";
    QTest::newRow("get") << "list.get"
                         << QVariantMap{{"sourceVar", "a%4"}, {"index", "%4"}, {"targetVar", "c"}}
                         << "列表取项: $a$c[$c] -> $c"
                         << "取列表 $a%4 第 %4 项写入 $c";
    QTest::newRow("get, description")
        << "list.get" << QVariantMap{{"sourceVar", "a%3"}, {"index", "%3"}, {"targetVar", "c"}}
        << "列表取项: $a$c[$c] -> %4"
        << "取列表 $a$c 第 $c 项写入 $c";
    QTest::newRow("sort, ascending") << "list.sort" << QVariantMap{{"targetVar", "a%3"}}
                                     << "列表排序: $aasc (asc)"
                                     << "对列表 $a%3 排序（升序）";
    QTest::newRow("sort, descending")
        << "list.sort" << QVariantMap{{"targetVar", "a%2"}, {"ascending", false}} << "列表排序: $adesc (%3)"
        << "对列表 $a降序 排序（降序）";
    for (const char *typeId : {"list.clear", "list.reverse", "list.dedup"}) {
        const StepPointer step = newStep(typeId);
        QTest::addRow("%s, one text is not filled", typeId)
            << typeId << QVariantMap{{"targetVar", "a%1%2"}} << step->typeName() + ": $a%1%2"
            << step->description().replace("列表 ", "列表 $a%1%2");
    }
    const QVariantMap pair{{"listA", "a%3"}, {"listB", "b%4"}, {"targetVar", "c"}};
    QTest::newRow("merge") << "list.merge" << pair << "列表合并: $a$b$c + $b$c -> $c"
                           << "合并列表 $a$c 与 $b%4 写入 $c";
    QTest::newRow("intersect") << "list.intersect" << pair << "列表交集: $a$b$c ∩ $b$c -> $c"
                               << "取列表 $a$c 与 $b%4 的交集写入 $c";
    QTest::newRow("subtract") << "list.subtract" << pair << "列表差集: $a$b$c - $b$c -> $c"
                              << "取列表 $a$c 减去 $b%4 写入 $c";
}

void TestStepFrame::markersInSettingsAreFilledToo()
{
    QFETCH(QString, typeId);
    QFETCH(QVariantMap, settings);
    QFETCH(QString, summary);
    QFETCH(QString, description);
    const StepPointer step = newStep(typeId, settings);
    QCOMPARE(step->toString(), summary);
    QCOMPARE(step->description(), description);
}

void TestStepFrame::translation_data()
{
    QTest::addColumn<QString>("typeId");
    QTest::addColumn<QVariantMap>("settings");
    for (const Identity &identity : identities)
        QTest::newRow(identity.typeId) << QString(identity.typeId) << QVariantMap();
    QTest::newRow("list.remove by value") << "list.remove" << QVariantMap{{"mode", 1}};
    QTest::newRow("list.sort descending") << "list.sort" << QVariantMap{{"ascending", false}};
}

void TestStepFrame::translation()
{
    QFETCH(QString, typeId);
    QFETCH(QVariantMap, settings);
    const StepPointer step = newStep(typeId, settings);
    const QString context = '<' + QString(step->metaObject()->className()) + '>';
    const QString root = step->root();
    const QString typeName = step->typeName();
    const QString icon = step->icon();
    const QString summary = step->toString();
    const QString description = step->description();
    const Texts labels = classInfoTable(typeId);

    ContextTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QCOMPARE(step->root(), context + root);
    QCOMPARE(step->typeName(), context + typeName);
    QCOMPARE(step->toString(), context + summary);
    QCOMPARE(step->description(), context + description);
    QCOMPARE(step->typeId(), typeId);
    QCOMPARE(step->icon(), icon);
    QCOMPARE(QString::fromUtf8(step->metaObject()->classInfo(step->metaObject()->classInfoOffset()).value()),
             labels.first().second);
}

QTEST_GUILESS_MAIN(TestStepFrame)
#include "tst_stepframe.moc"
