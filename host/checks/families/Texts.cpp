#include "host/checks/CheckContext.h"
#include "host/checks/CheckSteps.h"
#include "host/checks/TextFlaws.h"
#include "host/checks/trial/Trials.h"
#include "host/running/Breadcrumb.h"
#include "host/running/ProcessProbe.h"
#include "host/running/WarningCapture.h"
#include "host/values/QuotedText.h"

#include <QElapsedTimer>
#include <QRegularExpression>

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
        const QByteArray record = recordOf(step);
        loadRecord(step, record.left(record.size() / 2));
        if ((step.*member)().trimmed().isEmpty())
            fail(QStringLiteral("%1 is empty after loading a damaged record").arg(QLatin1String(name)));
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
        static const QRegularExpression lineEnd(QStringLiteral("[\n\r\f\v\\x{85}\\x{2028}\\x{2029}]"));
        if (step.toString().contains(lineEnd))
            fail(QStringLiteral("toString() has more than one line"));
    });
}

// toString() and description() of `step` for hostile settings, one after the other.
void composeHostileTexts(Operation &step)
{
    for (const QString &text : hostileTexts()) {
        setTexts(step, text);
        noteCall("toString()", &step);
        step.toString();
        noteCall("description()", &step);
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
        WarningCapture log(WarningCapture::AllLevels);
        composeHostileTexts(step);
        const QStringList warnings = log.takeLines() + log.takeOthers();
        if (!warnings.isEmpty())
            fail(QStringLiteral("composing texts writes to the log: %1").arg(quoted(warnings.first())));
    });
}
// Calls `check` with the name and the text of toString() and description(), for the default settings and for others.
void forEachText(CheckContext &context, const std::function<void(const QString &, const QString &)> &check)
{
    context.forEachStep([&check](Operation &step) {
        const auto checkBoth = [&] {
            noteCall("toString()", &step);
            check(QStringLiteral("toString()"), step.toString());
            noteCall("description()", &step);
            check(QStringLiteral("description()"), step.description());
        };
        checkBoth();
        setTexts(step, QStringLiteral("x"));
        checkBoth();
    });
}

void checkValid(CheckContext &context)
{
    forEachText(context, [](const QString &member, const QString &text) {
        const QString flaw = flawOfLines(text);
        if (!flaw.isEmpty())
            fail(QStringLiteral("%1, %2, %3").arg(member, quoted(text), flaw));
    });
}

void checkPlaceholders(CheckContext &context)
{
    static const QRegularExpression placeholder(QStringLiteral("%L?[1-9]"));
    forEachText(context, [](const QString &member, const QString &text) {
        if (placeholder.match(text).hasMatch())
            fail(QStringLiteral("%1, %2, has a placeholder that nothing was put in place of")
                     .arg(member, quoted(text)));
    });
}

void checkAfterRun(CheckContext &context)
{
    context.forEachStep([&context](Operation &step) {
        const WarningCapture log(WarningCapture::AllLevels);
        const StepTrials trials = findTrials(step, context.seed());
        const QVector<Trial> all = trials.writing + trials.skipping;
        for (const Trial &trial : all) {
            Operation &fresh = context.cloneOf(step);
            applySettings(fresh, trial.settings);
            const QStringList before{fresh.toString(), fresh.description()};
            run(fresh, trial);
            const QStringList after{fresh.toString(), fresh.description()};
            if (before != after)
                fail(QStringLiteral("with %1 the texts change from %2 to %3 by a run")
                         .arg(trialText(step, trial), quoted(before.join(QLatin1String(" / "))),
                              quoted(after.join(QLatin1String(" / ")))));
        }
    });
}

void checkTime(CheckContext &context)
{
    constexpr int allowed = 1000;
    context.forEachStep([](Operation &step) {
        for (const QString &text : {QStringLiteral("x"), QString(100000, QLatin1Char('x'))}) {
            setTexts(step, text);
            QElapsedTimer timer;
            timer.start();
            step.toString();
            step.description();
            if (timer.elapsed() > allowed)
                fail(QStringLiteral(
                         "with settings of %1 characters the texts take %2 ms, at most %3 are allowed")
                         .arg(text.size())
                         .arg(timer.elapsed())
                         .arg(allowed));
        }
    });
}

void checkAgain(CheckContext &context)
{
    context.forEachStep([&context](Operation &step) {
        const auto tell = [&](const char *which) {
            const QString who = QString::fromUtf8(step.metaObject()->className());
            const QString when = QStringLiteral(" of %1 with %2 settings").arg(who, QLatin1String(which));
            context.tell(QStringLiteral("toString()") + when, quoted(step.toString()));
            context.tell(QStringLiteral("description()") + when, quoted(step.description()));
        };
        tell("default");
        changeSettings(step);
        tell("changed");
    });
}

// Warns when `text` lies in the memory of the library, where it dangles after unloading. A host that copies what it is
// given is not harmed.
void expectOwnMemory(const CheckContext &context, const char *member, const QString &text)
{
    if (isInLibrary(context.fileName(), text.constData()))
        warn(
            QStringLiteral(
                "what %1 returns, %2, lies in the library's memory and dangles once it is unloaded; return a "
                "QString that is not a QStringLiteral")
                .arg(QLatin1String(member), quoted(text)));
}

void checkOutlive(CheckContext &context)
{
    const IOperationPlugin &plugin = context.plugin();
    expectOwnMemory(context, "pluginId()", plugin.pluginId());
    expectOwnMemory(context, "name()", plugin.name());
    expectOwnMemory(context, "version()", plugin.version());
    const PluginManifest manifest = plugin.manifest();
    expectOwnMemory(context, "manifest().typeIdPrefix", manifest.typeIdPrefix);
    const QStringList keys = manifest.requiredCapabilities + QStringList(manifest.categoryOrder.keys())
        + QStringList(manifest.typeOrder.keys());
    for (const QString &key : keys)
        expectOwnMemory(context, "manifest()", key);
    context.forEachStep([&context](const Operation &step) {
        expectOwnMemory(context, "root()", step.root());
        expectOwnMemory(context, "typeId()", step.typeId());
        expectOwnMemory(context, "typeName()", step.typeName());
        expectOwnMemory(context, "icon()", step.icon());
        expectOwnMemory(context, "toString()", step.toString());
        expectOwnMemory(context, "description()", step.description());
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
        {"texts.valid", "Texts have no control characters and no broken ones.", checkValid},
        {"texts.placeholders", "No placeholder is left in a text.", checkPlaceholders},
        {"texts.after-run", "A run does not change the texts.", checkAfterRun},
        {"texts.time", "Texts are composed within a second.", checkTime},
        {"texts.again", "Texts are the same in another process.", checkAgain, CheckWorlds::Again},
        {"texts.outlive", "Texts do not lie in the library's memory.", checkOutlive},
    };
}
} // namespace StepHost
