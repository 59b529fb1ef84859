#include "hostapi/IOperationPlugin.h"
#include "hostapi/Operation.h"
#include "tests/support/StepTable.h"
#include "tests/support/TestPaths.h"

#include <QDirIterator>
#include <QPluginLoader>
#include <QProcess>
#include <QRegularExpression>
#include <QResource>
#include <QStandardPaths>
#include <QXmlStreamReader>
#include <QtTest>

namespace
{
const QString resourceFolder = QStringLiteral(":/images");
const QString sourceFolder = TestPaths::source("resources/images");

QStringList sortedIcons()
{
    QStringList icons;
    for (const StepRow &row : stepTable())
        icons += row.icon;
    icons.sort();
    return icons;
}

const QStringList iconPaths = sortedIcons();

using Attributes = QMap<QString, QString>;

/// One element as a text, its attributes in alphabetical order, indented as deep as it is nested.
QString element(int depth, const QString &name, const Attributes &attributes)
{
    QString text = QString(2 * depth, ' ') + name;
    for (auto it = attributes.cbegin(); it != attributes.cend(); ++it)
        text += QString(" %1=\"%2\"").arg(it.key(), it.value());
    return text;
}

/// The elements of the drawing \a svg in document order. What is no element, but a comment or a text, stands
/// there by its kind.
QStringList elements(const QByteArray &svg)
{
    QStringList found;
    QXmlStreamReader reader(svg);
    int depth = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartDocument:
        case QXmlStreamReader::EndDocument:
            break;
        case QXmlStreamReader::StartElement: {
            Attributes attributes;
            for (const QXmlStreamAttribute &attribute : reader.attributes())
                attributes.insert(attribute.qualifiedName().toString(), attribute.value().toString());
            found << element(depth, reader.qualifiedName().toString(), attributes);
            if (reader.namespaceUri() != QLatin1String("http://www.w3.org/2000/svg"))
                found << "outside the SVG namespace: " + reader.namespaceUri();
            ++depth;
            break;
        }
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            if (!reader.isWhitespace())
                found << reader.tokenString();
        }
    }
    if (reader.hasError())
        found << reader.errorString();
    return found;
}

QString number(int value)
{
    return QString::number(value);
}

QStringList line(int x1, int y1, int x2, int y2, int width)
{
    return {element(2, "line",
                    {{"x1", number(x1)},
                     {"y1", number(y1)},
                     {"x2", number(x2)},
                     {"y2", number(y2)},
                     {"stroke", "#196EBF"},
                     {"stroke-width", number(width)},
                     {"stroke-linecap", "round"}})};
}

QStringList listLines(int x1, int x2, const QVector<int> &ys)
{
    QStringList lines;
    for (int y : ys)
        lines += line(x1, y, x2, y, 30);
    return lines;
}

QStringList path(const QString &data)
{
    return {element(2, "path",
                    {{"d", data},
                     {"fill", "none"},
                     {"stroke", "#196EBF"},
                     {"stroke-width", "44"},
                     {"stroke-linecap", "round"},
                     {"stroke-linejoin", "round"}})};
}

QStringList rectangle(int x, const QString &fill, const Attributes &more = {})
{
    Attributes attributes = more;
    attributes.insert("x", number(x));
    attributes.insert("y", "380");
    attributes.insert("width", "220");
    attributes.insert("height", "264");
    attributes.insert("rx", "28");
    attributes.insert("fill", fill);
    attributes.insert("stroke", "#196EBF");
    attributes.insert("stroke-width", "34");
    return {element(2, "rect", attributes)};
}

/// What every icon has before its glyph.
QStringList frame()
{
    return {
        element(0, "svg", {{"viewBox", "0 0 1024 1024"}, {"width", "200"}, {"height", "200"}}),
        element(1, "g", {{"transform", "translate(512,512) scale(1.9841) translate(-512,-512)"}}),
        element(2, "rect",
                {{"x", "280"},
                 {"y", "280"},
                 {"width", "464"},
                 {"height", "464"},
                 {"rx", "64"},
                 {"fill", "#E3F0FB"},
                 {"stroke", "#196EBF"},
                 {"stroke-width", "34"}}),
    };
}

/// What is drawn in each frame, and the sizes of the file and of its form in the library.
struct Drawing
{
    QStringList glyph;
    int size;
    int stored;
};

QMap<QString, Drawing> drawings()
{
    const QVector<int> four{404, 458, 512, 566};
    return {
        {"list_add",
         {listLines(392, 632, four) + line(596, 512, 700, 512, 48) + line(648, 460, 648, 564, 48), 923, 923}},
        {"list_remove",
         {listLines(392, 632, four) + line(596, 460, 700, 564, 48) + line(596, 564, 700, 460, 48), 923, 923}},
        {"list_clear",
         {listLines(392, 632, four) + line(392, 392, 632, 632, 52) + line(392, 632, 632, 392, 52), 923, 923}},
        {"list_get",
         {listLines(372, 572, four) + line(620, 512, 700, 512, 46) + line(658, 470, 700, 512, 46)
              + line(700, 512, 658, 554, 46),
          1029, 1029}},
        {"list_sort",
         {listLines(372, 592, four) + line(620, 492, 660, 452, 46) + line(660, 452, 700, 492, 46)
              + line(620, 532, 660, 572, 46) + line(660, 572, 700, 532, 46),
          1135, 322}},
        {"list_reverse",
         {listLines(372, 592, four) + path("M660 452 H600 M624 424 L600 452 L624 480")
              + path("M600 572 H660 M636 544 L660 572 L636 600"),
          1013, 1013}},
        {"list_dedup",
         {listLines(372, 572, {400, 456, 512}) + path("M372 620 H572 M572 620 L536 588 M572 620 L536 652"),
          765, 765}},
        // The steps of 40 and 66 and the lines that leave the box on the right belong to the drawing.
        {"list_merge",
         {listLines(360, 510, {400, 460, 520, 560, 620, 680}) + line(540, 460, 660, 460, 44)
              + line(618, 418, 660, 460, 44) + line(660, 460, 618, 502, 44)
              + listLines(678, 798, {480, 514, 548, 582, 616, 650}),
          1877, 364}},
        {"list_intersect", {rectangle(360, "none") + rectangle(444, "#CFE4F7"), 506, 506}},
        {"list_subtract",
         {rectangle(360, "#E3F0FB") + rectangle(470, "none", {{"stroke-dasharray", "26 22"}}), 531, 531}},
    };
}

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        qWarning().noquote() << fileName << file.errorString();
    return file.readAll();
}

QStringList entriesOf(const QString &folder)
{
    QStringList entries;
    QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        entries << it.next();
    entries.sort();
    return entries;
}
} // namespace

/// The icons as they come out of the loaded plug-in.
class TestIcons : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void nothingElseIsThere();
    void everyStepHasItsOwnIcon();
    void drawing_data();
    void drawing();
    void storage_data();
    void storage();
    void formatting_data();
    void formatting();
    void theCheckedInFilesAreCompiledIn_data();
    void theCheckedInFilesAreCompiledIn();
    void readInPieces_data();
    void readInPieces();
    void compiledForm();
    void theirRegistrationComesFirst();
    void unloadingTakesThemAway();

private:
    QStringList m_rootBefore;
    QPluginLoader m_loader;
};

/// Fills the table with one row for each icon.
static void iconRows()
{
    QTest::addColumn<QString>("icon");
    for (const QString &icon : iconPaths)
        QTest::newRow(qPrintable(icon)) << icon;
}

void TestIcons::initTestCase()
{
    m_rootBefore = QDir(":/").entryList();
    m_loader.setFileName(TestPaths::listPlugin());
    m_loader.setLoadHints({}); // by default a plug-in stays in memory when it is unloaded
}

void TestIcons::init()
{
    QVERIFY2(m_loader.load(), qPrintable(m_loader.errorString()));
}

void TestIcons::cleanup()
{
    if (m_loader.isLoaded())
        QVERIFY2(m_loader.unload(), qPrintable(m_loader.errorString()));
}

void TestIcons::nothingElseIsThere()
{
    QCOMPARE(entriesOf(resourceFolder), iconPaths);
    QCOMPARE(entriesOf(sourceFolder).size(), iconPaths.size());

    QStringList root = QDir(":/").entryList();
    QVERIFY(root.removeOne("images"));
    QCOMPARE(root, m_rootBefore);
}

void TestIcons::everyStepHasItsOwnIcon()
{
    auto *plugin = qobject_cast<IOperationPlugin *>(m_loader.instance());
    QVERIFY(plugin);
    const QList<Operation *> prototypes = plugin->createPrototypes();
    QStringList icons;
    for (const Operation *prototype : prototypes) {
        QCOMPARE(prototype->icon(), ":/images/" + prototype->typeId().replace('.', '_') + ".svg");
        icons << prototype->icon();
    }
    qDeleteAll(prototypes);
    icons.sort();
    QCOMPARE(icons, iconPaths);
}

void TestIcons::drawing_data()
{
    iconRows();
}

void TestIcons::drawing()
{
    QFETCH(QString, icon);
    const QString name = QFileInfo(icon).baseName();
    QVERIFY2(drawings().contains(name), qPrintable(name + " has no row in the table of drawings"));
    QCOMPARE(elements(contentOf(icon)), frame() + drawings()[name].glyph);
}

void TestIcons::storage_data()
{
    iconRows();
}

void TestIcons::storage()
{
    QFETCH(QString, icon);
    const QString name = QFileInfo(icon).baseName();
    QVERIFY2(drawings().contains(name), qPrintable(name + " has no row in the table of drawings"));
    const int size = drawings()[name].size;
    const int stored = drawings()[name].stored;
    const QResource resource(icon);
    QVERIFY(resource.isValid());
    const bool compressed = stored < size;
    QCOMPARE(resource.compressionAlgorithm(),
             compressed ? QResource::ZlibCompression : QResource::NoCompression);
    QCOMPARE(resource.size(), qint64(stored));
    QCOMPARE(resource.uncompressedSize(), qint64(size));
    QCOMPARE(QFileInfo(icon).size(), qint64(size));
    QVERIFY(resource.lastModified().isValid());

    const QByteArray data(reinterpret_cast<const char *>(resource.data()), stored);
    QCOMPARE(compressed ? qUncompress(data) : data, contentOf(icon));
}

void TestIcons::formatting_data()
{
    iconRows();
}

/// One element per line, two spaces for each level, a line break at the end, and nothing before the root.
void TestIcons::formatting()
{
    QFETCH(QString, icon);
    const QString text = QString::fromLatin1(contentOf(icon));
    QVERIFY(text.endsWith("</svg>\n"));
    QVERIFY(!text.contains('\r'));

    const QStringList lines = text.chopped(1).split('\n');
    QVERIFY(lines.size() > 5);
    for (int i = 0; i < lines.size(); ++i) {
        const int fromEnd = lines.size() - 1 - i;
        const int depth = qMin(2, qMin(i, fromEnd));
        QVERIFY2(lines[i].startsWith(QString(2 * depth, ' ') + '<'), qPrintable(lines[i]));
        QVERIFY2(lines[i].endsWith(depth == 2 ? "\"/>" : ">"), qPrintable(lines[i]));
        QVERIFY2(lines[i].count('<') == 1, qPrintable(lines[i]));
    }
}

void TestIcons::theCheckedInFilesAreCompiledIn_data()
{
    iconRows();
}

/// The drawings are sources: no step of the build makes or changes them.
void TestIcons::theCheckedInFilesAreCompiledIn()
{
    QFETCH(QString, icon);
    const QByteArray checkedIn = contentOf(sourceFolder + '/' + QFileInfo(icon).fileName());
    QVERIFY(!checkedIn.isEmpty());
    QCOMPARE(contentOf(icon), checkedIn);
}

void TestIcons::readInPieces_data()
{
    iconRows();
}

void TestIcons::readInPieces()
{
    QFETCH(QString, icon);
    QFile file(icon);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QByteArray read;
    while (!file.atEnd()) {
        const QByteArray piece = file.read(100);
        QVERIFY(!piece.isEmpty());
        read += piece;
    }
    QCOMPARE(read, QResource(icon).uncompressedData());

    QVERIFY(file.seek(file.size() - 7));
    QCOMPARE(file.readAll(), QByteArray("</svg>\n"));
}

/// The compiled form: that of Qt 5.15, with one entry for each file, for every country and language.
void TestIcons::compiledForm()
{
    const QByteArray source = contentOf(RESOURCE_SOURCE);
    QVERIFY(source.contains("int version = 3;\n    QT_RCC_PREPEND_NAMESPACE(qRegisterResourceData)"));

    const QByteArray start = "qt_resource_struct[] = {";
    const int from = source.indexOf(start) + start.size();
    const QString tree = QString::fromLatin1(source.mid(from, source.indexOf("};", from) - from));
    QByteArray bytes;
    auto numbers = QRegularExpression("0x([0-9a-f]{1,2}),").globalMatch(tree);
    while (numbers.hasNext())
        bytes += char(numbers.next().captured(1).toInt(nullptr, 16));
    constexpr int entrySize = 22; // with a time of modification
    QCOMPARE(bytes.size(), (2 + iconPaths.size()) * entrySize);
    for (int file = 2; file < 2 + iconPaths.size(); ++file)
        QCOMPARE(bytes.mid(file * entrySize + 6, 4).toHex(' '), QByteArray("00 00 00 01"));
}

/// Nothing else in the library runs when it is loaded.
void TestIcons::theirRegistrationComesFirst()
{
    QFile file(TestPaths::listPlugin());
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    if (!file.read(4).startsWith("\x7f"
                                 "ELF"))
        QSKIP("Initialisers are looked up on systems with ELF libraries only.");
    const QString nm = QStandardPaths::findExecutable("nm");
    if (nm.isEmpty())
        QSKIP("The program nm, of the package binutils, is not installed.");
    QProcess process;
    process.start(nm, {"--defined-only", "--format=posix", TestPaths::listPlugin()});
    QVERIFY2(process.waitForFinished() && process.exitCode() == 0, process.readAllStandardError());

    // Sanitizers and coverage counters have initialisers with a priority, a number behind the prefix.
    const QRegularExpression initialiser("^_GLOBAL__sub_I_(?!\\d{5}_)(\\S+)",
                                         QRegularExpression::MultilineOption);
    QStringList files;
    auto matches = initialiser.globalMatch(QString::fromUtf8(process.readAllStandardOutput()));
    while (matches.hasNext())
        files << matches.next().captured(1);
    QCOMPARE(files, QStringList("qrc_listoper.cpp"));
}

void TestIcons::unloadingTakesThemAway()
{
    for (const QString &icon : iconPaths)
        QVERIFY2(QFile::exists(icon), qPrintable(icon));

    QVERIFY2(m_loader.unload(), qPrintable(m_loader.errorString()));

    for (const QString &icon : iconPaths)
        QVERIFY2(!QFile::exists(icon), qPrintable(icon));
    QVERIFY(!QFileInfo::exists(resourceFolder));
    QCOMPARE(QDir(":/").entryList(), m_rootBefore);
}

QTEST_GUILESS_MAIN(TestIcons)
#include "tst_icons.moc"
