#include "PluginSkeleton.h"

#include "SkeletonNames.h"
#include "host/files/LeftBehind.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

#include <algorithm>

// The macro only works outside a namespace.
static void initialiseTemplates()
{
    Q_INIT_RESOURCE(skeleton);
}

namespace StepHost
{
namespace
{
constexpr int weightStep = 10;

/// What the marks in a template, such as `@name@`, stand for. Those of a step begin with "step" in any case.
using Marks = QHash<QString, QString>;

struct TemplateFile
{
    const char *source;
    const char *path;
};

// A file whose path has a step's mark is written once for each step.
constexpr TemplateFile templateFiles[] = {
    {"CMakeLists.txt.in", "CMakeLists.txt"},
    {"CMakePresets.json.in", "CMakePresets.json"},
    {"README.md.in", "README.md"},
    {"build.yml.in", ".github/workflows/build.yml"},
    {"gitignore.in", ".gitignore"},
    {"Plugin.h.in", "@name@.h"},
    {"Plugin.cpp.in", "@name@.cpp"},
    {"plugin.qrc.in", "@name@.qrc"},
    {"Step.h.in", "@StepClass@.h"},
    {"Step.cpp.in", "@StepClass@.cpp"},
    {"icon.svg.in", "images/@prefix@_@step@.svg"},
    {"example.json.in", "scripts/example.json"},
    {"tst_plugin.cpp.in", "tests/tst_@target@.cpp"},
};

// "text-steps" becomes "TextSteps".
QString nameFromFolder(const QString &folder)
{
    QString name;
    const QStringList words = QFileInfo(folder).fileName().split(
        QRegularExpression(QStringLiteral("[^A-Za-z0-9]+")), Qt::SkipEmptyParts);
    for (const QString &word : words)
        name += capitalised(word);
    return name;
}

// "TextSteps" begins with the word "text", "CSVSteps" with "csv".
QString firstWord(const QString &name)
{
    static const QRegularExpression word(QStringLiteral("^(?:[A-Z]+(?![a-z])|[A-Z][a-z0-9]*)"));
    return word.match(name).captured().toLower();
}

void complete(PluginSkeleton &skeleton, const QString &folder)
{
    if (skeleton.name.isEmpty())
        skeleton.name = nameFromFolder(folder);
    if (skeleton.pluginId.isEmpty())
        skeleton.pluginId = QLatin1String("com.example.") + skeleton.name;
    if (skeleton.prefix.isEmpty())
        skeleton.prefix = firstWord(skeleton.name);
    if (skeleton.category.isEmpty())
        skeleton.category = capitalised(skeleton.prefix);
    if (skeleton.steps.isEmpty())
        skeleton.steps.append({QStringLiteral("set"), QString()});
    for (SkeletonStep &step : skeleton.steps) {
        if (step.displayName.isEmpty())
            step.displayName = capitalised(skeleton.prefix) + QLatin1Char(' ') + step.id;
    }
}

QString fill(const QString &text, const Marks &marks)
{
    static const QRegularExpression mark(QStringLiteral("@([A-Za-z_]+)@"));
    QString filled;
    int end = 0;
    for (auto it = mark.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        filled += text.midRef(end, match.capturedStart() - end);
        filled += marks.value(match.captured(1));
        end = match.capturedEnd();
    }
    return filled + text.midRef(end);
}

struct LanguageText
{
    const char *mark;
    const char *chinese;
    const char *english;
};

constexpr LanguageText languageTexts[] = {
    {"plugin_name", "@category@插件", "@category@ steps"},
    {"label_value", "内容", "Value"},
    {"label_target", "目标变量", "Target variable"},
    {"target_lead", "目标变量", "the target variable"},
    {"target_trail", "不是文本类型，已跳过", "is no text variable, skipped"},
    {"value_lead", "内容", "the value"},
    {"value_trail", "不是文本，已跳过", "is no text, skipped"},
    {"description", "把 %1 写入 %2", "Write %1 into %2"},
    {"sample", "你好", "hello"},
};

Marks marksOf(const PluginSkeleton &skeleton)
{
    Marks marks{
        {QStringLiteral("name"), skeleton.name},
        {QStringLiteral("target"), skeleton.name.toLower()},
        {QStringLiteral("plugin_id"), skeleton.pluginId},
        {QStringLiteral("prefix"), skeleton.prefix},
        {QStringLiteral("category"), skeleton.category},
        {QStringLiteral("FirstClass"), stepClass(skeleton, skeleton.steps.constFirst())},
    };
    for (const LanguageText &text : languageTexts) {
        const char *const words =
            skeleton.language == SkeletonLanguage::English ? text.english : text.chinese;
        marks.insert(QLatin1String(text.mark), fill(QString::fromUtf8(words), marks));
    }
    return marks;
}

// For each step the marks of the plug-in and its own.
QVector<Marks> marksOfSteps(const PluginSkeleton &skeleton)
{
    QVector<Marks> all;
    for (const SkeletonStep &step : skeleton.steps) {
        Marks marks = marksOf(skeleton);
        const QString tag = stepTag(skeleton, step);
        marks.insert(QStringLiteral("step"), step.id);
        marks.insert(QStringLiteral("step_name"), step.displayName);
        marks.insert(QStringLiteral("step_weight"), QString::number(all.size() * weightStep));
        marks.insert(QStringLiteral("StepTag"), tag);
        marks.insert(QStringLiteral("StepClass"), stepClass(skeleton, step));
        all.append(marks);
    }
    return all;
}

bool mentionsStep(const QString &line)
{
    return line.contains(QLatin1String("@step"), Qt::CaseInsensitive);
}

// Lines in a row that mention a step are repeated for each step.
QString fillLines(const QString &text, const Marks &marks, const QVector<Marks> &steps)
{
    QString filled;
    QString repeated;
    const auto flush = [&] {
        for (const Marks &step : steps)
            filled += fill(repeated, step);
        repeated.clear();
    };
    QStringList lines = text.split(QLatin1Char('\n'));
    lines.removeLast();
    for (const QString &line : qAsConst(lines)) {
        if (mentionsStep(line)) {
            repeated += line + QLatin1Char('\n');
        } else {
            flush();
            filled += fill(line, marks) + QLatin1Char('\n');
        }
    }
    flush();
    return filled;
}

struct GeneratedFile
{
    QString path;
    QString text;
};

QVector<GeneratedFile> generate(const PluginSkeleton &skeleton)
{
    initialiseTemplates();
    const Marks marks = marksOf(skeleton);
    const QVector<Marks> steps = marksOfSteps(skeleton);
    QVector<GeneratedFile> files;
    for (const TemplateFile &file : templateFiles) {
        QFile source(QLatin1String(":/skeleton/templates/") + QLatin1String(file.source));
        if (!source.open(QIODevice::ReadOnly))
            qFatal("the template %s is not compiled in", file.source);
        const QString text = QString::fromUtf8(source.readAll());
        const QString path = QLatin1String(file.path);
        if (mentionsStep(path)) {
            for (const Marks &step : steps)
                files.append({fill(path, step), fill(text, step)});
        } else {
            files.append({fill(path, marks), fillLines(text, marks, steps)});
        }
    }
    return files;
}

Result<void> writeFile(const QString &fileName, const QString &text)
{
    QDir().mkpath(QFileInfo(fileName).path());
    QFile file(fileName);
    const QByteArray utf8 = text.toUtf8();
    if (file.open(QIODevice::WriteOnly) && file.write(utf8) == utf8.size() && file.flush())
        return {};
    return failure(QStringLiteral("%1: %2").arg(fileName, file.errorString()));
}
} // namespace

Result<QStringList> writePluginSkeleton(PluginSkeleton skeleton, const QString &folder)
{
    const QFileInfo target(QDir::cleanPath(folder));
    complete(skeleton, target.absoluteFilePath());
    const Result<void> checked = checkNames(skeleton);
    if (!checked)
        return failure(checked.error());
    if (target.exists() || target.isSymLink())
        return failure(
            QStringLiteral("%1: there is something of that name already; name a new folder").arg(folder));
    if (!QFileInfo(target.absolutePath()).isDir())
        return failure(QStringLiteral("%1: there is no such folder").arg(target.absolutePath()));

    // Written beside its place and moved there when it is whole. The folder inside has ordinary permissions.
    const EndsLater endsLater;
    removeLeftBehind(target.absolutePath());
    const QTemporaryDir temporary(target.absolutePath() + QLatin1Char('/') + temporaryPrefix()
                                  + QLatin1String("XXXXXX"));
    const InUse inUse(temporary.path());
    if (!temporary.isValid())
        return failure(QStringLiteral("%1: %2").arg(target.absolutePath(), temporary.errorString()));
    const QString place = temporary.filePath(target.fileName());
    QStringList names;
    const QVector<GeneratedFile> files = generate(skeleton);
    for (const GeneratedFile &file : files) {
        const Result<void> written = writeFile(place + QLatin1Char('/') + file.path, file.text);
        if (!written)
            return failure(written.error());
        names.append(file.path);
    }
    if (!QDir().rename(place, target.absoluteFilePath()))
        return failure(QStringLiteral("%1: the new folder could not be moved here").arg(folder));
    return names;
}
} // namespace StepHost
