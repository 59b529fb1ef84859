#include "CheckContext.h"
#include "host/values/QuotedText.h"

#include <QFile>
#include <QFileInfo>

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
} // namespace

QVector<PluginCheck> iconChecks()
{
    return {
        {"icon.path", "Every step's icon is a resource of the plug-in's own.", checkPath},
        {"icon.opens", "Every step's icon can be opened.", checkOpens},
        {"icon.size", "No icon is larger than 64 KiB.", checkSize},
        {"icon.renders", "Every icon is an image that can be drawn.", checkRenders},
        {"icon.not-blank", "Every icon shows something.", checkNotBlank},
    };
}
} // namespace StepHost
