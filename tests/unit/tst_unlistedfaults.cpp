#include "host/checks/CheckReport.h"
#include "host/checks/CheckSelection.h"
#include "tests/support/TestPaths.h"

#include <QScopeGuard>
#include <QtTest>

using namespace StepHost;

namespace
{
// Long enough for any check on a busy machine, with sanitizers.
constexpr int patience = 120000;

QVector<CheckResult> check(const QString &file, const QVector<PluginCheck> &checks)
{
    CheckRunOptions options;
    options.program = TestPaths::stepctl();
    options.arguments = QStringList{"check-worker"};
    options.jobs = 2;
    options.timeLimit = patience;
    options.isKnownToLoad = true; // A process less for each fault.
    return checkPlugins({file}, checks, options).first().results;
}

QStringList findings(const QVector<CheckResult> &results)
{
    QStringList texts;
    for (const CheckResult &result : results) {
        if (result.outcome != CheckOutcome::Passed)
            texts.append(result.id + ' ' + outcomeWord(result.outcome) + ": " + result.reason);
    }
    return texts;
}
/// A fault of the plug-in, and a check that finds it.
struct Fault
{
    const char *name;
    const char *id;
};

constexpr Fault faults[] = {
    {"library.dies-at-unloading", "library.unloads"},
    {"library.dies-at-exit", "library.unloads"},
    {"library.root-timer", "manners.timers"},
    {"manners.load-folder", "manners.folder"},
    {"manners.load-application-name", "manners.application"},
    {"manners.load-message-handler", "manners.handlers"},
    {"manners.load-signal-handler", "manners.signals"},
    {"manners.load-home", "manners.files"},
    {"manners.load-limits", "manners.limits"},
    {"manners.load-leaks", "library.reload-allocations"},
    {"manners.run-umask", "manners.limits"},
    {"manners.run-locale", "manners.locale"},
    {"manners.run-descriptor", "manners.descriptors"},
    {"manners.run-descriptor-once-written", "manners.descriptors"},
    {"manners.run-thread", "manners.threads"},
    {"manners.run-child", "manners.processes"},
    {"manners.run-daemon", "manners.processes"},
    {"manners.run-current-folder", "manners.files"},
    {"manners.run-prints", "manners.output"},
    {"manners.run-leaks", "manners.memory"},
    {"manners.run-rounding", "manners.floating-point"},
    {"manners.run-alarm", "manners.clocks"},
    {"manners.run-masks", "manners.signals"},
    {"manners.run-timer", "manners.timers"},
    {"manners.identity-standard-paths", "manners.application"},
    {"manners.identity-organisation", "manners.application"},
    {"manners.prototypes-environment", "manners.environment"},
    {"manners.clone-socket", "manners.descriptors"},
    {"manners.clone-leaks", "manners.memory"},
    {"manners.edit-environment", "manners.environment"},
    {"manners.edit-leaks", "manners.memory"},
    {"manners.text-locale", "manners.locale"},
    {"manners.text-prints", "manners.output"},
    {"manners.text-leaks", "manners.memory"},
    {"manners.save-temporary", "manners.files"},
    {"manners.save-leaks", "manners.memory"},
    {"manners.record-flush-to-zero", "manners.floating-point"},
    {"manners.record-closes", "manners.descriptors"},
    {"manners.record-leaks", "manners.memory"},
    {"manners.delete-environment", "manners.environment"},
    {"identity.type-per-process", "identity.everywhere"},
    {"identity.translated-type", "identity.translated"},
    {"identity.translated-id", "identity.translated"},
    {"identity.id-per-process", "identity.everywhere"},
    {"identity.name-control", "identity.texts"},
    {"identity.name-lines", "identity.texts"},
    {"identity.name-replacement", "identity.texts"},
    {"identity.name-in-library", "texts.outlive"},
    {"identity.version-blank", "identity.texts"},
    {"identity.category-control", "identity.texts"},
    {"identity.case-only", "prototypes.unique-type-ids"},
    {"identity.double-capability", "identity.capabilities"},
    {"prototypes.base-state", "prototypes.untouched"},
    {"prototypes.default-not-a-choice", "schema.default-choice"},
    {"prototypes.random-default", "prototypes.defaults"},
    {"prototypes.die-with-root", "prototypes.outlive-root"},
    {"prototypes.order-by-folder", "identity.everywhere"},
    {"prototypes.shuffled", "prototypes.same-set"},
    {"prototypes.named", "prototypes.untouched"},
    {"prototypes.later-set", "prototypes.same-set"},
    {"prototypes.adopts-later", "prototypes.no-parent"},
    {"prototypes.shared-child", "prototypes.untouched"},
    {"clone.of-a-clone", "clone.of-clone"},
    {"clone.empties-source", "clone.source-kept"},
    {"clone.hidden-field", "clone.record"},
    {"clone.trims", "clone.values"},
    {"clone.hidden-setting", "clone.combinations"},
    {"clone.through-record-text", "clone.values"},
    {"clone.long-text", "clone.values"},
    {"clone.other-thread", "clone.identity"},
    {"clone.blocks-signals", "clone.identity"},
    {"clone.keeps-children", "clone.identity"},
    {"clone.runs-out", "clone.often"},
    {"clone.narrow", "clone.values"},
    {"clone.variant", "clone.values"},
    {"clone.level", "clone.values"},
    {"clone.names", "clone.values"},
    {"settings.normalizes", "settings.values"},
    {"settings.line-ends", "settings.values"},
    {"settings.lower-case", "settings.values"},
    {"settings.drops-mark", "settings.values"},
    {"settings.drops-invisible", "settings.values"},
    {"settings.cuts", "settings.values"},
    {"settings.utf8", "settings.values"},
    {"settings.escapes", "settings.values"},
    {"settings.resets-hidden", "settings.hidden"},
    {"settings.ignores-while-hidden", "settings.hidden"},
    {"settings.numbers-only", "settings.values"},
    {"settings.toggles", "settings.again"},
    {"settings.ignores-with-scope", "settings.with-scope"},
    {"settings.narrow", "settings.values"},
    {"settings.through-double", "settings.values"},
    {"settings.signed", "settings.values"},
    {"settings.rounds", "settings.values"},
    {"settings.drops-empty", "settings.values"},
    {"settings.drops-double", "settings.values"},
    {"settings.variant-to-text", "settings.values"},
    {"settings.recent-days", "settings.values"},
    {"settings.drops-milliseconds", "settings.values"},
    {"settings.cuts-bytes", "settings.values"},
    {"settings.ignores-last-level", "settings.values"},
    {"schema.blank-label", "schema.label-texts"},
    {"schema.double-label", "schema.label-unique"},
    {"schema.control-label", "schema.label-texts"},
    {"schema.latin-label", "schema.label-texts"},
    {"schema.double-choice", "schema.choice-texts"},
    {"schema.blank-choice", "schema.choice-texts"},
    {"schema.name-on-int", "schema.editor-type"},
    {"schema.number-on-bool", "schema.editor-type"},
    {"schema.value-on-date", "schema.editor-type"},
    {"schema.own-rule", "schema.rule-cycle"},
    {"texts.placeholder", "texts.placeholders"},
    {"texts.address", "texts.again"},
    {"texts.after-run", "texts.after-run"},
    {"texts.slow", "texts.time"},
    {"texts.debug", "texts.quiet"},
    {"texts.control", "texts.valid"},
    {"texts.mojibake", "texts.valid"},
    {"texts.surrogate", "texts.valid"},
    {"texts.time", "texts.again"},
    {"texts.name-replacement", "identity.texts"},
    {"texts.name-line-end", "identity.texts"},
    {"texts.in-library", "texts.outlive"},
    {"icon.changes", "icon.stable"},
    {"icon.of-clone", "clone.identity"},
    {"icon.not-own", "icon.own"},
    {"icon.outside", "icon.self-contained"},
    {"icon.not-well-formed", "icon.self-contained"},
    {"icon.empty-drawing", "icon.not-blank"},
    {"icon.huge", "icon.self-contained"},
    {"persistence.tail-zero", "persistence.truncation"},
    {"persistence.tail-half", "persistence.truncation"},
    {"persistence.tail-kept", "persistence.truncation"},
    {"persistence.sets-version", "persistence.stream-kept"},
    {"persistence.sets-order", "persistence.stream-kept"},
    {"persistence.sets-precision", "persistence.stream-kept"},
    {"persistence.load-sets-precision", "persistence.stream-kept"},
    {"persistence.local-text", "persistence.values"},
    {"persistence.today", "persistence.anywhere"},
    {"persistence.pid", "persistence.anywhere"},
    {"persistence.hash", "persistence.anywhere"},
    {"persistence.locale", "persistence.anywhere"},
    {"persistence.seeks", "persistence.place"},
    {"persistence.rewinds", "persistence.sequential"},
    {"persistence.clamps-mode", "persistence.settings"},
    {"persistence.wait-for-more", "persistence.sequential"},
    {"persistence.keeps-old", "persistence.values"},
    {"persistence.narrow", "persistence.values"},
    {"persistence.ratio-as-text", "persistence.values"},
    {"persistence.joins-names", "persistence.values"},
    {"persistence.variant-as-text", "persistence.values"},
    {"persistence.day-as-text", "persistence.values"},
    {"persistence.cuts-bytes", "persistence.values"},
    {"persistence.level-as-byte", "persistence.values"},
    {"persistence.keeps-names", "persistence.values"},
    {"persistence.drops-hidden", "persistence.combinations"},
    {"persistence.recursion", "persistence.long-records"},
    {"manners.run-log-form", "manners.logging"},
    {"manners.run-terminal", "manners.terminal"},
    {"running.first-scope", "running.last-scope"},
    {"running.tagless", "running.tag"},
    {"running.critical", "running.quiet"},
    {"running.info", "running.quiet"},
    {"running.two-lines", "running.one-warning"},
    {"running.silent-skip", "running.skip-told"},
    {"running.skip-writes", "running.skipped-writes-nothing"},
    {"running.odd-element", "running.contents"},
    {"running.carries-over", "running.carries-nothing-over"},
    {"running.keeps-first", "running.carries-nothing-over"},
    {"running.process-dependent", "running.fresh-process"},
    {"running.hash-order", "running.fresh-process"},
    {"running.locale-dependent", "running.fresh-process"},
    {"running.hidden-branch-crashes", "running.succeeds"},
    {"running.cross-cache", "running.fresh-process"},
    {"running.empty-list", "running.contents"},
    {"running.recursion", "running.long-lists"},
    {"running.divides-by-zero", "running.succeeds"},
    {"running.negative-limit", "running.succeeds"},
    {"running.slow", "running.time"},
    {"running.busy", "running.time"},
    {"running.wrong-shape", "running.result-shape"},
    {"running.string-list", "running.result-shape"},
    {"running.marked-name", "running.named-variables"},
    {"running.other-variable", "running.named-variables"},
    {"running.removes", "running.named-variables"},
    {"running.removes-any", "running.named-variables"},
    {"running.redeclares", "running.named-variables"},
    {"running.writes-and-warns", "running.contents"},
    {"running.debug-line", "running.quiet"},
    {"running.attach-writes", "running.idle-calls"},
    {"running.keeps-scope", "running.detached-scope"},
    {"running.edit-touches", "running.idle-calls"},
    {"running.text-touches", "running.idle-calls"},
    {"running.clone-touches", "running.idle-calls"},
    {"running.save-touches", "running.idle-calls"},
    {"running.load-touches", "running.idle-calls"},
    {"identity.fixed-category", "identity.translated-weights"},
    {"identity.weights-drift", "identity.stable"},
    {"identity.version-digits", "identity.version-form"},
    {"identity.capability-blank", "identity.capabilities"},
    {"identity.manifest-api", "identity.manifest-agrees"},
    {"prototypes.shared-limit", "prototypes.defaults"},
    {"prototypes.with-scope", "prototypes.untouched"},
    {"clone.adopted", "clone.parent"},
    {"clone.half-state", "clone.base-state"},
    {"clone.scope-after-run", "clone.no-scope"},
    {"clone.linked", "clone.independent"},
    {"settings.drops-last-line-end", "settings.values"},
    {"settings.never-equal", "settings.values"},
    {"settings.mode-resets", "settings.hidden"},
    {"settings.cuts-digits", "settings.values"},
    {"schema.rule-on-text", "schema.rule-value"},
    {"schema.kind-case", "schema.kinds"},
    {"texts.throws-on-long", "texts.hostile"},
    {"texts.separator", "texts.one-line"},
    {"texts.empty-after-damage", "texts.summary"},
    {"icon.case", "icon.opens"},
    {"icon.script", "icon.self-contained"},
    {"persistence.first-save", "persistence.repeatable"},
    {"persistence.base-last", "persistence.base-first"},
    {"persistence.resets-status", "persistence.truncation"},
    {"persistence.reads-on", "persistence.row"},
    {"running.invalid-result", "running.result-shape"},
    {"running.random-in-long", "running.fresh-process"},
    {"running.clock", "running.fresh-process"},
    {"running.eats-memory", "running.time"},
    {"running.set-order", "running.fresh-process"},
    {"running.renames", "running.settings-kept"},
    {"manners.translator", "manners.application"},
    {"manners.ignores-pipe", "manners.signals"},
    {"manners.codec", "manners.locale"},
    {"library.child-of-application", "manners.application"},
};
} // namespace

/// Faults that were written from the contract, apart from the checks, and the checks that find them.
class TestUnlistedFaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void aFaultIsFound_data();
    void aFaultIsFound();
    void whatIsOnlyUnusualIsNotBlamed_data();
    void whatIsOnlyUnusualIsNotBlamed();
    void aSanitizedPluginIsNotBlamed();
    void everyCheckIsFailedBySomeFault();
};

void TestUnlistedFaults::initTestCase()
{
#ifndef Q_OS_LINUX
    QSKIP("the plug-in is built for Linux only");
#endif
    qputenv("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":detect_leaks=0");
}

void TestUnlistedFaults::aFaultIsFound_data()
{
#ifdef QUILLMAP_SANITIZED
    QSKIP("each fault takes some processes, which are slow to start here");
#endif
    QTest::addColumn<QString>("id");
    for (const auto &[fault, id] : faults)
        QTest::newRow(fault) << QString(id);
}

void TestUnlistedFaults::aFaultIsFound()
{
    QFETCH(QString, id);
    const PluginCheck *wanted = findPluginCheck(id);
    QVERIFY2(wanted, qPrintable(id));
    qputenv("QUILLMAP_FAULT", QTest::currentDataTag());
    const auto restore = qScopeGuard([] { qunsetenv("QUILLMAP_FAULT"); });
    const QVector<CheckResult> results = check(TestPaths::faultyPlugin("unlisted"), {*wanted});
    QVERIFY2(results.last().outcome != CheckOutcome::Passed
                 && results.last().outcome != CheckOutcome::Skipped,
             qPrintable(results.last().reason));
}

void TestUnlistedFaults::whatIsOnlyUnusualIsNotBlamed_data()
{
    QTest::addColumn<QStringList>("families");
    const auto row = [](const char *form, const QStringList &families) { QTest::newRow(form) << families; };
    row("sound.nothing", {}); // All families.
    row("sound.thread", {"manners"});
    row("sound.child", {"manners"});
    row("sound.shared-icon", {"icon", "identity"});
    row("sound.locale-text", {"texts"});
#ifndef QUILLMAP_SANITIZED // Each takes dozens of processes, which are slow to start there.
    row("sound.fill", {"running", "schema", "persistence", "clone"});
    row("sound.tail", {"settings", "clone", "persistence"});
    row("sound.note", {"running", "prototypes", "clone", "persistence"});
    row("sound.watch", {"running", "persistence"});
    row("sound.range", {"settings", "clone", "persistence"});
    row("sound.names", {"identity", "texts"});
    row("sound.pool", {"manners"});
    row("sound.temporary-file", {"manners"});
    row("sound.restores", {"manners"});
    row("sound.cache", {"manners"});
    row("sound.buffer", {"manners"});
    row("sound.solid-icon", {"icon"});
    row("sound.defaults", {"running", "persistence", "clone"});
    row("sound.lines", {"texts"});
    row("sound.percent", {"texts"});
    row("sound.creates-target", {"running"});
    row("sound.quadratic", {"running"});
    row("sound.only-when-filled", {"running"});
    row("sound.sorted-set", {"running"});
    row("sound.long-summary", {"texts"});
    row("sound.writes-what-differs", {"running"});
    row("sound.static-expression", {"manners", "library"});
    row("sound.thread-local", {"manners", "library"});
    row("sound.odd-choices", {"schema", "texts", "settings"});
    row("sound.default-choice", {"schema", "running", "persistence"});
    row("sound.override-scope", {"running", "clone"});
    row("sound.restores-locale", {"manners"});
    row("sound.long-warning", {"running"});
#endif
}

void TestUnlistedFaults::whatIsOnlyUnusualIsNotBlamed()
{
    QFETCH(QStringList, families);
    const QByteArray form = QTest::currentDataTag();
    qputenv("QUILLMAP_FAULT", form);
    const auto restore = qScopeGuard([] { qunsetenv("QUILLMAP_FAULT"); });
    // A step that never writes is told of, and that is all.
    QStringList leftOut = form == "sound.watch" ? QStringList{"running.succeeds"} : QStringList();
#ifdef QUILLMAP_SANITIZED
    leftOut.append("manners.memory"); // Memory that is allocated cannot be counted.
#endif
    const auto checks = selectChecks(families, leftOut);
    QVERIFY(checks);
    QCOMPARE(findings(check(TestPaths::faultyPlugin("unlisted"), *checks)).join('\n'), QString());
}

void TestUnlistedFaults::aSanitizedPluginIsNotBlamed()
{
    const QString plugin = TestPaths::faultyPlugin("unlisted-sanitized");
    if (!QFile::exists(plugin))
        QSKIP("it is built with GCC only, and where stepctl is a plain program");
    // Some of each kind; all of them pass, and take half a minute.
    const auto checks = selectChecks({"library", "clone", "texts", "running", "persistence.settings",
                                      "persistence.long-records", "manners.threads"},
                                     {"running.long-lists"});
    QVERIFY(checks);
    QCOMPARE(findings(check(plugin, *checks)).join('\n'), QString());
}

void TestUnlistedFaults::everyCheckIsFailedBySomeFault()
{
    QStringList missing;
    const QStringList otherwise{"identity.company", "running.scripts"}; // Take two plug-ins, or a script.
    const auto checks = selectChecks({}, {});
    for (const PluginCheck &check : *checks) {
        const bool isListed = QFile::exists(TestPaths::faultyPlugin(check.id));
        const bool isUnlisted = std::any_of(std::begin(faults), std::end(faults),
                                            [&check](const auto &fault) { return check.id == fault.id; });
        if (!isListed && !isUnlisted && !otherwise.contains(check.id))
            missing.append(check.id);
    }
    QCOMPARE(missing.join(' '), QString());
}

QTEST_GUILESS_MAIN(TestUnlistedFaults)

#include "tst_unlistedfaults.moc"
