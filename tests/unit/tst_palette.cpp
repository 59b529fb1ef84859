#include "host/plugins/Palette.h"

#include "tests/support/FixtureStep.h"

#include <QtTest>

#include <limits>
#include <memory>
#include <vector>

using namespace StepHost;

class NamedStep : public FixtureStep
{
public:
    NamedStep(const QString &category, const QString &typeId) : FixtureStep(typeId), m_category(category) { }
    QString root() const override
    {
        return m_category;
    }

private:
    QString m_category;
};

/// A plug-in: its steps as "category/type id", and its weights.
struct Sample
{
    QStringList steps;
    QMap<QString, int> categoryOrder;
    QMap<QString, int> typeOrder;
};

Q_DECLARE_METATYPE(QVector<Sample>)

class TestPalette : public QObject
{
    Q_OBJECT

private slots:
    void order_data();
    void order();
};

void TestPalette::order_data()
{
    constexpr int largest = std::numeric_limits<int>::max();
    QTest::addColumn<QVector<Sample>>("plugins");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("nothing") << QVector<Sample>{} << QStringList{};
    QTest::newRow("by type weight") << QVector<Sample>{{{"A/x.b", "A/x.a", "A/x.c"},
                                                        {{"A", 1}},
                                                        {{"x.a", 3}, {"x.b", 2}, {"x.c", -1}}}}
                                    << QStringList{"0 A/x.c", "0 A/x.b", "0 A/x.a"};
    QTest::newRow("equal type weights by id")
        << QVector<Sample>{{{"A/x.b", "A/x.a"}, {{"A", 1}}, {{"x.a", 5}, {"x.b", 5}}}}
        << QStringList{"0 A/x.a", "0 A/x.b"};
    QTest::newRow("without a weight comes last, by id")
        << QVector<Sample>{{{"A/x.b", "A/x.a", "A/x.c"}, {{"A", 1}}, {{"x.c", largest}}}}
        << QStringList{"0 A/x.c", "0 A/x.a", "0 A/x.b"};
    QTest::newRow("by category weight first")
        << QVector<Sample>{{{"A/x.a", "B/x.b"}, {{"A", 2}, {"B", 1}}, {{"x.a", 1}, {"x.b", 9}}}}
        << QStringList{"0 B/x.b", "0 A/x.a"};
    QTest::newRow("categories of equal weight are not mixed")
        << QVector<Sample>{{{"B/x.1", "A/x.2", "B/x.3", "A/x.4"},
                            {{"A", 1}, {"B", 1}},
                            {{"x.1", 1}, {"x.2", 2}, {"x.3", 3}, {"x.4", 4}}}}
        << QStringList{"0 A/x.2", "0 A/x.4", "0 B/x.1", "0 B/x.3"};
    QTest::newRow("category without a weight comes last")
        << QVector<Sample>{{{"A/x.a", "B/x.b"}, {{"B", largest}}, {{"x.a", 1}, {"x.b", 2}}}}
        << QStringList{"0 B/x.b", "0 A/x.a"};
    QTest::newRow("plug-ins share a category: the smallest weight counts")
        << QVector<Sample>{{{"A/x.a", "B/x.b"}, {{"A", 5}, {"B", 3}}, {{"x.a", 1}, {"x.b", 1}}},
                           {{"A/y.a"}, {{"A", 2}}, {{"y.a", 0}}}}
        << QStringList{"1 A/y.a", "0 A/x.a", "0 B/x.b"};
    QTest::newRow("a type's weight is its own plug-in's affair")
        << QVector<Sample>{{{"A/x.a"}, {{"A", 1}}, {{"x.a", 5}}},
                           {{"A/y.a"}, {{"A", 1}}, {{"x.a", 0}, {"y.a", 4}}}}
        << QStringList{"1 A/y.a", "0 A/x.a"};
}

void TestPalette::order()
{
    QFETCH(QVector<Sample>, plugins);
    QFETCH(QStringList, expected);
    std::vector<std::unique_ptr<Operation>> steps;
    QVector<PaletteSource> sources;
    for (const Sample &plugin : plugins) {
        PaletteSource source;
        source.manifest.categoryOrder = plugin.categoryOrder;
        source.manifest.typeOrder = plugin.typeOrder;
        for (const QString &step : plugin.steps) {
            steps.push_back(std::make_unique<NamedStep>(step.section('/', 0, 0), step.section('/', 1)));
            source.prototypes.append(steps.back().get());
        }
        sources.append(source);
    }
    QStringList actual;
    for (const PaletteEntry &entry : paletteOrder(sources))
        actual.append(QString("%1 %2/%3").arg(entry.source).arg(entry.category, entry.prototype->typeId()));
    QCOMPARE(actual, expected);
}

QTEST_GUILESS_MAIN(TestPalette)

#include "tst_palette.moc"
