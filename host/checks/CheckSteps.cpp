#include "CheckSteps.h"

#include "CheckContext.h"
#include "host/checks/trial/SettingValues.h"
#include "host/plugins/EditorSchema.h"
#include "host/running/Breadcrumb.h"
#include "host/running/RunReport.h"
#include "host/running/WarningCapture.h"
#include "host/values/QuotedText.h"

#include <limits>
#include <random>

namespace StepHost
{
namespace
{
// Opens the base's protected members; no object is ever of this class.
class OpenOperation : public Operation
{
public:
    static constexpr quint32 Operation::*baseState = &OpenOperation::m_baseState;
    static constexpr VariableScope *Operation::*scope = &OpenOperation::m_variableScope;
};

// One of the values that `setting` has to be able to hold, and not `value`.
QVariant storableOther(const QMetaProperty &setting, const QVariant &value, int number)
{
    const QVariantList values = storableValues(setting);
    for (int i = 0; i < values.size(); ++i) {
        const QVariant &other = values.at((i + number) % values.size());
        const bool isSame = setting.isEnumType() ? other.toInt() == value.toInt() : isSameValue(other, value);
        if (!isSame)
            return other;
    }
    return QVariant();
}

QVariant otherValue(const QMetaProperty &setting, const QVariant &value, int number)
{
    switch (setting.isEnumType() ? int(QMetaType::UnknownType) : setting.userType()) {
    case QMetaType::QString:
        return QStringLiteral(" value %1 of %2 ").arg(number).arg(value.toString());
    case QMetaType::Bool:
        return !value.toBool();
    case QMetaType::Int:
        return value.toInt() == 0 ? 1 : 0;
    case QMetaType::UInt:
        return value.toUInt() == 0 ? 1u : 0u;
    case QMetaType::Double:
        return value.toDouble() + number + 0.5;
    default:
        return storableOther(setting, value, number);
    }
}

void setAll(Operation &step, int type, const QVariant &value)
{
    const QVector<QMetaProperty> settings = settingsOf(step);
    for (const QMetaProperty &setting : settings) {
        if (setting.userType() == type)
            setting.write(&step, value);
    }
}

// What a user may have put into a setting: the variables of fillScope(), members of them, and literals.
const QStringList &typedTexts()
{
    static const QStringList texts{QString(),
                                   QStringLiteral("items"),
                                   QStringLiteral("$items"),
                                   QStringLiteral("more"),
                                   QStringLiteral("table"),
                                   QStringLiteral("number"),
                                   QStringLiteral("$number"),
                                   QStringLiteral("real"),
                                   QStringLiteral("text"),
                                   QStringLiteral("flag"),
                                   QStringLiteral("odd"),
                                   QStringLiteral("missing"),
                                   QStringLiteral("$items.Count"),
                                   QStringLiteral("$missing.Rows"),
                                   QStringLiteral("0"),
                                   QStringLiteral("-1"),
                                   QStringLiteral("99999999999"),
                                   QStringLiteral("a text")};
    return texts;
}

using Random = std::mt19937;

// Not std::uniform_int_distribution: its numbers differ between libraries.
int below(int limit, Random &random)
{
    return int(random() % std::mt19937::result_type(limit));
}

void setAtRandom(Operation &step, const EditorSchema &schema, Random &random)
{
    const QVector<QMetaProperty> settings = settingsOf(step);
    for (int i = 0; i < settings.size(); ++i) {
        const SettingSchema &setting = schema.settings.at(i);
        const QMetaProperty &property = settings.at(i);
        if (setting.type == QMetaType::QString)
            property.write(&step, typedTexts().at(below(typedTexts().size(), random)));
        else if (setting.type == QMetaType::Bool)
            property.write(&step, below(2, random) == 1);
        else if (setting.editor == EditorKind::Choice && !setting.choices.isEmpty())
            property.write(&step, below(setting.choices.size(), random));
        else if (setting.type == QMetaType::Int)
            property.write(&step, edgeIntegers().at(below(edgeIntegers().size(), random)));
    }
}
} // namespace

QVariantList readSettings(const Operation &step)
{
    QVariantList values;
    const QVector<QMetaProperty> settings = settingsOf(step);
    for (const QMetaProperty &setting : settings)
        values.append(setting.read(&step));
    return values;
}

void expectSettings(const Operation &step, const QVariantList &expected, const QString &what)
{
    const QVector<QMetaProperty> settings = settingsOf(step);
    const QVariantList actual = readSettings(step);
    for (int i = 0; i < settings.size(); ++i) {
        if (!isSameValue(actual.at(i), expected.value(i)))
            fail(QStringLiteral("%1, the setting %2 is %3 instead of %4")
                     .arg(what, quoted(QString::fromUtf8(settings.at(i).name())), shownValue(actual.at(i)),
                          shownValue(expected.value(i))));
    }
}

void changeSetting(Operation &step, const QMetaProperty &setting)
{
    const QVariant value = otherValue(setting, setting.read(&step), setting.propertyIndex());
    if (value.isValid())
        setting.write(&step, value);
}

void changeSettings(Operation &step)
{
    const QVector<QMetaProperty> settings = settingsOf(step);
    for (const QMetaProperty &setting : settings)
        changeSetting(step, setting);
}

void changeTexts(Operation &step)
{
    const QVector<QMetaProperty> settings = settingsOf(step);
    for (const QMetaProperty &setting : settings) {
        const QString text =
            setting.userType() == QMetaType::QString ? setting.read(&step).toString() : QString();
        if (!text.isEmpty())
            setting.write(&step, QString(QLatin1Char(' ') + text + QLatin1String(" and more ")));
    }
}

const QStringList &hostileTexts()
{
    static const QStringList texts{QString(),
                                   QStringLiteral("  leading and trailing blanks \t"),
                                   QStringLiteral("several\nlines\r\n"),
                                   QString(QChar(0)) + QLatin1Char('a') + QChar(0),
                                   QString(QChar(0xd800)),
                                   QString(QChar(0xdfff)) + QLatin1Char('x') + QChar(0xdbff),
                                   QStringLiteral("%1 %2 %99 %n %L1 %s"),
                                   QStringLiteral("$"),
                                   QStringLiteral("$."),
                                   QStringLiteral("$$a.b.c"),
                                   QStringLiteral("-2147483649"),
                                   QStringLiteral("1e999"),
                                   QString(1000, QLatin1Char('[')),
                                   QString(100000, QLatin1Char('x'))};
    return texts;
}

const QVector<int> &edgeIntegers()
{
    static const QVector<int> integers{0, 1, -1, std::numeric_limits<int>::min(),
                                       std::numeric_limits<int>::max()};
    return integers;
}

void setTexts(Operation &step, const QString &text)
{
    setAll(step, QMetaType::QString, text);
}

void setIntegers(Operation &step, int number)
{
    setAll(step, QMetaType::Int, number);
}

quint32 baseStateOf(const Operation &step)
{
    return step.*OpenOperation::baseState;
}

void setBaseState(Operation &step, quint32 state)
{
    step.*OpenOperation::baseState = state;
}

const VariableScope *scopeOf(const Operation &step)
{
    return step.*OpenOperation::scope;
}

void fillScope(VariableScope &scope)
{
    scope.set(QStringLiteral("items"),
              QVariantList{3, 1.5, QStringLiteral("b"), true, QVariantList{1, 2}, QVariant(), 3});
    scope.set(QStringLiteral("more"), QVariantList{QStringLiteral("b"), 3, 7});
    scope.declare(QStringLiteral("table"), VarType::Table);
    scope.set(QStringLiteral("table"), QVariantList{QVariantList{1, 2}, QVariantList{3, 4}});
    scope.set(QStringLiteral("number"), 2);
    scope.set(QStringLiteral("real"), 2.5);
    scope.set(QStringLiteral("text"), QStringLiteral("some text"));
    scope.set(QStringLiteral("flag"), true);
    scope.declare(QStringLiteral("odd"), VarType::List);
    scope.set(QStringLiteral("odd"), QStringLiteral("not a list"));
}

QByteArray snapshotOf(const VariableScope &scope)
{
    QByteArray snapshot;
    QDataStream stream(&snapshot, QIODevice::WriteOnly);
    const std::vector<ScriptVariable> variables = variablesOf(scope);
    for (const ScriptVariable &variable : variables)
        stream << variable.name << qint32(variable.type) << variable.value;
    return snapshot;
}

void forEachRun(CheckContext &context, const std::function<void(VariableScope &)> &prepare,
                const std::function<void(const StepRun &)> &check)
{
    constexpr int runsAtRandom = 300;
    context.forEachStep([&](Operation &step) {
        const EditorSchema schema = readEditorSchema(*step.metaObject());
        Random random(1);
        for (int number = 0; number < typedTexts().size() + runsAtRandom; ++number) {
            if (number < typedTexts().size())
                setTexts(step, typedTexts().at(number));
            else
                setAtRandom(step, schema, random);
            VariableScope scope;
            prepare(scope);
            StepRun run{step, readSettings(step), snapshotOf(scope), QByteArray(), QStringList()};
            step.setVariableScope(&scope);
            {
                WarningCapture log;
                noteCall("doOperation()", &step);
                step.doOperation();
                run.warnings =
                    log.takeLines().join(QLatin1Char('\n')).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
            }
            step.setVariableScope(nullptr);
            run.after = snapshotOf(scope);
            check(run);
        }
    });
}

QString settingsText(const StepRun &run)
{
    QStringList texts;
    const QVector<QMetaProperty> settings = settingsOf(run.step);
    for (int i = 0; i < settings.size(); ++i)
        texts.append(QString::fromUtf8(settings.at(i).name()) + QLatin1String(" = ")
                     + shownValue(run.settings.at(i)));
    return texts.isEmpty() ? QStringLiteral("no settings") : texts.join(QLatin1String(", "));
}
} // namespace StepHost
