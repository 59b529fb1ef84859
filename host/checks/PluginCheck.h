#pragma once

#include <QSize>
#include <QString>
#include <QStringList>
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

/// Something that a check was told by a plug-in, and that has to be the same in every process.
struct CheckFact
{
    QString what; ///< Such as `the type id of ListAddOperation`.
    QString value; ///< Fit for a message.
};

/// The result of one check.
struct CheckResult
{
    QString id;
    CheckOutcome outcome = CheckOutcome::Passed;
    QString reason; ///< One line; empty when the check passed.
    qint64 milliseconds = 0;
    QVector<CheckFact> facts =
        {}; ///< What the same check of the same plug-in has to find in another process.
};

/// What became of drawing an icon.
struct IconDrawing
{
    bool isSupported = true; ///< Whether this kind of image can be drawn here at all.
    bool isImage = false;
    bool isBlank = true; ///< Whether all of its pixels are transparent.
};

/// Draws the image at a resource path. The library itself knows no images; a program that does hands this in.
using IconRenderer = std::function<IconDrawing(const QString &path)>;

/// In how many processes a check is done. All have to find the same facts.
enum class CheckWorlds {
    One,
    Again, ///< In another process, too, where hashes have another order.
    Elsewhere, ///< The same, where the locale and the time zone are others, and by these the day.
};

/// One thing that a plug-in has to keep.
struct PluginCheck
{
    QString id; ///< Such as `clone.parent`: a family and a name.
    QString protects; ///< What the check protects, in one line.
    std::function<void(CheckContext &context)>
        run; ///< Returns when the check passes; ends it otherwise by an exception.
    CheckWorlds worlds = CheckWorlds::One;
    std::function<void(CheckContext &context)> introduce =
        {}; ///< Tells facts for the report once the check has passed, whatever becomes of it.
    bool takesLong = false; ///< Whether it is to be begun before the others.
};

/// All checks, in the order in which a plug-in's author wants to read them: a check stands after those
/// that it builds on. The first one is whether the library loads; without it no other can be done.
const QVector<PluginCheck> &pluginChecks();

/// The check \a id; null when there is none.
const PluginCheck *findPluginCheck(const QString &id);

/// How a check is done in this process.
struct CheckSetup
{
    IconRenderer renderer; ///< Without one the checks that need to draw are skipped.
    unsigned seed = 1; ///< Of all that is chosen at random.
    bool isAgain = false; ///< Whether this is the second process for the check.
    bool isElsewhere =
        false; ///< Whether facts are compared with those of another process, which did other runs before.
    QStringList scripts = {}; ///< The files of scripts whose steps are to be run, too; absolute paths.
    QStringList companions =
        {}; ///< Plug-ins whose steps the scripts may use beside those of the one under check.
    QString releaseFile = {}; ///< Where there is, or will be, what an older release gives; empty without one.
};

/// Does \a check on the plug-in \a fileName here and now, in this process: a crash of the plug-in is one
/// of the caller. When it is done, and before the library is unloaded, \a done gets the result, too; again when there are
/// facts for the report. Never throws.
CheckResult runPluginCheck(const PluginCheck &check, const QString &fileName, const CheckSetup &setup,
                           const std::function<void(const CheckResult &)> &done = {});
} // namespace StepHost
