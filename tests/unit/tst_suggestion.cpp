#include "host/values/Suggestion.h"

#include <QtTest>

class TestSuggestion : public QObject
{
    Q_OBJECT

private slots:
    void names_data();
    void names();
    void hostileNames();
};

void TestSuggestion::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("choices");
    QTest::addColumn<QString>("meant");
    const QStringList types{"list.add", "list.sort", "list.get", "list.reverse"};
    const auto row = [](const char *name, const QString &written, const QStringList &choices,
                        const char *meant) {
        QTest::newRow(name) << written << choices << QString::fromUtf8(meant);
    };
    row("exchanged", "list.srot", types, "list.sort");
    row("left out", "list.sor", types, "list.sort");
    row("added", "list.sortt", types, "list.sort");
    row("replaced", "list.sart", types, "list.sort");
    row("another case", "List.Sort", types, "list.sort");
    row("short, another case", "N", {"m", "n"}, "n");
    row("short, another letter", "x", {"m", "n"}, "");
    row("two letters", "nm", {"no", "mn"}, "");
    row("three letters", "nme", {"none", "name"}, "name");
    row("three letters, two mistakes", "nxy", {"nab"}, "");
    row("three mistakes", "list.revXYZe", types, "list.reverse");
    row("four mistakes", "list.reWXYZe", types, "");
    row("many mistakes in a long name", "abcdefghijklmnopqrst", {"abcdefghijklmnopWXYZ"}, "");
    row("exchanged twice", "ilst.sotr", types, "list.sort");
    row("the nearest", "names2", {"names", "name2"}, "names");
    row("nearer behind", "namess", {"nammms", "names"}, "names");
    row("the only one that ends so", "reverse", types, "list.reverse");
    row("the only one that begins so", "target", {"value", "targetVar"}, "targetVar");
    row("several begin so", "list", types, "");
    row("too short for a part", "or", {"order"}, "");
    row("near before a part", "sorts", {"sorts.all", "sort"}, "sort");
    row("nothing", "", {"a", ""}, "");
    row("no choices", "name", {}, "");
    row("other scripts", QString::fromUtf8("姓名表单"), {QString::fromUtf8("姓名表")}, "姓名表");
    row("60 characters", QString(59, 'x') + 'y', {QString(60, 'x')}, qPrintable(QString(60, 'x')));
    row("61 characters", QString(60, 'x') + 'y', {QString(60, 'x')}, "");
    row("a choice of 61 characters", QString(60, 'x'), {QString(61, 'x')}, "");
}

void TestSuggestion::names()
{
    QFETCH(QString, name);
    QFETCH(QStringList, choices);
    QFETCH(QString, meant);
    QCOMPARE(StepHost::nearestOf(name, choices), meant);
}

void TestSuggestion::hostileNames()
{
    QCOMPARE(StepHost::nearestOf(QString(10000000, 'x'), {QString(10000000, 'y')}), QString());
    QStringList many;
    for (int i = 0; i < 10000; ++i)
        many.append(QString::number(i).rightJustified(60, 'x'));
    many.append("the one");
    QCOMPARE(StepHost::nearestOf("the on", many), QString()); // It is behind the last that is looked at.
    many.removeFirst();
    QCOMPARE(StepHost::nearestOf("the on", many), QString("the one"));
}

QTEST_APPLESS_MAIN(TestSuggestion)
#include "tst_suggestion.moc"
