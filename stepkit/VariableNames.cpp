#include "VariableNames.h"

namespace
{
const QLatin1Char referenceMark('$');
} // namespace

QString displayVarName(const QString &name)
{
    return name.isEmpty() || name.startsWith(referenceMark) ? name : referenceMark + name;
}

QString bareVarName(const QString &name)
{
    return name.startsWith(referenceMark) ? name.mid(1) : name;
}
