#include "tools/workbench/window/RecentFiles.h"

#include <QtTest>

using namespace Workbench;

class TestRecentFiles : public QObject
{
    Q_OBJECT

private slots:
    void areBounded();
};

void TestRecentFiles::areBounded()
{
    const QTemporaryDir folder;
    QSettings settings(folder.filePath("settings.ini"), QSettings::IniFormat);
    RecentFiles recent(settings);
    for (int i = 0; i < 12; ++i)
        recent.add(QStringLiteral("/scripts/%1.json").arg(i));
    QCOMPARE(recent.paths().size(), 10);
    QCOMPARE(recent.paths().constFirst(), QFileInfo("/scripts/11.json").absoluteFilePath());
    recent.add("/scripts/5.json");
    QCOMPARE(recent.paths().size(), 10);
    QCOMPARE(recent.paths().constFirst(), QFileInfo("/scripts/5.json").absoluteFilePath());
    recent.remove("/scripts/5.json");
    QCOMPARE(RecentFiles(settings).paths().size(), 9);
}

QTEST_GUILESS_MAIN(TestRecentFiles)
#include "tst_recentfiles.moc"
