#include "hostapi/IEditorRegistry.h"
#include "hostapi/IOperationPlugin.h"
#include "hostapi/Operation.h"
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
#include "plugin/ListOperPlugin.h"
#include "tests/support/TestPaths.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QtTest>

#include <cstring>

/// Compares the binary interface of the libraries with the reference in tests/abi: plug-ins are compiled
/// against it, so a change breaks those that are in use. script/renew-abi renews the reference.
///
/// The program is compiled without access control, so that it can name private fields.
class TestAbi : public QObject
{
    Q_OBJECT

private slots:
    void exportedNames_data();
    void exportedNames();
    void layout();
};

// A member's name and a pointer to it.
#define NAMED(member) #member, &member

namespace
{
// Where the Itanium C++ ABI, which GCC and Clang follow, keeps the number that is wanted of a pointer to a
// member: the offset of a field, and one more than the offset of a virtual function in its table.
template<typename Member>
int memberNumber(Member member)
{
    std::ptrdiff_t number = 0;
    std::memcpy(&number, &member, sizeof number);
    return static_cast<int>(number);
}

class LayoutText
{
public:
    template<typename Type>
    void type(const char *name)
    {
        m_lines.append(QStringLiteral("%1: %2 bytes, aligned to %3")
                           .arg(QLatin1String(name))
                           .arg(sizeof(Type))
                           .arg(alignof(Type)));
    }

    template<typename Class, typename Field>
    void field(const char *name, Field Class::*member)
    {
        line(memberNumber(member), "byte", name);
    }

    template<typename Function>
    void slot(const char *name, Function function)
    {
        line((memberNumber(function) - 1) / int(sizeof(void *)), "slot", name);
    }

    template<typename Enum>
    void value(const char *name, Enum value)
    {
        line(static_cast<int>(value), "value", name);
    }

    QStringList lines() const
    {
        return m_lines;
    }

private:
    void line(int number, const char *unit, const char *name)
    {
        m_lines.append(
            QStringLiteral("  %1: %2 %3").arg(QLatin1String(name)).arg(QLatin1String(unit)).arg(number));
    }

    QStringList m_lines;
};

void addOperation(LayoutText &text)
{
    text.type<Operation>("Operation");
    text.field(NAMED(Operation::m_baseState));
    text.field(NAMED(Operation::m_children));
    text.field(NAMED(Operation::m_parentOperation));
    text.field(NAMED(Operation::m_variableScope));
    text.slot(NAMED(Operation::root));
    text.slot(NAMED(Operation::typeId));
    text.slot(NAMED(Operation::typeName));
    text.slot(NAMED(Operation::icon));
    text.slot(NAMED(Operation::doOperation));
    text.slot(NAMED(Operation::saveOperation));
    text.slot(NAMED(Operation::loadOperation));
    text.slot(NAMED(Operation::toString));
    text.slot(NAMED(Operation::description));
    text.slot(NAMED(Operation::clone));
    text.slot(NAMED(Operation::isContainer));
    text.slot(NAMED(Operation::childCount));
    text.slot(NAMED(Operation::childAt));
    text.slot(NAMED(Operation::children));
    text.slot(NAMED(Operation::parentOperation));
    text.slot(NAMED(Operation::setParentOperation));
    text.slot(NAMED(Operation::setVariableScope));
}

void addVariableScope(LayoutText &text)
{
    text.type<VarType>("VarType");
    text.value("VarType::Undeclared", VarType::Undeclared);
    text.value("VarType::Int", VarType::Int);
    text.value("VarType::Double", VarType::Double);
    text.value("VarType::String", VarType::String);
    text.value("VarType::Bool", VarType::Bool);
    text.value("VarType::List", VarType::List);
    text.value("VarType::Table", VarType::Table);
    text.type<VariableScope>("VariableScope");
    text.field(NAMED(VariableScope::m_variables));
    text.field(NAMED(VariableScope::m_order));
    text.field(NAMED(VariableScope::m_writeCount));
}

void addPluginInterface(LayoutText &text)
{
    text.type<IOperationPlugin>("IOperationPlugin");
    text.slot(NAMED(IOperationPlugin::createPrototypes));
    text.slot(NAMED(IOperationPlugin::pluginId));
    text.slot(NAMED(IOperationPlugin::name));
    text.slot(NAMED(IOperationPlugin::version));
    text.slot(NAMED(IOperationPlugin::apiVersion));
    text.slot(NAMED(IOperationPlugin::manifest));
    text.slot(NAMED(IOperationPlugin::registerEditors));
    text.slot(NAMED(IOperationPlugin::requiredCapabilities));
    text.type<PluginManifest>("PluginManifest");
    text.field(NAMED(PluginManifest::pluginId));
    text.field(NAMED(PluginManifest::name));
    text.field(NAMED(PluginManifest::version));
    text.field(NAMED(PluginManifest::apiVersion));
    text.field(NAMED(PluginManifest::typeIdPrefix));
    text.field(NAMED(PluginManifest::requiredCapabilities));
    text.field(NAMED(PluginManifest::auxiliaryList));
    text.field(NAMED(PluginManifest::categoryOrder));
    text.field(NAMED(PluginManifest::typeOrder));
    text.type<IEditorRegistry>("IEditorRegistry");
}

void addSteps(LayoutText &text)
{
    text.type<ListAddOperation>("ListAddOperation");
    text.field(NAMED(ListAddOperation::m_targetVar));
    text.field(NAMED(ListAddOperation::m_value));
    text.field(NAMED(ListAddOperation::m_index));
    text.type<ListRemoveOperation>("ListRemoveOperation");
    text.field(NAMED(ListRemoveOperation::m_targetVar));
    text.field(NAMED(ListRemoveOperation::m_mode));
    text.field(NAMED(ListRemoveOperation::m_index));
    text.field(NAMED(ListRemoveOperation::m_value));
    text.type<ListGetOperation>("ListGetOperation");
    text.field(NAMED(ListGetOperation::m_sourceVar));
    text.field(NAMED(ListGetOperation::m_index));
    text.field(NAMED(ListGetOperation::m_targetVar));
    text.type<ListClearOperation>("ListClearOperation");
    text.field(NAMED(ListClearOperation::m_targetVar));
    text.type<ListSortOperation>("ListSortOperation");
    text.field(NAMED(ListSortOperation::m_targetVar));
    text.field(NAMED(ListSortOperation::m_ascending));
    text.type<ListMergeOperation>("ListMergeOperation");
    text.field(NAMED(ListMergeOperation::m_listA));
    text.field(NAMED(ListMergeOperation::m_listB));
    text.field(NAMED(ListMergeOperation::m_targetVar));
    text.type<ListReverseOperation>("ListReverseOperation");
    text.field(NAMED(ListReverseOperation::m_targetVar));
    text.type<ListDedupOperation>("ListDedupOperation");
    text.field(NAMED(ListDedupOperation::m_targetVar));
    text.type<ListIntersectOperation>("ListIntersectOperation");
    text.field(NAMED(ListIntersectOperation::m_listA));
    text.field(NAMED(ListIntersectOperation::m_listB));
    text.field(NAMED(ListIntersectOperation::m_targetVar));
    text.type<ListSubtractOperation>("ListSubtractOperation");
    text.field(NAMED(ListSubtractOperation::m_listA));
    text.field(NAMED(ListSubtractOperation::m_listB));
    text.field(NAMED(ListSubtractOperation::m_targetVar));
    text.type<ListOperPlugin>("ListOperPlugin");
}

// The text of a reference as far as it holds for this build: Clang's address sanitizer pads what it guards.
QString comparable(QString text)
{
#ifdef QUILLMAP_SANITIZED
    static const QRegularExpression size("^(vtable for .*), \\d+ bytes$",
                                         QRegularExpression::MultilineOption);
    text.replace(size, "\\1");
#endif
    return text;
}

void compareWithReference(QStringList lines, const QString &name)
{
    QFile file(TestPaths::source(QStringLiteral("tests/abi/") + name));
    if (qEnvironmentVariableIsSet("QUILLMAP_RENEW_ABI")) {
        QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(file.errorString()));
        file.write(lines.join('\n').toUtf8() + '\n');
        QSKIP("The reference is renewed.");
    }
    lines = comparable(lines.join('\n')).split('\n');
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName() + ": " + file.errorString()));
    const QStringList reference =
        comparable(QString::fromUtf8(file.readAll()).remove('\r')).split('\n', Qt::SkipEmptyParts);

    QStringList differences;
    for (const QString &line : reference) {
        if (!lines.contains(line))
            differences.append("- " + line);
    }
    for (const QString &line : lines) {
        if (!reference.contains(line))
            differences.append("+ " + line);
    }
    if (differences.isEmpty() && lines != reference)
        differences.append("The same lines stand in another order.");
    if (!differences.isEmpty()) {
        const QString message = "The binary interface is not the one in " + file.fileName() + ":\n"
            + differences.join('\n')
            + "\nPlug-ins that were compiled against it would break. Undo the change; or, if it is meant, "
              "raise the contract's version and run script/renew-abi.";
        QFAIL(qPrintable(message));
    }
}
} // namespace

void TestAbi::exportedNames_data()
{
    QTest::addColumn<QString>("library");
    QTest::addColumn<QString>("reference");
    QTest::newRow("OperationCore") << TestPaths::operationCore() << "OperationCore.names";
    QTest::newRow("ListOperPlugin") << TestPaths::listPlugin() << "ListOperPlugin.names";
}

void TestAbi::exportedNames()
{
    QFETCH(QString, library);
    QFETCH(QString, reference);
    QFile file(library);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(library + ": " + file.errorString()));
    if (!file.read(4).startsWith("\x7f"
                                 "ELF"))
        QSKIP("Exported names are compared on systems with ELF libraries only.");
    const QString nm = QStandardPaths::findExecutable("nm");
    if (nm.isEmpty())
        QSKIP("The program nm, of the package binutils, is not installed.");
    QProcess process;
    process.start(nm, {"--dynamic", "--defined-only", "--demangle", "--format=posix", library});
    QVERIFY2(process.waitForFinished() && process.exitCode() == 0, process.readAllStandardError());

    // Inline functions and templates (W) come and go with the compiler and its options. The size of a table
    // of virtual functions tells of one that was added.
    const QRegularExpression ownName("^((?:vtable for |typeinfo for |typeinfo name for )?"
                                     "(?:Operation|VariableScope|IOperationPlugin|IEditorRegistry"
                                     "|List[A-Za-z]+Operation|ListOperPlugin|qt_plugin_[a-z_]+)"
                                     "(?:::.*)?) [TDBRV] [0-9a-f]+ ([0-9a-f]+)$");
    // What begins with an underscore belongs to the compiler and the linker.
    const QRegularExpression otherName("^([^_].*) [TDBR] [0-9a-f]+ [0-9a-f]*$");
    QStringList names;
    QStringList otherNames;
    const QStringList symbols = QString::fromUtf8(process.readAllStandardOutput()).split('\n');
    for (const QString &symbol : symbols) {
        const QRegularExpressionMatch match = ownName.match(symbol);
        if (!match.hasMatch()) {
            if (otherName.match(symbol).hasMatch())
                otherNames.append(symbol);
            continue;
        }
        QString name = match.captured(1);
        if (name.startsWith("vtable"))
            name += QStringLiteral(", %1 bytes").arg(match.captured(2).toInt(nullptr, 16));
        names.append(name);
    }
    QCOMPARE(otherNames, QStringList());
    names.removeDuplicates();
    names.sort();
    compareWithReference(names, reference);
}

void TestAbi::layout()
{
    if (sizeof(void *) != 8)
        QSKIP("The reference is that of 64-bit systems.");
    LayoutText text;
    addOperation(text);
    addVariableScope(text);
    addPluginInterface(text);
    addSteps(text);
    compareWithReference(text.lines(), "layout");
}

QTEST_GUILESS_MAIN(TestAbi)
#include "tst_abi.moc"
