#include "operations/ImageSearch.h"

#include <QtTest>

#include <random>
#include <vector>

namespace
{
using Search = const quint16 *(*)(const quint16 *, const quint16 *, SoughtImage);

struct Way
{
    const char *name;
    Search find;
};

// The search that the scan uses, and the one that takes its place where there are no vectors.
constexpr Way ways[] = {{"vectors", findImage}, {"plain", findImagePlainly}};

void addWays()
{
    QTest::addColumn<int>("way");
    for (int way = 0; way < int(std::size(ways)); ++way)
        QTest::newRow(ways[way].name) << way;
}
} // namespace

class TestImageSearch : public QObject
{
    Q_OBJECT

private slots:
    void findsTheFirst_data()
    {
        addWays();
    }

    // Every position in arrays of every length up to some blocks, with another match behind it.
    void findsTheFirst()
    {
        QFETCH(int, way);
        const Search find = ways[way].find;
        for (int size = 0; size <= 200; ++size) {
            std::vector<quint16> images(size_t(size), 1);
            const quint16 *const first = images.data();
            const quint16 *const last = first + size;
            for (const SoughtImage sought : {SoughtImage{7, 7}, {7, 9}, {9, 7}}) {
                QCOMPARE(find(first, last, sought), last);
                for (int position = 0; position < size; ++position) {
                    images[size_t(position)] = 7;
                    QCOMPARE(find(first, last, sought), first + position);
                    images.back() = 7;
                    QCOMPARE(find(first, last, sought), first + position);
                    images.back() = images[size_t(position)] = 1;
                }
            }
        }
    }

    void staysWithin_data()
    {
        addWays();
    }

    // Matches in front of the range and behind it do not count, wherever it begins.
    void staysWithin()
    {
        QFETCH(int, way);
        const Search find = ways[way].find;
        for (int from = 1; from < 20; ++from) {
            for (int size = 0; size < 150; ++size) {
                std::vector<quint16> images(size_t(from + size + 20), 7);
                std::fill_n(images.begin() + from, size, quint16(1));
                const quint16 *const first = images.data() + from;
                QCOMPARE(find(first, first + size, {7, 7}), first + size);
                QCOMPARE(find(first, first + size, {7, 8}), first + size);
            }
        }
    }

    void extremes_data()
    {
        addWays();
    }

    void extremes()
    {
        QFETCH(int, way);
        const std::vector<quint16> images{0x7fff, 0x8000, 0xff00, 0x00ff, 0xffff,
                                          0,      1,      0x0100, 0x8001, 0xfffe};
        const quint16 *const first = images.data();
        const quint16 *const last = first + images.size();
        for (const quint16 *image = first; image != last; ++image) {
            QCOMPARE(ways[way].find(first, last, {*image, *image}), image);
            QCOMPARE(ways[way].find(first, last, {*image, 0x1234}), image);
            QCOMPARE(ways[way].find(first, last, {0x1234, *image}), image);
        }
    }

    void bothWaysFindTheSame()
    {
        std::mt19937 random(15);
        for (int round = 0; round < 20000; ++round) {
            std::vector<quint16> images(random() % 300);
            const unsigned values = 1 + random() % 600;
            for (quint16 &image : images)
                image = quint16(random() % values);
            const SoughtImage sought{quint16(random() % values), quint16(random() % values)};
            const quint16 *const last = images.data() + images.size();
            const quint16 *const first = images.data() + (images.empty() ? 0 : random() % images.size());
            QCOMPARE(findImage(first, last, sought), findImagePlainly(first, last, sought));
        }
    }
};

QTEST_GUILESS_MAIN(TestImageSearch)
#include "tst_imagesearch.moc"
