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

QString unknownVariable(const QString &text, const VariableScope &variables)
{
    if (!isReference(text))
        return QString();
    QString name = withoutMark(text);
    const int dot = name.indexOf(QLatin1Char('.'));
    if (dot > 0)
        name.truncate(dot);
    // As the steps do, the name is handed to the scope as it stands.
    return variables.contains(name) ? QString() : name;
}
} // namespace StepHost
