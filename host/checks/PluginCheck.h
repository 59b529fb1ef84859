#pragma once

#include <QSize>
#include <QString>
#include <QVector>

#include <functional>

namespace StepHost
{
class CheckContext;

/// How a check of a plug-in ended.
enum class CheckOutcome {
    Passed,
    Warning, ///< Nothing is broken, and there is something that the author should know.
    Skipped, ///< The check could not be done here.
    Failed, ///< The plug-in breaks what the check protects.
    Crashed, ///< The process of the check ended before the check did.
    TimedOut, ///< The check did not end within its time limit.
};

/// The word for \a outcome, such as `timed out`.
QString outcomeWord(CheckOutcome outcome);

/// The result of one check.
struct CheckResult
{
    QString id;
    CheckOutcome outcome = CheckOutcome::Passed;
    QString reason; ///< One line; empty when the check passed.
    qint64 milliseconds = 0;
};

/// What became of drawing an icon.
struct IconDrawing
{
    bool isSupported = true; ///< Whether this kind of image can be drawn here at all.
    bool isImage = false;
    bool isBlank = true; ///< Whether all of its pixels are transparent or have the same colour.
};

/// Draws the image at a resource path. The library itself knows no images; a program that does hands this in.
using IconRenderer = std::function<IconDrawing(const QString &path)>;

/// One thing that a plug-in has to keep.
struct PluginCheck
{
    QString id; ///< Such as `clone.parent`: a family and a name.
    QString protects; ///< What the check protects, in one line.
    void (*run)(CheckContext &context); ///< Returns when the check passes; ends it otherwise by an exception.
};

/// All checks, in the order in which a plug-in's author wants to read them: a check stands after those
/// that it builds on. The first one is whether the library loads; without it no other can be done.
const QVector<PluginCheck> &pluginChecks();

/// The check \a id; null when there is none.
const PluginCheck *findPluginCheck(const QString &id);

/// Does \a check on the plug-in \a fileName here and now, in this process: a crash of the plug-in is one
/// of the caller. Without \a renderer the checks that need to draw are skipped. Never throws.
CheckResult runPluginCheck(const PluginCheck &check, const QString &fileName, const IconRenderer &renderer);
} // namespace StepHost
