#include "hostapi/VariableScope.h"
#include "operations/ListAddOperation.h"
#include "operations/ListClearOperation.h"
#include "operations/ListDedupOperation.h"
#include "operations/ListGetOperation.h"
#include "operations/ListIntersectOperation.h"
#include "operations/ListMergeOperation.h"
#include "operations/ListRemoveOperation.h"
#include "operations/ListReverseOperation.h"
#include "operations/ListSortOperation.h"
#include "operations/ListSubtractOperation.h"
#include "tests/support/ContextTranslator.h"
#include "tests/support/ShowValue.h"
#include "tests/support/StepFamily.h"
#include "tests/support/StepTable.h"
#include "tests/support/WarningLog.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QMetaClassInfo>
#include <QtTest>

#include <algorithm>
#include <type_traits>

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

template<typename Step, typename Settings>
const QMetaObject *checkedClass()
{
    static_assert(isStepWith<Step, Settings>);
    return &Step::staticMetaObject;
}

const QMetaObject *const checkedClasses[] = {
    checkedClass<ListAddOperation, ThreeTexts>(),       checkedClass<ListRemoveOperation, RemoveSettings>(),
    checkedClass<ListGetOperation, ThreeTexts>(),       checkedClass<ListClearOperation, OneText>(),
    checkedClass<ListSortOperation, SortSettings>(),    checkedClass<ListMergeOperation, ThreeTexts>(),
    checkedClass<ListReverseOperation, OneText>(),      checkedClass<ListDedupOperation, OneText>(),
    checkedClass<ListIntersectOperation, ThreeTexts>(), checkedClass<ListSubtractOperation, ThreeTexts>(),
};

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
QVector<StepSetting> settingsTable(const QString &typeId)
{
    return stepRow(typeId).settings;
}

void configure(Operation &step)
{
    for (const StepSetting &setting : settingsTable(step.typeId()))
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

// Notes what a child is like at the moment when it becomes one.
class NotingParent : public QObject
{
public:
    QStringList added;

protected:
    void childEvent(QChildEvent *event) override
    {
        const auto *step = qobject_cast<Operation *>(event->child());
        if (event->added())
            added += step ? step->typeId() + ' ' + shown(settingsOf(*step)) + ' ' + recordOf(*step).toHex()
                          : QString("no step yet");
    }
};

template<typename Step>
class Renamed : public Step
{
public:
    QString typeName() const override
    {
        return "another name";
    }
};

template<typename... Steps>
QStringList summariesOfRenamed()
{
    return {Renamed<Steps>().toString()...};
}

void addStepColumn()
{
    QTest::addColumn<QString>("typeId");
    for (const StepPointer &step : newStepOfEachKind())
        QTest::newRow(step->typeId().toUtf8()) << step->typeId();
}
} // namespace

class TestStepFrame : public QObject
{
    Q_OBJECT

private slots:
    void everyStepHasItsRow();
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
    void cloneJoinsItsParentAsItIs_data();
    void cloneJoinsItsParentAsItIs();
    void cloneHasNoScope_data();
    void cloneHasNoScope();
    void metaCast_data();
    void metaCast();
    void texts_data();
    void texts();
    void summariesAskForTheName();
    void textsAreNeverShortened_data();
    void textsAreNeverShortened();
    void markersInSettingsAreFilledToo_data();
    void markersInSettingsAreFilledToo();
    void translation_data();
    void translation();
};

void TestStepFrame::everyStepHasItsRow()
{
    QStringList actual;
    for (const StepPointer &step : newStepOfEachKind()) {
        const QString typeId = step->typeId();
        QVERIFY2(!stepRow(typeId).className.isEmpty(),
                 qPrintable(typeId + " has no row in tests/support/StepTable.cpp"));
        QVERIFY2(std::count(std::begin(checkedClasses), std::end(checkedClasses), step->metaObject()) == 1,
                 qPrintable(typeId + " has no row among the checked classes"));
        actual += typeId;
    }
    QStringList expected;
    for (const StepRow &row : stepTable())
        expected += row.typeId;
    QCOMPARE(actual, expected);
}

void TestStepFrame::identity_data()
{
    addStepColumn();
}

void TestStepFrame::identity()
{
    QFETCH(QString, typeId);
    const StepRow &row = stepRow(typeId);
    const StepPointer fresh = newStep(typeId);
    const StepPointer configured = newStep(typeId);
    configure(*configured);
    const StepPointer cloned(configured->clone(nullptr));
    VariableScope scope;
    cloned->setVariableScope(&scope);
    for (const Operation *step : {fresh.get(), configured.get(), cloned.get()}) {
        QCOMPARE(QString(step->metaObject()->className()), row.className);
        QCOMPARE(step->typeId(), typeId);
        QCOMPARE(step->typeName(), row.typeName);
        QCOMPARE(step->root(), QString("列表"));
        QCOMPARE(step->icon(), row.icon);
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
    QCOMPARE(actual, stepRow(typeId).classInfo);
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
    const QVector<StepSetting> expected = settingsTable(typeId);
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
    for (const StepSetting &setting : settingsTable(typeId))
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
    const QVector<StepSetting> settings = settingsTable(typeId);
    for (const StepSetting &changed : settings) {
        QVERIFY(step->setProperty(changed.name.toUtf8(), changed.otherValue));
        for (const StepSetting &setting : settings) {
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
    for (const StepSetting &setting : settingsTable(typeId))
        cloned->setProperty(setting.name.toUtf8(), setting.defaultValue);
    QCOMPARE(shown(settingsOf(*source)), shown(before));
    QVERIFY(shown(settingsOf(*cloned)) != shown(before));
}

void TestStepFrame::cloneJoinsItsParentAsItIs_data()
{
    addStepColumn();
}

// All settings and the base state are copied before the parent hears of its child, and it hears of it once.
void TestStepFrame::cloneJoinsItsParentAsItIs()
{
    QFETCH(QString, typeId);
    const StepPointer source = newStep(typeId);
    configure(*source);
    giveBaseState(*source);
    NotingParent parent;
    source->clone(&parent);
    QCOMPARE(parent.added,
             QStringList(typeId + ' ' + shown(settingsOf(*source)) + ' ' + recordOf(*source).toHex()));
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
    for (const StepRow &row : stepTable()) {
        const QByteArray className = row.className.toLatin1();
        const void *const expected = typeId == row.typeId ? self : nullptr;
        QCOMPARE(static_cast<const void *>(step->qt_metacast(className)), expected);
        QCOMPARE(step->inherits(className), expected != nullptr);
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

    row("by value", "list.remove", {{"targetVar", "$names"}, {"mode", 1}, {"index", "1"}, {"value", "$v"}},
        "列表移除项: $names (mode=1)", "从列表 $names 按值 $v 移除项");
    row("by value, blanks", "list.remove", {{"targetVar", " n "}, {"mode", 1}, {"value", " v\t"}},
        "列表移除项: $ n  (mode=1)", "从列表 $ n  按值  v\t 移除项");
    row("mode 2", "list.remove", {{"targetVar", "names"}, {"mode", 2}, {"value", "v"}},
        "列表移除项: $names (mode=2)", "从列表 $names 按值 v 移除项");
    row("negative mode", "list.remove", {{"targetVar", "names"}, {"mode", -2147483647 - 1}, {"value", "v"}},
        "列表移除项: $names (mode=-2147483648)", "从列表 $names 按值 v 移除项");
    row("get, blanks", "list.get", {{"sourceVar", " n "}, {"index", " 2\t"}, {"targetVar", " "}},
        "列表取项: $ n [ 2\t] -> $ ", "取列表 $ n  第  2\t 项写入 $ ");
    row("descending", "list.sort", {{"targetVar", "$scores"}, {"ascending", false}},
        "列表排序: $scores (desc)", "对列表 $scores 排序（降序）");
    row("the mark alone", "list.clear", {{"targetVar", "$"}}, "列表清空: $", "清空列表 $");
    row("a blank before the mark", "list.clear", {{"targetVar", " $n"}}, "列表清空: $ $n", "清空列表 $ $n");

    // Each step with texts of one kind in all its settings; the name of a variable is shown with its mark.
    for (const StepRow &step : stepTable()) {
        for (const QString &kind : {QString(), QString("%1"), QString("$%1"), QString(" %1 ")}) {
            QVariantMap settings;
            QString summary = step.summary;
            QString description = step.description;
            for (const StepSetting &setting : step.settings) {
                if (setting.defaultValue.userType() != QMetaType::QString)
                    continue;
                const QString text = kind.isEmpty() ? kind : kind.arg(setting.name);
                const bool isName = step.classInfo.contains({"editor_" + setting.name, "VARNAME"});
                const bool isMarked = text.isEmpty() || text.startsWith('$');
                const QString shownText = isName && !isMarked ? '$' + text : text;
                settings.insert(setting.name, text);
                summary.replace('{' + setting.name + '}', shownText);
                description.replace('{' + setting.name + '}', shownText);
            }
            QTest::addRow("%s: '%s'", qPrintable(step.typeId), qPrintable(kind))
                << step.typeId << settings << summary << description;
        }
    }
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

void TestStepFrame::summariesAskForTheName()
{
    const QStringList summaries =
        summariesOfRenamed<ListAddOperation, ListRemoveOperation, ListGetOperation, ListClearOperation,
                           ListSortOperation, ListMergeOperation, ListReverseOperation, ListDedupOperation,
                           ListIntersectOperation, ListSubtractOperation>();
    for (const QString &summary : summaries)
        QVERIFY2(summary.startsWith("another name: "), qUtf8Printable(summary));
}

void TestStepFrame::textsAreNeverShortened_data()
{
    addStepColumn();
}

void TestStepFrame::textsAreNeverShortened()
{
    QFETCH(QString, typeId);
    const StepPointer step = newStep(typeId);
    QStringList texts;
    for (const QString &filler : {QString(), QString(100000, 'x')}) {
        for (const StepSetting &setting : stepRow(typeId).settings) {
            if (setting.otherValue.userType() == QMetaType::QString)
                step->setProperty(setting.name.toUtf8(), '<' + filler + '>');
        }
        texts << step->toString().replace('<' + filler + '>', "<>")
              << step->description().replace('<' + filler + '>', "<>");
    }
    QVERIFY(texts.at(0).contains("<>") && texts.at(1).contains("<>"));
    QCOMPARE(texts.mid(2), texts.mid(0, 2));
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
    for (const StepRow &step : stepTable()) {
        if (step.settings.size() > 1)
            continue;
        QTest::addRow("%s, one text is not filled", qPrintable(step.typeId))
            << step.typeId << QVariantMap{{"targetVar", "a%1%2"}}
            << QString(step.summary).replace("{targetVar}", "$a%1%2")
            << QString(step.description).replace("{targetVar}", "$a%1%2");
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
    for (const StepRow &row : stepTable())
        QTest::newRow(row.typeId.toUtf8()) << row.typeId << QVariantMap();
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
    const Texts labels = stepRow(typeId).classInfo;

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
