#include "References.h"

#include "host/values/VariableName.h"

namespace StepHost
{
bool isReference(const QString &text)
{
    return text.size() > 1 && hasMark(text);
}

QStringList memberReferences(const QString &reference, VarType type)
{
    if (type != VarType::List && type != VarType::Table)
        return {};
    QStringList members{reference + QLatin1String(".Count"), reference + QLatin1String(".Rows")};
    if (type == VarType::Table)
        members.append(reference + QLatin1String(".Columns"));
    members.append(reference + QLatin1String(".Items"));
    return members;
}

namespace
{
struct Parts
{
    QString variable;
    QString member;
};

// What the reference `text` is made of.
Parts partsOf(const QString &text)
{
    const QString rest = withoutMark(text);
    const int dot = rest.indexOf(QLatin1Char('.'));
    if (dot < 1)
        return {rest, QString()};
    return {rest.left(dot), rest.mid(dot + 1)};
}
} // namespace

QString unknownVariable(const QString &text, const VariableScope &variables)
{
    const QString name = variableOf(text);
    // As the steps do, the name is handed to the scope as it stands.
    return variables.contains(name) ? QString() : name;
}

QString variableOf(const QString &text)
{
    return isReference(text) ? partsOf(text).variable : QString();
}

QString memberOf(const QString &text)
{
    return isReference(text) ? partsOf(text).member : QString();
}

bool hasUnknownMember(const QString &text, const VariableScope &variables)
{
    const QString member = memberOf(text);
    const VarType type = isReference(text) ? variables.typeOf(partsOf(text).variable) : VarType::Undeclared;
    if (member.isEmpty() || type == VarType::Undeclared)
        return false;
    // A list may hold rows, and then has columns as a table does.
    const VarType shape = type == VarType::List ? VarType::Table : type;
    return !memberReferences(QString(), shape).contains(QLatin1Char('.') + member, Qt::CaseInsensitive);
}
} // namespace StepHost
