#pragma once

#include "host/values/Result.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace StepHost
{
/// A step that a new plug-in starts with.
struct SkeletonStep
{
    QString id; ///< What follows the prefix in its type id, such as `join`: lower-case letters and digits.
    QString displayName; ///< For the user to read; made of the prefix and the id when empty.
};

/// In which language the steps of a new plug-in speak to the user.
enum class SkeletonLanguage {
    Chinese,
    English,
};

/// What a new plug-in is called. Everything that is empty is derived from what is not.
struct PluginSkeleton
{
    /// The root object's class and the library's name, such as `TextSteps`; made of the folder's name.
    QString name;
    /// In reverse domain form; `com.example.` and the name.
    QString pluginId;
    /// With what the type ids begin, without the dot, such as `text`; the first word of the name.
    QString prefix;
    /// The category of the steps; the prefix with a capital letter.
    QString category;
    /// The steps; one named `set`.
    QVector<SkeletonStep> steps;
    /// Of what the user reads and is not named here.
    SkeletonLanguage language = SkeletonLanguage::Chinese;
};

/// Writes the sources of a step plug-in, which builds against the installed library OperationCore, into the
/// new folder \a folder.
///
/// Refused when there is something of that name already, when its parent folder is missing, and when a name
/// in \a skeleton is none that the sources can have. The folder appears whole or not at all.
/// Returns the names of its files, relative to it.
Result<QStringList> writePluginSkeleton(PluginSkeleton skeleton, const QString &folder);
} // namespace StepHost
