#include "SkeletonNames.h"

#include "host/values/QuotedText.h"

#include <QRegularExpression>
#include <QSet>

namespace StepHost
{
namespace
{
bool matches(const QString &text, const char *pattern)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(QLatin1String(pattern)))
        .match(text)
        .hasMatch();
}

struct TakenName
{
    const char *pattern;
    const char *reason;
};

constexpr TakenName takenNames[] = {
    {"[A-Z0-9]+", "may be a macro's, which are in capitals; give it a small letter, such as \"CsvSteps\""},
    {"Q(t|[A-Z]).*", "begins as Qt's own names do; choose another, such as \"TextSteps\""},
    {"I?Operation(Core|Kit|Plugin)?|IEditorRegistry|PluginManifest|VariableScope|VarType|ValueRef|"
     "ListOperPlugin",
     "is one of the host's own; choose another, such as \"TextSteps\""},
    {"(Continuous|Experimental|Nightly)[A-Za-z]*",
     "begins as targets of CTest do; choose another, such as \"TextSteps\""},
    {"(?i)(con|prn|aux|nul|(com|lpt)[0-9])",
     "is that of a device, which Windows has no files of; choose another, such as \"TextSteps\""},
};

Result<void> checkPluginName(const QString &name)
{
    constexpr int longest = 64; // Files are named after it, and after the tests of it.
    if (!matches(name, "[A-Z][A-Za-z0-9]*"))
        return failure(
            QStringLiteral(
                "the name %1 should be a capital letter, then letters and digits, such as \"TextSteps\"")
                .arg(quoted(name)));
    if (name.size() > longest)
        return failure(QStringLiteral("the name %1 should have at most %2 letters")
                           .arg(quoted(name), QString::number(longest)));
    for (const TakenName &taken : takenNames) {
        if (matches(name, taken.pattern))
            return failure(QStringLiteral("the name %1 %2").arg(quoted(name), QLatin1String(taken.reason)));
    }
    return {};
}

Result<void> checkText(const QString &what, const QString &text)
{
    // They end up in string literals of C++ and JSON, which have to be what they look like.
    if (!text.contains(QLatin1Char('"')) && !text.contains(QLatin1Char('\\')) && inOneLine(text) == text)
        return {};
    return failure(QStringLiteral("the %1 %2 has a quote, a backslash or a character that is not seen")
                       .arg(what, quoted(text)));
}

// What a type id is made of, and the names of files.
Result<void> checkWord(const QString &what, const QString &word, const char *example)
{
    constexpr int longest = 32;
    if (word.size() <= longest && matches(word, "[a-z][a-z0-9]*"))
        return {};
    return failure(
        QStringLiteral("the %1 %2 should be lower-case letters and digits, at most %3, such as \"%4\"")
            .arg(what, quoted(word), QString::number(longest), QLatin1String(example)));
}

Result<void> checkPrefix(const QString &prefix)
{
    const Result<void> checked = checkWord(QStringLiteral("prefix"), prefix, "text");
    if (checked && prefix == QLatin1String("list"))
        return failure(
            QStringLiteral("the prefix \"list\" is that of the list steps, which hosts have already; "
                           "choose another with --prefix"));
    return checked;
}

Result<void> checkSteps(const PluginSkeleton &skeleton)
{
    QSet<QString> known;
    for (const SkeletonStep &step : skeleton.steps) {
        Result<void> checked = checkWord(QStringLiteral("step"), step.id, "join");
        if (checked)
            checked = checkText(QStringLiteral("step name"), step.displayName);
        if (!checked)
            return checked;
        if (known.contains(step.id))
            return failure(QStringLiteral("the step %1 is named twice").arg(quoted(step.id)));
        known.insert(step.id);
    }
    return {};
}
} // namespace

QString capitalised(const QString &text)
{
    return text.isEmpty() ? text : text.at(0).toUpper() + text.mid(1);
}

QString stepTag(const PluginSkeleton &skeleton, const SkeletonStep &step)
{
    return capitalised(skeleton.prefix) + capitalised(step.id);
}

QString stepClass(const PluginSkeleton &skeleton, const SkeletonStep &step)
{
    return stepTag(skeleton, step) + QLatin1String("Operation");
}

Result<void> checkNames(const PluginSkeleton &skeleton)
{
    Result<void> checked = checkPluginName(skeleton.name);
    if (checked && !matches(skeleton.pluginId, "[A-Za-z0-9_-]+(\\.[A-Za-z0-9_-]+)+"))
        checked = failure(QStringLiteral("the plug-in id %1 should have the form \"com.example.TextSteps\"")
                              .arg(quoted(skeleton.pluginId)));
    if (checked)
        checked = checkPrefix(skeleton.prefix);
    if (checked)
        checked = checkText(QStringLiteral("category"), skeleton.category);
    if (checked)
        checked = checkSteps(skeleton);
    if (!checked)
        return checked;
    // Files are told apart by more than the case of their names.
    QStringList classes;
    for (const SkeletonStep &step : skeleton.steps)
        classes.append(stepClass(skeleton, step));
    if (classes.contains(skeleton.name, Qt::CaseInsensitive))
        return failure(
            QStringLiteral("the name %1 is taken by another file of the plug-in").arg(quoted(skeleton.name)));
    return {};
}
} // namespace StepHost
