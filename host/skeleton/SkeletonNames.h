#pragma once

#include "PluginSkeleton.h"

/// What the sources of a new plug-in call things, and what they cannot be called.
namespace StepHost
{
/// \a text with its first letter as a capital.
QString capitalised(const QString &text);

/// What the names of \a step begin with, such as `TextJoin`.
QString stepTag(const PluginSkeleton &skeleton, const SkeletonStep &step);

/// The class of \a step, such as `TextJoinOperation`.
QString stepClass(const PluginSkeleton &skeleton, const SkeletonStep &step);

/// Refuses names in \a skeleton that are not of their form, or with which the sources would not compile, would
/// not be written on every system, or would make steps that the host has already. Says what would be right.
Result<void> checkNames(const PluginSkeleton &skeleton);
} // namespace StepHost
