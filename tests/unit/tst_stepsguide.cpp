#include "host/plugins/EditorSchema.h"
#include "host/plugins/Palette.h"
#include "host/plugins/StepCatalogue.h"
#include "host/running/RunReport.h"
#include "host/running/ScriptRunner.h"
#include "host/scripts/ScriptJson.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TestPaths.h"
#include "tests/support/TextDifference.h"

#include <QRegularExpression>
#include <QtTest>

#include <cstdio>

using namespace StepHost;

namespace
{
const QString guideFile = TestPaths::source("docs/steps.zh-CN.md");
const QString englishFile = TestPaths::source("docs/steps.md");

// How the guides begin what they say about a step: with its name and its type id.
const char *const chineseHeading = "^## (.+)（`([a-z.]+)`）$";
const char *const englishHeading = "^## .+, (.+) \\(`([a-z.]+)`\\)$";

// A script in the guide and what it says that a run prints.
struct Example
{
    int line = 0; // Of the script's first line in the guide, counted from 1.
    QByteArray script;
    int resultLine = 0;
    QByteArray result;
};

// What the guide says about a step, or, with an empty type id, about all of them.
struct Section
{
    QString typeId;
    QString name;
    QStringList lines;
    QStringList tableRows;
    QVector<Example> examples;
};

// Takes the block that begins after the line `first` out of `lines`. Returns its text.
QByteArray blockAfter(const QStringList &lines, int first)
{
    QString text;
    for (int i = first + 1; i < lines.size() && lines.at(i) != "```"; ++i)
        text += lines.at(i) + '\n';
    return text.toUtf8();
}

QStringList linesOf(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s: %s", qPrintable(fileName), qPrintable(file.errorString()));
    return QString::fromUtf8(file.readAll()).remove('\r').split('\n');
}

void writeLines(const QString &fileName, const QStringList &lines)
{
    QFile file(fileName);
    const QByteArray text = lines.join('\n').toUtf8();
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(file.errorString()));
    QCOMPARE(file.write(text), qint64(text.size()));
}

// `lines` with the blocks of `others`, in order, in place of their own.
QStringList withBlocksOf(const QStringList &others, const QStringList &lines)
{
    QStringList result;
    int at = 0; // In others.
    bool isInBlock = false;
    for (const QString &line : lines) {
        if (line.startsWith("```") && !isInBlock) {
            while (at < others.size() && !others.at(at).startsWith("```"))
                ++at;
            for (const int first = at; at < others.size() && (at == first || others.at(at) != "```"); ++at)
                result.append(others.at(at));
            ++at;
        }
        if (line.startsWith("```"))
            isInBlock = !isInBlock;
        if (!isInBlock)
            result.append(line);
    }
    return result;
}

QVector<Section> sectionsOf(const QStringList &lines, const char *headingForm)
{
    const QRegularExpression heading(QString::fromUtf8(headingForm));
    QVector<Section> sections(1);
    for (int i = 0; i < lines.size(); ++i) {
        const QString &line = lines.at(i);
        const QRegularExpressionMatch match = heading.match(line);
        if (match.hasMatch()) {
            sections.append(Section());
            sections.last().name = match.captured(1);
            sections.last().typeId = match.captured(2);
        }
        Section &section = sections.last();
        section.lines.append(line);
        if (line.startsWith("| `"))
            section.tableRows.append(line);
        if (line == "```json")
            section.examples.append({i + 2, blockAfter(lines, i), 0, QByteArray()});
        if (line == "```text") {
            section.examples.last().resultLine = i + 2;
            section.examples.last().result = blockAfter(lines, i);
        }
    }
    return sections;
}

// What the guide calls the editor of `setting`; empty where it is free to say.
QString editorText(const SettingSchema &setting)
{
    switch (setting.editor) {
    case EditorKind::VariableName:
        return QString::fromUtf8(setting.variableKind == VariableKind::List ? "列表变量" : "变量");
    case EditorKind::VariableReference:
        return QString::fromUtf8("值");
    case EditorKind::IntegerOrVariable:
        return QString::fromUtf8("整数");
    case EditorKind::Choice:
        return QString::fromUtf8("%1（0）或%2（1）").arg(setting.choices.at(0), setting.choices.at(1));
    case EditorKind::Default:
        break;
    }
    return setting.type == QMetaType::Bool ? QString::fromUtf8("是或否") : QString();
}

QString defaultText(const QVariant &value)
{
    return value.userType() == QMetaType::QString && value.toString().isEmpty()
        ? QString::fromUtf8("空")
        : '`' + value.toString() + '`';
}

// The warnings that the guide says the step writes, as expressions.
QVector<QRegularExpression> messagesOf(const Section &section)
{
    QVector<QRegularExpression> messages;
    for (const QString &row : section.tableRows) {
        const QString message = row.section('`', 1, 1);
        if (!message.startsWith('['))
            continue;
        const QString pattern = QRegularExpression::escape(message).replace(
            QRegularExpression::escape(QString::fromUtf8("…")), ".*");
        messages.append(QRegularExpression(QRegularExpression::anchoredPattern(pattern)));
    }
    return messages;
}
} // namespace

/// Runs every script in the guide and compares the report with the one in the guide. With the environment
/// variable QUILLMAP_RENEW_GOLDEN set to 1 it writes the reports into the guide instead.
class TestStepsGuide : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void examples_data();
    void examples();
    void stepsStandInTheOrderOfThePalette();
    void sections_data();
    void sections();
    void messages_data();
    void messages();
    void theEnglishGuideHasTheSame_data();
    void theEnglishGuideHasTheSame();
    void cleanupTestCase();

private:
    RunResult run(const Example &example, QByteArray &report);
    Section section(const QString &typeId) const;

    StepCatalogue m_catalogue;
    QStringList m_lines;
    QVector<Section> m_sections;
    // New reports by the line at which they go into the guide.
    QMap<int, QByteArray> m_renewed;
};

void TestStepsGuide::initTestCase()
{
    const auto added = m_catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
    m_lines = linesOf(guideFile);
    m_sections = sectionsOf(m_lines, chineseHeading);
}

// An empty one when the guide has none.
Section TestStepsGuide::section(const QString &typeId) const
{
    for (const Section &section : m_sections) {
        if (section.typeId == typeId)
            return section;
    }
    return Section();
}

RunResult TestStepsGuide::run(const Example &example, QByteArray &report)
{
    const Result<Script> read = readScript(example.script, m_catalogue);
    if (!read)
        qFatal("%s, line %d: %s", qPrintable(guideFile), example.line, qPrintable(errorOf(read)));
    VariableScope scope;
    declareVariables(*read, scope);
    const std::vector<ScriptVariable> before = variablesOf(scope);
    const RunResult result = runScript(*read, scope);
    const std::vector<ScriptVariable> after = variablesOf(scope);
    report = reportToText({*read, result, after, &before}).value_or("");
    return result;
}

void TestStepsGuide::examples_data()
{
    QTest::addColumn<int>("sectionIndex");
    QTest::addColumn<int>("exampleIndex");
    for (int i = 0; i < m_sections.size(); ++i) {
        for (int j = 0; j < m_sections.at(i).examples.size(); ++j)
            QTest::addRow("line %d", m_sections.at(i).examples.at(j).line) << i << j;
    }
}

void TestStepsGuide::examples()
{
    QFETCH(int, sectionIndex);
    QFETCH(int, exampleIndex);
    const Example &example = m_sections.at(sectionIndex).examples.at(exampleIndex);
    QVERIFY2(example.resultLine > 0, "the script has no result");
    QByteArray report;
    run(example, report);
    if (qgetenv("QUILLMAP_RENEW_GOLDEN") == "1") {
        m_renewed.insert(example.resultLine, report);
    } else if (report != example.result) {
        std::fprintf(stderr, "%s, the result at line %d, %s", qPrintable(guideFile), example.resultLine,
                     difference(example.result, report).toUtf8().constData());
        QFAIL("The report differs; QUILLMAP_RENEW_GOLDEN=1 takes it as the expected one.");
    }
}

void TestStepsGuide::stepsStandInTheOrderOfThePalette()
{
    const Plugin &plugin = *m_catalogue.plugins().front();
    const QVector<PaletteEntry> palette = paletteOrder({{plugin.manifest(), plugin.prototypes()}});
    QStringList documented;
    for (const Section &section : qAsConst(m_sections)) {
        if (!section.typeId.isEmpty())
            documented.append(section.typeId);
    }
    QStringList offered; // A step without a section is what sections() finds.
    for (const PaletteEntry &entry : palette) {
        if (documented.contains(entry.prototype->typeId()))
            offered.append(entry.prototype->typeId());
    }
    QCOMPARE(documented, offered);
}

void TestStepsGuide::sections_data()
{
    QTest::addColumn<QString>("typeId");
    for (const QString &typeId : m_catalogue.typeIds())
        QTest::newRow(qPrintable(typeId)) << typeId;
}

void TestStepsGuide::sections()
{
    QFETCH(QString, typeId);
    const Operation *step = m_catalogue.prototype(typeId);
    const Section guide = section(typeId);
    QVERIFY2(!guide.lines.isEmpty(), qPrintable("the guide has no section on " + typeId));
    QCOMPARE(guide.name, step->typeName());
    const QString image =
        QString("<img src=\"../resources%1\" width=\"48\" alt=\"%2\">").arg(step->icon().mid(1), guide.name);
    QVERIFY2(guide.lines.contains(image), qPrintable(image));
    QVERIFY(QFile::exists(TestPaths::source("resources" + step->icon().mid(1))));

    const EditorSchema schema = readEditorSchema(*step->metaObject());
    QStringList rows;
    for (const QString &row : guide.tableRows) {
        if (!row.startsWith("| `["))
            rows.append(row);
    }
    QCOMPARE(rows.size(), schema.settings.size());
    for (int i = 0; i < rows.size(); ++i) {
        const SettingSchema &setting = schema.settings.at(i);
        const QStringList cells = rows.at(i).split(" | ");
        QCOMPARE(cells.size(), 4);
        QCOMPARE(cells.at(0), QString("| `%1`").arg(setting.property));
        QCOMPARE(cells.at(1), setting.label);
        QVERIFY2(cells.at(2).startsWith(editorText(setting)), qPrintable(cells.at(2)));
        QCOMPARE(cells.at(3), defaultText(step->property(setting.property.toUtf8().constData())) + " |");
    }
}

void TestStepsGuide::messages_data()
{
    QTest::addColumn<QString>("typeId");
    for (const Section &section : qAsConst(m_sections)) {
        if (!section.typeId.isEmpty())
            QTest::newRow(qPrintable(section.typeId)) << section.typeId;
    }
}

void TestStepsGuide::messages()
{
    QFETCH(QString, typeId);
    const Section guide = section(typeId);
    const QVector<QRegularExpression> expressions = messagesOf(guide);
    QVector<bool> isShown(expressions.size(), false);
    int wrote = 0;
    for (const Example &example : guide.examples) {
        QByteArray report;
        const RunResult result = run(example, report);
        wrote += result.count(StepOutcome::Wrote);
        for (const StepResult &step : result.steps) {
            for (const QString &warning : step.warnings) {
                bool isDocumented = false;
                for (int i = 0; i < expressions.size(); ++i) {
                    if (expressions.at(i).match(warning).hasMatch())
                        isDocumented = isShown[i] = true;
                }
                QVERIFY2(isDocumented, qPrintable(warning));
            }
        }
    }
    QVERIFY(wrote > 0);
    for (int i = 0; i < expressions.size(); ++i)
        QVERIFY2(isShown.at(i), qPrintable(expressions.at(i).pattern()));
}

void TestStepsGuide::theEnglishGuideHasTheSame_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < m_sections.size(); ++i)
        QTest::addRow("%s", qPrintable(i == 0 ? QString("all steps") : m_sections.at(i).typeId)) << i;
}

// What the Chinese guide tells in other words than these has been looked at by the tests above.
void TestStepsGuide::theEnglishGuideHasTheSame()
{
    QFETCH(int, index);
    const QVector<Section> sections = sectionsOf(linesOf(englishFile), englishHeading);
    QCOMPARE(sections.size(), m_sections.size());
    const Section &english = sections.at(index);
    const Section &chinese = m_sections.at(index);
    QCOMPARE(english.typeId, chinese.typeId);
    QCOMPARE(english.name, chinese.name);
    QCOMPARE(english.lines.filter("<img "), chinese.lines.filter("<img "));

    QCOMPARE(english.examples.size(), chinese.examples.size());
    for (int i = 0; i < english.examples.size(); ++i) {
        QCOMPARE(english.examples.at(i).script, chinese.examples.at(i).script);
        QCOMPARE(english.examples.at(i).result, chinese.examples.at(i).result);
    }

    QCOMPARE(english.tableRows.size(), chinese.tableRows.size());
    for (int i = 0; i < english.tableRows.size(); ++i) {
        const QStringList cells = english.tableRows.at(i).split(" | ");
        const QStringList others = chinese.tableRows.at(i).split(" | ");
        QCOMPARE(cells.size(), others.size());
        if (cells.size() == 4) { // A setting: its property, its label, how it is filled in, its default.
            QCOMPARE(cells.at(0), others.at(0));
            QCOMPARE(cells.at(1), others.at(1));
            QCOMPARE(cells.at(3), QString(others.at(3)).replace("空", "empty"));
        } else {
            QCOMPARE(cells.at(0), QString(others.at(0)).replace("、", ", "));
        }
    }
}

void TestStepsGuide::cleanupTestCase()
{
    if (m_renewed.isEmpty())
        return;
    // From the last to the first, so that the lines before keep their numbers.
    for (auto it = m_renewed.end(); it != m_renewed.begin();) {
        --it;
        const int first = it.key() - 1;
        while (m_lines.at(first) != "```")
            m_lines.removeAt(first);
        const QStringList report = QString::fromUtf8(it.value()).split('\n');
        for (int i = report.size() - 2; i >= 0; --i)
            m_lines.insert(first, report.at(i));
    }
    writeLines(guideFile, m_lines);
    writeLines(englishFile, withBlocksOf(m_lines, linesOf(englishFile)));
}

QTEST_GUILESS_MAIN(TestStepsGuide)
#include "tst_stepsguide.moc"
