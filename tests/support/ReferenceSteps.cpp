#include "ReferenceSteps.h"

#include "ShowValue.h"
#include "StepFamily.h"
#include "WarningLog.h"

#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <QObject>
#include <QVector>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{
QString warningLine(const char *lead, const QString &text, const char *trail)
{
    QString line;
    QDebug(&line) << lead << text << trail;
    return line.trimmed();
}

const char skipped[] = "，已跳过";

bool canBeList(const QVariant &value)
{
    return value.canConvert(QMetaType::QVariantList);
}

bool readList(const VariableScope &scope, const QString &name, QVariantList &list, QStringList &warnings)
{
    if (name.isEmpty())
        return false;
    if (scope.typeOf(name) != VarType::List) {
        warnings << warningLine("[ListOp] 变量", name, "不是列表类型，已跳过");
        return false;
    }
    const QVariant value = scope.get(name);
    list = canBeList(value) ? value.value<QVariantList>() : QVariantList();
    return true;
}

QVariant literal(const QString &text)
{
    bool ok = false;
    const double number = text.toDouble(&ok);
    if (ok)
        return QVariant(number);
    return QVariant(text);
}

QVariant memberOf(const QVariant &value, const QString &member)
{
    const QString lower = member.toLower();
    if (canBeList(value)) {
        const auto list = value.value<QVariantList>();
        if (lower == "rows" || lower == "count")
            return QVariant(list.size());
        if (lower == "items")
            return value;
        if (lower == "columns") {
            if (list.isEmpty() || !canBeList(list[0]))
                return QVariant();
            int longest = 0;
            for (const QVariant &row : list) {
                const int length = canBeList(row) ? row.value<QVariantList>().size() : 0;
                if (length > longest)
                    longest = length;
            }
            return QVariant(longest);
        }
    }
    if (!value.canConvert(QMetaType::QObjectStar) || !value.value<QObject *>())
        return QVariant();
    return value.value<QObject *>()->property(member.toUtf8());
}

QVariant resolve(const VariableScope &scope, const QString &text)
{
    if (text.size() < 2 || text[0] != '$')
        return literal(text);
    const int dot = text.indexOf('.', 1);
    if (dot < 2)
        return scope.get(text.mid(1));
    const QVariant value = scope.get(text.mid(1, dot - 1));
    const QString member = text.mid(dot + 1);
    return member.isEmpty() ? value : memberOf(value, member);
}

int integerOf(double number)
{
    if (number >= 2147483648.0 || number <= -2147483649.0 || std::isnan(number))
        return std::numeric_limits<int>::min();
    return static_cast<int>(std::trunc(number));
}

// Whether the text is a truth word; the word's meaning goes to truth.
bool truthOf(const QString &text, bool &truth)
{
    const QString word = text.trimmed().toLower();
    truth = QStringList({"true", "1", "yes", "是", "y"}).contains(word);
    return truth || QStringList({"false", "0", "no", "否", "n", ""}).contains(word);
}

bool bracketList(const QString &text, QVariantList &list)
{
    const QString trimmed = text.trimmed();
    if (!trimmed.startsWith('[') || !trimmed.endsWith(']'))
        return false;
    const QStringList parts = trimmed.mid(1, trimmed.size() - 2).split(',');
    for (const QString &part : parts) {
        if (!part.trimmed().isEmpty())
            list.append(literal(part.trimmed()));
    }
    return true;
}

QVariantList jsonTable(const QString &text)
{
    QVariantList rows;
    const QJsonArray lines = QJsonDocument::fromJson(text.trimmed().toUtf8()).array();
    for (const QJsonValue &line : lines) {
        if (!line.isArray())
            return QVariantList();
        QVariantList row;
        const QJsonArray cells = line.toArray();
        for (const QJsonValue &cell : cells)
            row << QVariant(cell.isString() ? cell.toString() : QString());
        rows << QVariant(row);
    }
    return rows;
}

QVariant emptyOf(VarType type)
{
    switch (type) {
    case VarType::Int:
        return QVariant(0);
    case VarType::Double:
        return QVariant(0.0);
    case VarType::String:
        return QVariant(QString());
    case VarType::Bool:
        return QVariant(false);
    case VarType::List:
    case VarType::Table:
        return QVariant(QVariantList());
    default:
        return QVariant();
    }
}

// The value as a variable of the type takes it; the type's empty value when it does not.
QVariant converted(const QVariant &value, VarType type, bool &accepted)
{
    const bool isText = value.userType() == QMetaType::QString;
    const bool isBool = value.userType() == QMetaType::Bool;
    const bool isList = value.userType() == QMetaType::QVariantList;
    const QString text = isText ? value.toString() : QString();
    accepted = true;
    if (value.isNull() || (isText && text.isEmpty()))
        return emptyOf(type);

    switch (type) {
    case VarType::Int:
        if (isBool)
            return QVariant(value.toBool() ? 1 : 0);
        if (!isText && value.canConvert(QMetaType::LongLong))
            return QVariant(value.toInt());
        if (isText) {
            const int integer = text.toInt(&accepted);
            if (accepted)
                return QVariant(integer);
            const double number = text.toDouble(&accepted);
            if (accepted)
                return QVariant(integerOf(number));
        }
        break;
    case VarType::Double:
        if (isBool)
            return QVariant(value.toBool() ? 1.0 : 0.0);
        if (!isText && value.canConvert(QMetaType::Double))
            return QVariant(value.toDouble());
        if (isText) {
            const double number = text.toDouble(&accepted);
            if (accepted)
                return QVariant(number);
        }
        break;
    case VarType::String:
        if (!isList)
            return isText ? value : QVariant(value.toString());
        break;
    case VarType::Bool:
        if (isBool)
            return value;
        if (isText) {
            bool truth = false;
            accepted = truthOf(text, truth);
            return QVariant(truth);
        }
        if (value.canConvert(QMetaType::Double))
            return QVariant(!(value.toDouble() == 0.0));
        break;
    case VarType::List:
        if (canBeList(value))
            return value;
        if (isText && text[0] == '[') {
            QVariantList list;
            accepted = bracketList(text, list);
            return QVariant(list);
        }
        break;
    case VarType::Table:
        if (isList) {
            const QVariantList list = value.toList();
            const bool isTable = !list.isEmpty() && list[0].userType() == QMetaType::QVariantList;
            return isTable ? value : QVariant(QVariantList{value});
        }
        return QVariant(isText ? jsonTable(text) : QVariantList());
    default:
        return value;
    }
    accepted = false;
    return emptyOf(type);
}

bool equalsAny(const QVariant &candidate, const QVariantList &others)
{
    for (const QVariant &other : others) {
        if (candidate == other)
            return true;
    }
    return false;
}

bool isNumber(const QVariant &value)
{
    return value.canConvert(QMetaType::Double) && value.userType() != QMetaType::QString;
}

bool isLess(const QVariant &left, const QVariant &right)
{
    if (isNumber(left) && isNumber(right))
        return left.toDouble() < right.toDouble();
    return left.toString() < right.toString();
}

// Whether isLess() orders these elements, rather than going in circles.
bool isOrdered(const QVariantList &list)
{
    int numbers = 0;
    for (const QVariant &element : list) {
        if (isNumber(element) && std::isnan(element.toDouble()))
            return false;
        if (isNumber(element))
            ++numbers;
    }
    return numbers == 0 || numbers == list.size();
}

ReferenceOutcome refused(const QStringList &warnings)
{
    ReferenceOutcome outcome;
    outcome.warnings = warnings;
    return outcome;
}

ReferenceOutcome refused(const char *lead, const QString &text, const char *trail = skipped)
{
    return refused({warningLine(lead, text, trail)});
}

ReferenceOutcome written(const QString &name, const QVariant &value)
{
    ReferenceOutcome outcome;
    outcome.written = name;
    outcome.value = value;
    return outcome;
}

ReferenceOutcome add(const QVariantMap &settings, const VariableScope &scope, QVariantList list)
{
    const QVariant item = resolve(scope, settings["value"].toString());
    const QString index = settings["index"].toString().trimmed();
    if (index.isEmpty()) {
        list.append(item);
    } else {
        bool ok = false;
        int position = index.toInt(&ok);
        if (!ok)
            return refused("[ListAdd] 插入位置非法：", index);
        if (position < 0)
            position = 0;
        if (position > list.size())
            position = list.size();
        list.insert(position, item);
    }
    return written(settings["targetVar"].toString(), list);
}

ReferenceOutcome remove(const QVariantMap &settings, const VariableScope &scope, QVariantList list)
{
    const QString index = settings["index"].toString();
    const QString value = settings["value"].toString();
    if (settings["mode"].toInt() == 0) {
        bool ok = false;
        const int position = index.trimmed().toInt(&ok);
        if (!ok || position < 0 || position >= list.size())
            return refused("[ListRemove] 索引越界：", index);
        list.removeAt(position);
        return written(settings["targetVar"].toString(), list);
    }
    const int size = list.size();
    PlainSteps::removeValue(list, resolve(scope, value));
    if (list.size() == size)
        return refused("[ListRemove] 未找到匹配项：", value);
    return written(settings["targetVar"].toString(), list);
}

ReferenceOutcome get(const QVariantMap &settings, const VariableScope &scope, const QVariantList &list)
{
    const QString index = settings["index"].toString();
    const QString target = settings["targetVar"].toString();
    bool ok = false;
    const int position = index.trimmed().toInt(&ok);
    if (!ok || position < 0 || position >= list.size())
        return refused("[ListGet] 索引越界：", index);
    if (scope.typeOf(target) == VarType::Undeclared)
        return refused("[ListGet] 目标变量", target, "未声明，已跳过");
    const QVariant value = converted(list[position], scope.typeOf(target), ok);
    if (!ok)
        return refused("[ListGet] 项与目标变量", target, "类型不匹配，已跳过");
    return written(target, value);
}

ReferenceOutcome sort(const QVariantMap &settings, QVariantList list)
{
    const bool anyOrder = !isOrdered(list);
    if (!anyOrder)
        PlainSteps::sort(list);
    if (!settings["ascending"].toBool())
        PlainSteps::reverse(list);
    ReferenceOutcome outcome = written(settings["targetVar"].toString(), list);
    outcome.anyOrder = anyOrder;
    return outcome;
}

ReferenceOutcome combine(const QString &typeId, const QVariantMap &settings, const VariableScope &scope,
                         const QVariantList &listA)
{
    const QString target = settings["targetVar"].toString();
    if (scope.typeOf(target) != VarType::List) {
        const char *lead = typeId == "list.merge" ? "[ListMerge] 目标变量"
            : typeId == "list.intersect"          ? "[ListIntersect] 目标变量"
                                                  : "[ListSubtract] 目标变量";
        return refused(lead, target, "未声明为列表，已跳过");
    }
    QStringList warnings;
    QVariantList listB;
    if (!readList(scope, settings["listB"].toString(), listB, warnings))
        return refused(warnings);
    if (typeId == "list.merge")
        return written(target, PlainSteps::merge(listA, listB));
    if (typeId == "list.intersect")
        return written(target, PlainSteps::intersect(listA, listB));
    return written(target, PlainSteps::subtract(listA, listB));
}
} // namespace

void PlainSteps::add(QVariantList &list, const QVariant &item)
{
    list.insert(list.size(), item);
}

void PlainSteps::removeAt(QVariantList &list, int position)
{
    list.removeAt(position);
}

void PlainSteps::removeValue(QVariantList &list, const QVariant &value)
{
    for (int i = 0; i < list.size(); ++i) {
        if (list.at(i) == value) {
            list.removeAt(i);
            return;
        }
    }
}

void PlainSteps::sort(QVariantList &list)
{
    std::stable_sort(list.begin(), list.end(), isLess);
}

void PlainSteps::reverse(QVariantList &list)
{
    std::reverse(list.begin(), list.end());
}

QVariantList PlainSteps::dedup(const QVariantList &list)
{
    QVariantList kept;
    kept.reserve(list.size());
    for (const QVariant &element : list) {
        if (!equalsAny(element, kept))
            kept.append(element);
    }
    return kept;
}

QVariantList PlainSteps::merge(const QVariantList &a, const QVariantList &b)
{
    QVariantList all = a;
    for (const QVariant &element : b)
        all.append(element);
    return all;
}

QVariantList PlainSteps::intersect(const QVariantList &a, const QVariantList &b)
{
    QVariantList common;
    for (const QVariant &element : a) {
        if (equalsAny(element, b) && !equalsAny(element, common))
            common.append(element);
    }
    return common;
}

QVariantList PlainSteps::subtract(const QVariantList &a, const QVariantList &b)
{
    QVariantList rest;
    for (const QVariant &element : a) {
        if (!equalsAny(element, b))
            rest.append(element);
    }
    return rest;
}

ReferenceOutcome referenceOutcome(const QString &typeId, const QVariantMap &settings,
                                  const VariableScope &scope)
{
    const bool combines = settings.contains("listA");
    const QString source = settings[combines                   ? "listA"
                                        : typeId == "list.get" ? "sourceVar"
                                                               : "targetVar"]
                               .toString();
    QStringList warnings;
    QVariantList list;
    if (!readList(scope, source, list, warnings))
        return refused(warnings);
    if (combines)
        return combine(typeId, settings, scope, list);
    if (typeId == "list.add")
        return add(settings, scope, list);
    if (typeId == "list.remove")
        return remove(settings, scope, list);
    if (typeId == "list.get")
        return get(settings, scope, list);
    if (typeId == "list.sort")
        return sort(settings, list);
    if (typeId == "list.reverse") {
        PlainSteps::reverse(list);
        return written(source, list);
    }
    if (typeId == "list.dedup")
        return written(source, PlainSteps::dedup(list));
    if (typeId == "list.clear")
        return written(source, QVariantList());
    return refused({"tests/support/ReferenceSteps.cpp has no rule for " + typeId});
}

bool isSameValue(const QVariant &left, const QVariant &right)
{
    if (left.userType() != right.userType() || left.isNull() != right.isNull())
        return false;
    switch (left.userType()) {
    case QMetaType::UnknownType:
        return true;
    case QMetaType::QVariantList: {
        const QVariantList leftList = left.toList();
        const QVariantList rightList = right.toList();
        return std::equal(leftList.begin(), leftList.end(), rightList.begin(), rightList.end(), isSameValue);
    }
    case QMetaType::Double:
    case QMetaType::Float: {
        const double leftNumber = left.toDouble();
        const double rightNumber = right.toDouble();
        return std::isnan(leftNumber)
            ? std::isnan(rightNumber)
            : leftNumber == rightNumber && std::signbit(leftNumber) == std::signbit(rightNumber);
    }
    default:
        if (left.userType() == qMetaTypeId<QVector<double>>())
            return left.value<QVector<double>>().size() == right.value<QVector<double>>().size();
        return left == right;
    }
}

bool isSamePermuted(const QVariantList &left, QVariantList right)
{
    for (const QVariant &element : left) {
        const auto isSame = [&element](const QVariant &other) { return isSameValue(element, other); };
        const auto found = std::find_if(right.begin(), right.end(), isSame);
        if (found == right.end())
            return false;
        right.erase(found);
    }
    return right.isEmpty();
}

QString differenceFromReference(Operation &step, const VariableScope &scope)
{
    const QVariantMap settings = settingsOf(step);
    const ReferenceOutcome expected = referenceOutcome(step.typeId(), settings, scope);
    VariableScope wanted = scope;
    if (!expected.written.isEmpty())
        wanted.set(expected.written, expected.value);

    VariableScope after = scope;
    step.setVariableScope(&after);
    const WarningLog log;
    step.doOperation();
    step.setVariableScope(nullptr);

    const QStringList warnings = log.take();
    if (warnings != expected.warnings)
        return "warnings: " + warnings.join('\n') + "\nnot: " + expected.warnings.join('\n');
    if (settingsOf(step) != settings)
        return "the run changed the step's settings";
    if (after.names() != wanted.names())
        return "variables: " + after.names().join(' ') + "\nnot: " + wanted.names().join(' ');
    for (const QString &name : wanted.names()) {
        const QString reference = name.startsWith('$') ? '$' + name : name;
        if (after.typeOf(reference) != wanted.typeOf(reference))
            return "the run changed the type of " + name;
        const QVariant value = after.get(reference);
        const QVariant wantedValue = wanted.get(reference);
        if (!isSameValue(value, wantedValue)
            && !(expected.anyOrder && isSamePermuted(value.toList(), wantedValue.toList())))
            return name + ": " + shown(value) + "\nnot: " + shown(wantedValue);
    }
    return QString();
}
