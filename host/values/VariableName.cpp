#include "VariableName.h"

#include "ErrorTexts.h"
#include "QuotedText.h"

namespace StepHost
{
namespace
{
constexpr QLatin1Char mark('$');
}

QString referenceTo(const QString &name)
{
    return mark + name;
}

bool hasMark(const QString &text)
{
    return text.startsWith(mark);
}

QString withoutMark(const QString &text)
{
    return hasMark(text) ? text.mid(1) : text;
}

bool isVariableName(const QString &name)
{
    return !name.isEmpty() && !hasMark(name);
}

QString variableNameError(const QString &text)
{
    const QString name = withoutMark(text);
    if (isVariableName(name))
        return QString();
    return name.isEmpty()
        ? ErrorTexts::tr("a variable's name cannot be empty")
        : ErrorTexts::tr("the variable's name %1 has more than one \"$\" in front").arg(quoted(text));
}
} // namespace StepHost
