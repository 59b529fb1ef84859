#include "Company.h"

#include "host/values/QuotedText.h"

#include <QFileInfo>
#include <QHash>

namespace StepHost
{
void compareCompany(QVector<PluginReport> &reports)
{
    QHash<QString, QString> owners; // By kind and name.
    for (PluginReport &report : reports) {
        const QString file = QFileInfo(report.fileName).canonicalFilePath();
        for (CheckResult &result : report.results) {
            if (result.id != QLatin1String("identity.company"))
                continue;
            for (const CheckFact &name : qAsConst(result.facts)) {
                const QString key = name.what + QLatin1Char('\n') + name.value.toLower();
                const QString owner = owners.value(key, file);
                owners.insert(key, owner);
                if (owner == file || result.outcome != CheckOutcome::Passed)
                    continue;
                result.outcome = CheckOutcome::Failed;
                result.reason =
                    QStringLiteral("%1 has the %2 %3, too; a host that has both tells them not apart")
                        .arg(inOneLine(owner), name.what, quoted(name.value));
            }
        }
    }
}
} // namespace StepHost
