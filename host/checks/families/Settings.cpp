#include "host/checks/CheckContext.h"
#include "host/checks/CheckSteps.h"
#include "host/checks/trial/SettingValues.h"
#include "host/plugins/EditorSchema.h"
#include "host/running/Breadcrumb.h"
#include "host/values/QuotedText.h"

#include <QMetaMethod>

#include <limits>

namespace StepHost
{
namespace
{
QString nameOf(const QMetaProperty &setting)
{
    return quoted(QString::fromUtf8(setting.name()));
}

// Writes each of `values` to every setting of type `type` and expects to read it back.
void expectStored(CheckContext &context, int type, const QVariantList &values, const char *what)
{
    context.forEachStep([&](Operation &step) {
        const QVector<QMetaProperty> settings = settingsOf(step);
        for (const QMetaProperty &setting : settings) {
            for (const QVariant &value : values) {
                if (setting.userType() != type)
                    continue;
                setting.write(&step, value);
                if (setting.read(&step) != value)
                    fail(QStringLiteral("the setting %1 does not store %2 as they are")
                             .arg(nameOf(setting), QLatin1String(what)));
            }
        }
    });
}

void checkAccess(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        const QVector<QMetaProperty> settings = settingsOf(step);
        for (const QMetaProperty &setting : settings) {
            if (!setting.isReadable() || !setting.read(&step).isValid())
                fail(QStringLiteral("the setting %1 cannot be read").arg(nameOf(setting)));
            if (!setting.isWritable() || !setting.write(&step, setting.read(&step)))
                fail(QStringLiteral("the setting %1 cannot be written").arg(nameOf(setting)));
        }
    });
}

void checkBlanks(CheckContext &context)
{
    expectStored(context, QMetaType::QString,
                 {QStringLiteral("  both  ends  "), QStringLiteral("\ttab\t"), QStringLiteral("line\n"),
                  QStringLiteral("   ")},
                 "blanks");
}

void checkEmptyText(CheckContext &context)
{
    expectStored(context, QMetaType::QString, {QStringLiteral("x"), QString(QLatin1String(""))},
                 "empty texts");
}

void checkLongText(CheckContext &context)
{
    expectStored(context, QMetaType::QString, {QString(100000, QLatin1Char('x'))}, "100,000 characters");
}

void checkNul(CheckContext &context)
{
    expectStored(context, QMetaType::QString,
                 {QString(QChar(0)), QStringLiteral("a") + QChar(0) + QLatin1Char('b')}, "NUL characters");
}

void checkSurrogates(CheckContext &context)
{
    expectStored(context, QMetaType::QString,
                 {QString(QChar(0xd800)), QString(QChar(0xdc00)) + QLatin1Char('x') + QChar(0xdbff)},
                 "lone surrogates");
}

void checkIntegers(CheckContext &context)
{
    QVariantList integers;
    for (const int integer : edgeIntegers())
        integers.append(integer);
    expectStored(context, QMetaType::Int, integers, "extreme integers");
}

void checkBooleans(CheckContext &context)
{
    expectStored(context, QMetaType::Bool, {true, false, true}, "both truth values");
}

void checkDoubles(CheckContext &context)
{
    expectStored(
        context, QMetaType::Double,
        {0.1, -1e308, std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::infinity()},
        "extreme numbers");
}

// Calls `check` with every setting of every step and each value that it has to be able to hold.
void forEachValue(CheckContext &context,
                  const std::function<void(Operation &, const QMetaProperty &, const QVariant &)> &check)
{
    context.forEachStep([&check](Operation &step) {
        const QVector<QMetaProperty> settings = settingsOf(step);
        for (const QMetaProperty &setting : settings) {
            const QVariantList values = storableValues(setting);
            for (const QVariant &value : values) {
                noteCall("a setter", &step);
                check(step, setting, value);
            }
        }
    });
}

void expectRead(const Operation &step, const QMetaProperty &setting, const QVariant &value, const char *when)
{
    const QVariant actual = setting.read(&step);
    const bool isSame = setting.isEnumType() ? actual.toInt() == value.toInt() : isSameValue(actual, value);
    if (!isSame)
        fail(QStringLiteral("the setting %1 is %2 after it was set to %3%4")
                 .arg(nameOf(setting), shownValue(actual), shownValue(value), QLatin1String(when)));
}

void checkValues(CheckContext &context)
{
    forEachValue(context, [](Operation &step, const QMetaProperty &setting, const QVariant &value) {
        setting.write(&step, value);
        expectRead(step, setting, value, "");
        expectRead(step, setting, value, ", when it is read again");
    });
}

void checkAgain(CheckContext &context)
{
    forEachValue(context, [](Operation &step, const QMetaProperty &setting, const QVariant &value) {
        setting.write(&step, value);
        setting.write(&step, value);
        expectRead(step, setting, value, " twice");
    });
}

void checkWithScope(CheckContext &context)
{
    VariableScope scope;
    fillScope(scope);
    forEachValue(context, [&scope](Operation &step, const QMetaProperty &setting, const QVariant &value) {
        step.setVariableScope(&scope);
        setting.write(&step, value);
        expectRead(step, setting, value, " while a scope was attached");
        step.setVariableScope(nullptr);
    });
}

// What a setting that others depend on can be.
QVariantList branchesOf(const QMetaProperty &setting, const SettingSchema &schema)
{
    QVariantList values;
    if (schema.editor == EditorKind::Choice && setting.userType() == QMetaType::Int) {
        for (int i = 0; i < schema.choices.size(); ++i)
            values.append(i);
    } else if (setting.isEnumType() || setting.userType() == QMetaType::Bool) {
        values = storableValues(setting);
    }
    return values;
}

void checkHidden(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        const EditorSchema schema = readEditorSchema(*step.metaObject());
        const QVector<QMetaProperty> settings = settingsOf(step);
        for (int i = 0; i < settings.size(); ++i) {
            const QVariantList branches = branchesOf(settings.at(i), schema.settings.at(i));
            for (const QVariant &branch : branches) {
                changeSettings(step);
                QVariantList expected = readSettings(step);
                settings.at(i).write(&step, branch);
                expected[i] = settings.at(i).read(&step);
                expectSettings(step, expected,
                               QStringLiteral("after writing %1").arg(nameOf(settings.at(i))));
                for (int other = 0; other < settings.size(); ++other) {
                    if (other == i)
                        continue;
                    changeSetting(step, settings.at(other));
                    if (isSameValue(settings.at(other).read(&step), expected.at(other))
                        && !storableValues(settings.at(other)).isEmpty())
                        fail(
                            QStringLiteral("the setting %1 does not change while %2 is %3")
                                .arg(nameOf(settings.at(other)), nameOf(settings.at(i)), shownValue(branch)));
                }
            }
        }
    });
}

void checkSeparate(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        const QVector<QMetaProperty> settings = settingsOf(step);
        for (int i = 0; i < settings.size(); ++i) {
            QVariantList expected = readSettings(step);
            changeSetting(step, settings.at(i));
            expected[i] = settings.at(i).read(&step);
            expectSettings(step, expected, QStringLiteral("after writing %1").arg(nameOf(settings.at(i))));
        }
    });
}

// Counts the signals of an object, whatever they are. Signals are connected by index to a slot index one
// past those of QObject, which arrives in qt_metacall().
class SignalCounter : public QObject
{
public:
    explicit SignalCounter(const QObject &object)
    {
        const QMetaObject *metaObject = object.metaObject();
        for (int i = 0; i < metaObject->methodCount(); ++i) {
            if (metaObject->method(i).methodType() == QMetaMethod::Signal)
                QMetaObject::connect(&object, i, this, QObject::staticMetaObject.methodCount(),
                                     Qt::DirectConnection);
        }
    }

    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override
    {
        id = QObject::qt_metacall(call, id, arguments);
        if (id == 0 && call == QMetaObject::InvokeMetaMethod)
            ++count;
        return id - 1;
    }

    int count = 0;
};

void checkSilent(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        const SignalCounter counter(step);
        changeSettings(step);
        if (counter.count > 0)
            fail(QStringLiteral("editing the settings sends %1 signals").arg(counter.count));
    });
}
} // namespace

QVector<PluginCheck> settingsChecks()
{
    return {
        {"settings.access", "Every setting can be read and written.", checkAccess},
        {"settings.blanks", "A text setting keeps leading and trailing blanks.", checkBlanks},
        {"settings.empty-text", "A text setting can be emptied.", checkEmptyText},
        {"settings.long-text", "A text setting keeps 100,000 characters.", checkLongText},
        {"settings.nul", "A text setting keeps NUL characters.", checkNul},
        {"settings.surrogates", "A text setting keeps lone surrogates.", checkSurrogates},
        {"settings.integers", "An integer setting keeps the smallest and the largest integer.",
         checkIntegers},
        {"settings.booleans", "A truth value can be switched on and off.", checkBooleans},
        {"settings.doubles", "A number setting keeps the smallest and the largest number.", checkDoubles},
        {"settings.values", "A setting keeps every value of its type, a text code unit for code unit.",
         checkValues},
        {"settings.again", "Writing a value again changes nothing.", checkAgain},
        {"settings.with-scope", "Settings can be edited while a scope is attached.", checkWithScope},
        {"settings.hidden", "A setting keeps and takes values whichever choice another one has.",
         checkHidden},
        {"settings.separate", "Writing one setting changes no other one.", checkSeparate},
        {"settings.silent", "No signal is sent while settings are edited.", checkSilent},
    };
}
} // namespace StepHost
