#pragma once

#include <QString>

/// The kinds of data that steps are dragged and copied as.
namespace Workbench::StepMime
{
/// A type id in UTF-8: a new step of that type is to be placed.
inline QString stepType()
{
    return QStringLiteral("application/x-quillmap-step-type");
}

/// A script, in either form, whose steps are to be placed.
inline QString steps()
{
    return QStringLiteral("application/x-quillmap-script");
}

/// The rows that are dragged within one script, and the script model that they belong to.
inline QString rows()
{
    return QStringLiteral("application/x-quillmap-rows");
}
} // namespace Workbench::StepMime
