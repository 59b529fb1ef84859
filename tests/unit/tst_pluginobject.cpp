#include "plugin/ListOperPlugin.h"

#include <QtTest>

namespace
{
// Answers each question with another text than the plug-in.
class OtherPlugin : public ListOperPlugin
{
public:
    QString pluginId() const override
    {
        return "another id";
    }
    QString name() const override
    {
        return "another name";
    }
    QString version() const override
    {
        return "another version";
    }
    int apiVersion() const override
    {
        return 77;
    }
    QStringList requiredCapabilities() const override
    {
        return {"another capability"};
    }
};
} // namespace

class TestPluginObject : public QObject
{
    Q_OBJECT

private slots:
    // The manifest asks for what tells plug-ins apart; what the library is built for stands fast.
    void manifestAsksForTheIdentity()
    {
        const PluginManifest manifest = OtherPlugin().manifest();
        QCOMPARE(manifest.pluginId, QString("another id"));
        QCOMPARE(manifest.name, QString("another name"));
        QCOMPARE(manifest.version, QString("another version"));
        QCOMPARE(manifest.apiVersion, 2);
        QCOMPARE(manifest.requiredCapabilities, QStringList("hasListType"));
    }
};

QTEST_GUILESS_MAIN(TestPluginObject)
#include "tst_pluginobject.moc"
