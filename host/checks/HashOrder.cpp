#include "HashOrder.h"

#include "host/checks/snapshot/OutputWatch.h"
#include "host/checks/trial/TrialScope.h"

#include <QHash>
#include <QSet>
#include <QStringList>

namespace StepHost
{
namespace
{
// The order under the present seed: of the elements of each list alone, and among so many that a set grows.
QVector<QStringList> ordersOf(const QVector<QStringList> &lists)
{
    QVector<QStringList> orders;
    for (const QStringList &list : lists) {
        for (const int more : {0, 16, 40}) {
            QSet<QString> set(list.begin(), list.end());
            for (int i = 0; i < more; ++i)
                set.insert(QString::number(1000 + i));
            QStringList order = set.values();
            for (int i = 0; i < more; ++i)
                order.removeOne(QString::number(1000 + i));
            orders.append(order);
        }
    }
    return orders;
}

bool isEachOther(const QVector<QStringList> &orders, const QVector<QStringList> &others)
{
    for (int i = 0; i < orders.size(); ++i) {
        if (orders.at(i) == others.at(i))
            return false;
    }
    return true;
}

// The texts of the lists that steps are run on, where there are two or more.
QVector<QStringList> knownLists()
{
    QVector<QStringList> lists{{QStringLiteral("a"), QStringLiteral("b")}};
    for (const ScopeContent content : {ScopeContent::Mixed, ScopeContent::Numbers, ScopeContent::Texts}) {
        VariableScope scope;
        fillTrialScope(scope, content);
        const QStringList texts = scope.get(QStringLiteral("items")).toStringList();
        lists.append(texts);
    }
    return lists;
}
} // namespace

void fixHashOrder(bool isOther)
{
    constexpr int lastSeed = 5000;
    qSetGlobalQHashSeed(0);
    if (!isOther)
        return;
    const OutputWatch silence; // Qt has something to say about each seed but 0.
    const QVector<QStringList> lists = knownLists();
    const QVector<QStringList> orders = ordersOf(lists);
    for (int seed = 1; seed <= lastSeed; ++seed) {
        qSetGlobalQHashSeed(seed);
        if (isEachOther(orders, ordersOf(lists)))
            return;
    }
}
} // namespace StepHost
