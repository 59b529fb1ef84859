#include "host/plugins/StepSettings.h"

#include "hostapi/Operation.h"

#include <QtTest>

using namespace StepHost;

Q_DECLARE_METATYPE(const QMetaObject *)

namespace
{
class PlainStep : public Operation
{
    Q_OBJECT
    Q_PROPERTY(QString target MEMBER m_target)
    Q_PROPERTY(int count READ count)

public:
    PlainStep() : Operation(nullptr) { }
    int count() const
    {
        return 5;
    }
    QString root() const override
    {
        return QString();
    }
    QString typeId() const override
    {
        return QString();
    }
    QString typeName() const override
    {
        return QString();
    }
    QString icon() const override
    {
        return QString();
    }
    void doOperation() const override { }
    QString toString() const override
    {
        return QString();
    }
    QString description() const override
    {
        return QString();
    }
    Operation *clone(QObject *) const override
    {
        return nullptr;
    }

private:
    QString m_target;
};

class DerivedStep : public PlainStep
{
    Q_OBJECT
    Q_PROPERTY(bool deep MEMBER m_deep)

private:
    bool m_deep = true;
};
} // namespace

class TestStepSettings : public QObject
{
    Q_OBJECT

private slots:
    void areThoseOfTheClass_data();
    void areThoseOfTheClass();
    void areReadAndWrittenAsProperties();
};

void TestStepSettings::areThoseOfTheClass_data()
{
    QTest::addColumn<const QMetaObject *>("metaObject");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("the base") << &Operation::staticMetaObject << QStringList();
    QTest::newRow("a step") << &PlainStep::staticMetaObject << QStringList{"target", "count"};
    QTest::newRow("a step below a step")
        << &DerivedStep::staticMetaObject << QStringList{"target", "count", "deep"};
    QTest::newRow("no step") << &QObject::staticMetaObject << QStringList{"objectName"};
}

void TestStepSettings::areThoseOfTheClass()
{
    QFETCH(const QMetaObject *, metaObject);
    QFETCH(QStringList, names);
    QStringList actual;
    for (const QMetaProperty &setting : settingsOf(*metaObject))
        actual.append(setting.name());
    QCOMPARE(actual, names);
}

void TestStepSettings::areReadAndWrittenAsProperties()
{
    DerivedStep step;
    const Operation &base = step;
    const QVector<QMetaProperty> settings = settingsOf(base);
    QVERIFY(settings.at(0).write(&step, QStringLiteral("names")));
    QVERIFY(!settings.at(1).write(&step, 6));
    QCOMPARE(settings.at(0).read(&step), QVariant(QStringLiteral("names")));
    QCOMPARE(settings.at(1).read(&step), QVariant(5));
    QCOMPARE(settings.at(2).read(&step), QVariant(true));
}

QTEST_GUILESS_MAIN(TestStepSettings)
#include "tst_stepsettings.moc"
