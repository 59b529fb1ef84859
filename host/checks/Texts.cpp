#include "CheckContext.h"
#include "CheckSteps.h"
#include "host/running/WarningCapture.h"
#include "host/values/QuotedText.h"

namespace StepHost
{
namespace
{
using TextMember = QString (Operation::*)() const;

void expectNotEmpty(CheckContext &context, TextMember member, const char *name)
{
    context.forEachStep([=](Operation &step) {
        if ((step.*member)().trimmed().isEmpty())
            fail(QStringLiteral("%1 is empty for the default settings").arg(QLatin1String(name)));
        changeSettings(step);
        if ((step.*member)().trimmed().isEmpty())
            fail(QStringLiteral("%1 is empty for changed settings").arg(QLatin1String(name)));
    });
}

void checkSummary(CheckContext &context)
{
    expectNotEmpty(context, &Operation::toString, "toString()");
}

void checkDescription(CheckContext &context)
{
    expectNotEmpty(context, &Operation::description, "description()");
}

void checkOneLine(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        setTexts(step, QStringLiteral("x"));
        if (step.toString().contains(QLatin1Char('\n')))
            fail(QStringLiteral("toString() has more than one line"));
    });
}

// toString() and description() of `step` for hostile settings, one after the other.
void composeHostileTexts(Operation &step)
{
    for (const QString &text : hostileTexts()) {
        setTexts(step, text);
        step.toString();
        step.description();
    }
    for (const int number : edgeIntegers()) {
        setIntegers(step, number);
        step.toString();
        step.description();
    }
}

void checkHostile(CheckContext &context)
{
    context.forEachStep(composeHostileTexts);
}

void checkPure(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        changeSettings(step);
        const QVariantList settings = readSettings(step);
        const QString summary = step.toString();
        const QString description = step.description();
        expectSettings(step, settings, QStringLiteral("after toString() and description()"));
        if (step.toString() != summary)
            fail(QStringLiteral("toString() changes between two calls"));
        if (step.description() != description)
            fail(QStringLiteral("description() changes between two calls"));
    });
}

void checkQuiet(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        WarningCapture log;
        composeHostileTexts(step);
        const QStringList warnings = log.takeLines();
        if (!warnings.isEmpty())
            fail(QStringLiteral("composing texts writes to the log: %1").arg(quoted(warnings.first())));
    });
}
} // namespace

QVector<PluginCheck> textChecks()
{
    return {
        {"texts.summary", "toString() is never empty.", checkSummary},
        {"texts.description", "description() is never empty.", checkDescription},
        {"texts.one-line", "toString() is one line.", checkOneLine},
        {"texts.hostile", "Texts can be composed for whatever the settings hold.", checkHostile},
        {"texts.pure", "Composing texts changes no setting, and gives the same each time.", checkPure},
        {"texts.quiet", "Composing texts writes no warning.", checkQuiet},
    };
}
} // namespace StepHost
