#include "host/checks/CheckContext.h"
#include "host/running/ProcessProbe.h"
#include "host/values/QuotedText.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace StepHost
{
namespace
{
constexpr qint64 largestIcon = qint64(64) * 1024;

void checkPath(CheckContext &context)
{
    context.forEachStep([](const Operation &step) {
        if (!step.icon().startsWith(QLatin1String(":/")))
            fail(QStringLiteral("icon() is %1, which is no Qt resource path (\":/...\")")
                     .arg(quoted(step.icon())));
    });
}

void checkOpens(CheckContext &context)
{
    context.forEachStep([](const Operation &step) {
        QFile file(step.icon());
        if (!file.open(QIODevice::ReadOnly))
            fail(QStringLiteral("%1 cannot be opened: %2").arg(quoted(step.icon()), file.errorString()));
        if (file.read(1).isEmpty())
            fail(QStringLiteral("%1 is empty").arg(quoted(step.icon())));
    });
}

void checkSize(CheckContext &context)
{
    context.forEachStep([](const Operation &step) {
        const qint64 size = QFileInfo(step.icon()).size();
        if (size > largestIcon)
            fail(QStringLiteral("%1 has %2 bytes, at most %3 are allowed")
                     .arg(quoted(step.icon()), QString::number(size), QString::number(largestIcon)));
    });
}

// Skips the check where the icon of `step` cannot be drawn.
IconDrawing drawIcon(CheckContext &context, const Operation &step)
{
    if (!context.renderer())
        skip(QStringLiteral("images cannot be drawn here"));
    const IconDrawing drawing = context.renderer()(step.icon());
    if (!drawing.isSupported)
        skip(QStringLiteral("images like %1 cannot be drawn here").arg(quoted(step.icon())));
    return drawing;
}

void checkRenders(CheckContext &context)
{
    context.forEachStep([&context](const Operation &step) {
        if (!drawIcon(context, step).isImage)
            fail(QStringLiteral("%1 is no image that can be drawn").arg(quoted(step.icon())));
    });
}

void checkNotBlank(CheckContext &context)
{
    context.forEachStep([&context](const Operation &step) {
        const IconDrawing drawing = drawIcon(context, step);
        if (drawing.isImage && drawing.isBlank)
            fail(QStringLiteral("%1 shows nothing").arg(quoted(step.icon())));
    });
}
void checkOwn(CheckContext &context)
{
    QHash<QString, QString> paths;
    context.forEachStep([&paths](const Operation &step) {
        const QString path = step.icon();
        paths.insert(QString(path.constData(), path.size()),
                     QString::fromUtf8(step.metaObject()->className()));
    });
    context.unload();
    if (isMapped(context.fileName()).value_or(true))
        skip(QStringLiteral("the library stays in memory after it was unloaded, and its resources with it"));
    for (auto it = paths.begin(); it != paths.end(); ++it) {
        if (QFileInfo::exists(it.key()))
            fail(QStringLiteral("%1: %2 is there without the plug-in; it belongs to somebody else")
                     .arg(it.value(), quoted(it.key())));
    }
}

void checkStable(CheckContext &context)
{
    context.forEachStep([](const Operation &step) {
        const QString first = step.icon();
        for (int call = 2; call <= 4; ++call) {
            if (step.icon() != first)
                fail(QStringLiteral("icon() is %1 in call %2, and was %3 before")
                         .arg(quoted(step.icon()), QString::number(call), quoted(first)));
        }
    });
}

bool isSvg(const QByteArray &bytes)
{
    return bytes.left(1000).contains("<svg");
}

// Fails when the drawing in `bytes`, from `path`, needs anything else, or is too large to be drawn as it is.
void checkDrawing(const QString &path, const QByteArray &bytes)
{
    constexpr double largest = 8192;
    QXmlStreamReader xml(bytes);
    bool isRoot = true;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("script") || xml.name() == QLatin1String("foreignObject"))
            fail(QStringLiteral("%1 has an element %2, which not every host draws, and none runs")
                     .arg(quoted(path), quoted(xml.name().toString())));
        const QXmlStreamAttributes attributes = xml.attributes();
        for (const QXmlStreamAttribute &attribute : attributes) {
            const QString value = attribute.value().toString().trimmed();
            if (attribute.name() == QLatin1String("href") && !value.startsWith(QLatin1Char('#'))
                && !value.startsWith(QLatin1String("data:")) && xml.name() != QLatin1String("a"))
                fail(QStringLiteral("%1 refers to %2, which is not in it").arg(quoted(path), quoted(value)));
            const bool isLength =
                attribute.name() == QLatin1String("width") || attribute.name() == QLatin1String("height");
            static const QRegularExpression number(QStringLiteral("\\A[0-9.]+"));
            if (isRoot && isLength && number.match(value).captured().toDouble() > largest)
                fail(QStringLiteral("%1 has the %2 %3, at most %4 is allowed")
                         .arg(quoted(path), attribute.name().toString(), quoted(value),
                              QString::number(largest)));
        }
        isRoot = false;
    }
    if (xml.hasError())
        fail(QStringLiteral("%1 is not well-formed in line %2: %3")
                 .arg(quoted(path), QString::number(xml.lineNumber()), xml.errorString()));
}

void checkSelfContained(CheckContext &context)
{
    context.forEachStep([](const Operation &step) {
        QFile file(step.icon());
        if (!file.open(QIODevice::ReadOnly))
            return;
        const QByteArray bytes = file.readAll();
        if (isSvg(bytes))
            checkDrawing(step.icon(), bytes);
    });
}
} // namespace

QVector<PluginCheck> iconChecks()
{
    return {
        {"icon.path", "Every step's icon is a resource of the plug-in's own.", checkPath},
        {"icon.opens", "Every step's icon can be opened.", checkOpens},
        {"icon.own", "Every icon comes with the plug-in.", checkOwn},
        {"icon.stable", "A step has the same icon each time it is asked.", checkStable},
        {"icon.self-contained", "A drawing is well-formed, of a moderate size, and needs no other file.",
         checkSelfContained},
        {"icon.size", "No icon is larger than 64 KiB.", checkSize},
        {"icon.renders", "Every icon is an image that can be drawn.", checkRenders},
        {"icon.not-blank", "Every icon shows something.", checkNotBlank},
    };
}
} // namespace StepHost
