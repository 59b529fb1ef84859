#include "hostapi/IEditorRegistry.h"
#include "hostapi/IOperationPlugin.h"
#include "hostapi/VariableScope.h"
#include "tests/plugins/FixturePlugin.h"
#include "tests/support/StepFamily.h"

#include <QDataStream>
#include <QtTest>

#include <cstring>
#include <type_traits>

// The names, types and signatures that plug-ins are compiled against.

static_assert(sizeof(VarType) == 4);
static_assert(std::is_same_v<std::underlying_type_t<VarType>, qint32>);
static_assert(int(VarType::Undeclared) == 0);
static_assert(int(VarType::Int) == 1);
static_assert(int(VarType::Double) == 2);
static_assert(int(VarType::String) == 3);
static_assert(int(VarType::Bool) == 4);
static_assert(int(VarType::List) == 5);
static_assert(int(VarType::Table) == 6);
static_assert(QMetaType::QVariantList == 9);

template<auto member, typename Signature>
constexpr bool hasSignature = std::is_same_v<decltype(member), Signature>;

static_assert(std::is_base_of_v<QObject, Operation>);
static_assert(std::is_abstract_v<Operation>);
static_assert(std::has_virtual_destructor_v<Operation>);
static_assert(!std::is_copy_constructible_v<Operation>);
static_assert(hasSignature<&Operation::root, QString (Operation::*)() const>);
static_assert(hasSignature<&Operation::typeId, QString (Operation::*)() const>);
static_assert(hasSignature<&Operation::typeName, QString (Operation::*)() const>);
static_assert(hasSignature<&Operation::icon, QString (Operation::*)() const>);
static_assert(hasSignature<&Operation::doOperation, void (Operation::*)() const>);
static_assert(hasSignature<&Operation::saveOperation, void (Operation::*)(QDataStream &) const>);
static_assert(hasSignature<&Operation::loadOperation, void (Operation::*)(QDataStream &)>);
static_assert(hasSignature<&Operation::toString, QString (Operation::*)() const>);
static_assert(hasSignature<&Operation::description, QString (Operation::*)() const>);
static_assert(hasSignature<&Operation::clone, Operation *(Operation::*)(QObject *) const>);
static_assert(hasSignature<&Operation::isContainer, bool (Operation::*)() const>);
static_assert(hasSignature<&Operation::childCount, int (Operation::*)() const>);
static_assert(hasSignature<&Operation::childAt, Operation *(Operation::*)(int) const>);
static_assert(hasSignature<&Operation::children, QList<Operation *> &(Operation::*)()>);
static_assert(hasSignature<&Operation::parentOperation, Operation *(Operation::*)() const>);
static_assert(hasSignature<&Operation::setParentOperation, void (Operation::*)(Operation *)>);
static_assert(hasSignature<&Operation::setVariableScope, void (Operation::*)(VariableScope *)>);

static_assert(!std::is_polymorphic_v<VariableScope>);
static_assert(hasSignature<&VariableScope::set, void (VariableScope::*)(const QString &, const QVariant &)>);
static_assert(hasSignature<&VariableScope::get, QVariant (VariableScope::*)(const QString &) const>);
static_assert(hasSignature<&VariableScope::typeOf, VarType (VariableScope::*)(const QString &) const>);

static_assert(std::is_abstract_v<IOperationPlugin>);
static_assert(std::has_virtual_destructor_v<IOperationPlugin>);
static_assert(hasSignature<&IOperationPlugin::createPrototypes, QList<Operation *> (IOperationPlugin::*)()>);
static_assert(hasSignature<&IOperationPlugin::pluginId, QString (IOperationPlugin::*)() const>);
static_assert(hasSignature<&IOperationPlugin::name, QString (IOperationPlugin::*)() const>);
static_assert(hasSignature<&IOperationPlugin::version, QString (IOperationPlugin::*)() const>);
static_assert(operationCoreApiVersion == 2);
static_assert(hasSignature<&IOperationPlugin::apiVersion, int (IOperationPlugin::*)() const>);
static_assert(hasSignature<&IOperationPlugin::manifest, PluginManifest (IOperationPlugin::*)() const>);
static_assert(
    hasSignature<&IOperationPlugin::registerEditors, void (IOperationPlugin::*)(IEditorRegistry &)>);
static_assert(
    hasSignature<&IOperationPlugin::requiredCapabilities, QStringList (IOperationPlugin::*)() const>);
static_assert(std::has_virtual_destructor_v<IEditorRegistry>);

namespace
{
// The least step: it shows what the base does by itself.
class PlainOperation : public FixtureStep
{
    Q_OBJECT

public:
    explicit PlainOperation(QObject *parent = nullptr) : FixtureStep(QString(), parent) { }

    using Operation::m_baseState;
    using Operation::m_variableScope;
};

class PlainRegistry : public IEditorRegistry
{
};

QByteArray recordOf(const Operation &step)
{
    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    step.saveOperation(stream);
    return record;
}

// The Itanium C++ ABI keeps a virtual member's offset in the table, plus 1, in its pointer. 32- and 64-bit
// ARM keep the offset itself and mark virtual members elsewhere.
#if defined(Q_CC_GNU) && !defined(Q_PROCESSOR_ARM)
constexpr bool slotsAreReadable = true;
#else
constexpr bool slotsAreReadable = false;
#endif

template<typename Member>
int slotOf(Member member)
{
    quintptr offset = 0;
    std::memcpy(&offset, &member, sizeof offset);
    return int((offset - 1) / sizeof(void *));
}
} // namespace

class TestContract : public QObject
{
    Q_OBJECT

private slots:
    void operationSlots_data();
    void operationSlots();
    void pluginSlots_data();
    void pluginSlots();
    void protectedData();
    void operationMetaObject();
    void newOperation();
    void baseRecord();
    void children();
    void parentOperation();
    void variableScope();
    void baseStateIsCopied_data();
    void baseStateIsCopied();
    void manifestFields();
    void pluginInterface();
};

void TestContract::operationSlots_data()
{
    QTest::addColumn<int>("slot");
    QTest::addColumn<int>("expected");
    // The eleven virtual members of QObject come first; a destructor takes two slots.
    QTest::newRow("metaObject") << slotOf(&QObject::metaObject) << 0;
    QTest::newRow("qt_metacast") << slotOf(&QObject::qt_metacast) << 1;
    QTest::newRow("qt_metacall") << slotOf(&QObject::qt_metacall) << 2;
    QTest::newRow("event") << slotOf(&QObject::event) << 5;
    QTest::newRow("root") << slotOf(&Operation::root) << 12;
    QTest::newRow("typeId") << slotOf(&Operation::typeId) << 13;
    QTest::newRow("typeName") << slotOf(&Operation::typeName) << 14;
    QTest::newRow("icon") << slotOf(&Operation::icon) << 15;
    QTest::newRow("doOperation") << slotOf(&Operation::doOperation) << 16;
    QTest::newRow("saveOperation") << slotOf(&Operation::saveOperation) << 17;
    QTest::newRow("loadOperation") << slotOf(&Operation::loadOperation) << 18;
    QTest::newRow("toString") << slotOf(&Operation::toString) << 19;
    QTest::newRow("description") << slotOf(&Operation::description) << 20;
    QTest::newRow("clone") << slotOf(&Operation::clone) << 21;
    QTest::newRow("isContainer") << slotOf(&Operation::isContainer) << 22;
    QTest::newRow("childCount") << slotOf(&Operation::childCount) << 23;
    QTest::newRow("childAt") << slotOf(&Operation::childAt) << 24;
    QTest::newRow("children") << slotOf(&Operation::children) << 25;
    QTest::newRow("parentOperation") << slotOf(&Operation::parentOperation) << 26;
    QTest::newRow("setParentOperation") << slotOf(&Operation::setParentOperation) << 27;
    QTest::newRow("setVariableScope") << slotOf(&Operation::setVariableScope) << 28;
}

void TestContract::operationSlots()
{
    if (!slotsAreReadable)
        QSKIP("Member pointers do not hold slot offsets on this platform.");
    QFETCH(int, slot);
    QFETCH(int, expected);
    QCOMPARE(slot, expected);
}

void TestContract::pluginSlots_data()
{
    QTest::addColumn<int>("slot");
    QTest::addColumn<int>("expected");
    // The destructor takes the slots 0 and 1.
    QTest::newRow("createPrototypes") << slotOf(&IOperationPlugin::createPrototypes) << 2;
    QTest::newRow("pluginId") << slotOf(&IOperationPlugin::pluginId) << 3;
    QTest::newRow("name") << slotOf(&IOperationPlugin::name) << 4;
    QTest::newRow("version") << slotOf(&IOperationPlugin::version) << 5;
    QTest::newRow("apiVersion") << slotOf(&IOperationPlugin::apiVersion) << 6;
    QTest::newRow("manifest") << slotOf(&IOperationPlugin::manifest) << 7;
    QTest::newRow("registerEditors") << slotOf(&IOperationPlugin::registerEditors) << 8;
    QTest::newRow("requiredCapabilities") << slotOf(&IOperationPlugin::requiredCapabilities) << 9;
}

void TestContract::pluginSlots()
{
    operationSlots();
}

void TestContract::protectedData()
{
    const PlainOperation step;
    const auto offset = [&step](const void *member) {
        return static_cast<const char *>(member) - reinterpret_cast<const char *>(&step);
    };
    QCOMPARE(offset(&step.m_baseState), qptrdiff(sizeof(QObject)));
    QCOMPARE(offset(&step.m_variableScope), qptrdiff(sizeof(Operation) - sizeof(void *)));
    QCOMPARE(sizeof step.m_baseState, size_t(4));
}

void TestContract::operationMetaObject()
{
    const QMetaObject &meta = Operation::staticMetaObject;
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(QString(meta.className()), QString("Operation"));
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.methodCount(), meta.methodOffset());
    QCOMPARE(meta.classInfoCount(), 0);

    PlainOperation step;
    QCOMPARE(step.qt_metacast("Operation"), static_cast<void *>(static_cast<Operation *>(&step)));
    QCOMPARE(step.qt_metacast("QObject"), static_cast<void *>(static_cast<QObject *>(&step)));
    QVERIFY(!step.qt_metacast("VariableScope"));
    QVERIFY(!step.qt_metacast(nullptr));
}

void TestContract::newOperation()
{
    const PlainOperation step;
    QVERIFY(!step.parent());
    QCOMPARE(step.m_baseState, 0u);
    QVERIFY(!step.m_variableScope);
    QVERIFY(!step.isContainer());
    QCOMPARE(step.childCount(), 0);
    QVERIFY(!step.childAt(0));
    QVERIFY(!step.parentOperation());

    QObject parent;
    QCOMPARE((new PlainOperation(&parent))->parent(), &parent);
}

void TestContract::baseRecord()
{
    PlainOperation step;
    step.m_baseState = 0x89abcdef;
    QCOMPARE(recordOf(step).toHex(), QByteArray("89abcdef"));

    PlainOperation loaded;
    QDataStream stream(QByteArray::fromHex("fedcba98 77"));
    loaded.loadOperation(stream);
    QCOMPARE(loaded.m_baseState, 0xfedcba98);
    QCOMPARE(stream.device()->pos(), 4);

    QDataStream cut(QByteArray::fromHex("fedcba"));
    loaded.loadOperation(cut);
    QCOMPARE(loaded.m_baseState, 0u);
    QCOMPARE(cut.status(), QDataStream::ReadPastEnd);
}

void TestContract::children()
{
    PlainOperation container;
    PlainOperation first;
    PlainOperation second;
    container.children() = {&first, &second};
    QCOMPARE(container.childCount(), 2);
    QCOMPARE(container.childAt(0), &first);
    QCOMPARE(container.childAt(1), &second);
    for (const int position : {-1, 2, 100})
        QVERIFY(!container.childAt(position));
    container.children().removeFirst();
    QCOMPARE(container.childCount(), 1);
    QCOMPARE(container.childAt(0), &second);

    QVERIFY(!container.isContainer());
    QVERIFY(!first.parent());
    QVERIFY(!first.parentOperation());
}

void TestContract::parentOperation()
{
    PlainOperation container;
    PlainOperation step;
    step.setParentOperation(&container);
    QCOMPARE(step.parentOperation(), &container);
    QVERIFY(!step.parent());
    QCOMPARE(container.childCount(), 0);
    step.setParentOperation(nullptr);
    QVERIFY(!step.parentOperation());
}

void TestContract::variableScope()
{
    PlainOperation step;
    VariableScope scope;
    step.setVariableScope(&scope);
    QCOMPARE(step.m_variableScope, &scope);
    step.setVariableScope(nullptr);
    QVERIFY(!step.m_variableScope);
}

void TestContract::baseStateIsCopied_data()
{
    QTest::addColumn<QString>("typeId");
    for (const StepPointer &step : newStepOfEachKind())
        QTest::newRow(step->typeId().toUtf8()) << step->typeId();
}

void TestContract::baseStateIsCopied()
{
    QFETCH(QString, typeId);
    for (const char *state : {"00000000", "00000001", "80000000", "ffffffff"}) {
        const StepPointer step = newStep(typeId);
        QDataStream stream(QByteArray::fromHex(state) + recordOf(*step).mid(4));
        step->loadOperation(stream);
        const StepPointer cloned(step->clone(nullptr));
        QCOMPARE(recordOf(*cloned).left(4).toHex(), QByteArray(state));
        const StepPointer clonedAgain(cloned->clone(nullptr));
        QCOMPARE(recordOf(*clonedAgain), recordOf(*step));
    }
}

// The binding names the fields in order of declaration, and compiles for nine fields only.
void TestContract::manifestFields()
{
    PluginManifest manifest;
    auto &[pluginId, name, version, apiVersion, typeIdPrefix, requiredCapabilities, auxiliaryList,
           categoryOrder, typeOrder] = manifest;
    QCOMPARE(&pluginId, &manifest.pluginId);
    QCOMPARE(&name, &manifest.name);
    QCOMPARE(&version, &manifest.version);
    QCOMPARE(&apiVersion, &manifest.apiVersion);
    QCOMPARE(&typeIdPrefix, &manifest.typeIdPrefix);
    QCOMPARE(&requiredCapabilities, &manifest.requiredCapabilities);
    QCOMPARE(&auxiliaryList, &manifest.auxiliaryList);
    QCOMPARE(&categoryOrder, &manifest.categoryOrder);
    QCOMPARE(&typeOrder, &manifest.typeOrder);
    static_assert(std::is_same_v<decltype(manifest.pluginId), QString>);
    static_assert(std::is_same_v<decltype(manifest.name), QString>);
    static_assert(std::is_same_v<decltype(manifest.version), QString>);
    static_assert(std::is_same_v<decltype(manifest.apiVersion), int>);
    static_assert(std::is_same_v<decltype(manifest.typeIdPrefix), QString>);
    static_assert(std::is_same_v<decltype(manifest.requiredCapabilities), QStringList>);
    static_assert(std::is_same_v<decltype(manifest.auxiliaryList), QStringList>);
    static_assert(std::is_same_v<decltype(manifest.categoryOrder), QMap<QString, int>>);
    static_assert(std::is_same_v<decltype(manifest.typeOrder), QMap<QString, int>>);

    QVERIFY(pluginId.isEmpty() && name.isEmpty() && version.isEmpty() && typeIdPrefix.isEmpty());
    QVERIFY(requiredCapabilities.isEmpty() && auxiliaryList.isEmpty());
    QVERIFY(categoryOrder.isEmpty() && typeOrder.isEmpty());
    QCOMPARE(apiVersion, 0);
}

void TestContract::pluginInterface()
{
    QCOMPARE(QString(qobject_interface_iid<IOperationPlugin *>()),
             QString("com.tallowby.Quillmap.IOperationPlugin/1.0"));
    FixturePlugin plugin;
    QCOMPARE(qobject_cast<IOperationPlugin *>(static_cast<QObject *>(&plugin)),
             static_cast<IOperationPlugin *>(&plugin));
    QObject other;
    QVERIFY(!qobject_cast<IOperationPlugin *>(&other));
    PlainRegistry registry;
    plugin.registerEditors(registry);
}

QTEST_GUILESS_MAIN(TestContract)
#include "tst_contract.moc"
