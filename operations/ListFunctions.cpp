#include "ListFunctions.h"

bool readListVariable(VariableScope *scope, const QString &name, QVariantList &out)
{
    if (!scope || name.isEmpty())
        return false;
    if (scope->typeOf(name) != VarType::List) {
        warnSkipped("[ListOp] 变量", name, "不是列表类型，已跳过");
        return false;
    }
    out = toListValue(scope->get(name));
    return true;
}

bool readListPair(VariableScope *scope, const QString &nameA, const QString &nameB, const QString &target,
                  const char *targetWarning, ListPair &out)
{
    if (!readListVariable(scope, nameA, out.a))
        return false;
    if (scope->typeOf(target) != VarType::List) {
        warnSkipped(targetWarning, target, "未声明为列表，已跳过");
        return false;
    }
    return readListVariable(scope, nameB, out.b);
}

void writeListVariable(VariableScope *scope, const QString &name, const QVariantList &list)
{
    if (scope)
        scope->set(name, QVariant(list));
}

void reverseList(QVariantList &list)
{
    for (int first = 0, last = list.size() - 1; first < last; ++first, --last)
        list.swapItemsAt(first, last);
}
