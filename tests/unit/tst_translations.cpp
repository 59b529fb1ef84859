#include "tests/support/TestPaths.h"

#include <QXmlStreamReader>
#include <QtTest>

class TestTranslations : public QObject
{
    Q_OBJECT

private slots:
    void isComplete();
};

void TestTranslations::isComplete()
{
    QFile file(TestPaths::source("tools/workbench/translations/workbench_zh_CN.ts"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    int messages = 0;
    QString source;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("source"))
            source = xml.readElementText();
        if (xml.name() == QLatin1String("translation")) {
            ++messages;
            QVERIFY2(!xml.attributes().hasAttribute("type"), qPrintable(source));
            const QString text = xml.readElementText(QXmlStreamReader::IncludeChildElements);
            for (const QString &placeholder : {QString("%1"), QString("%2"), QString("%n")})
                QVERIFY2(text.contains(placeholder) == source.contains(placeholder), qPrintable(source));
        }
    }
    QVERIFY(!xml.hasError());
    QVERIFY(messages > 150);
}

QTEST_GUILESS_MAIN(TestTranslations)
#include "tst_translations.moc"
