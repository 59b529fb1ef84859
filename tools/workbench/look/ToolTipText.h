#pragma once

#include <QString>

namespace Workbench
{
/// \a text for a tool tip, which then shows it as it stands, even if it looks like HTML,
/// and no more than its first 1,000 characters.
QString toolTipText(const QString &text);

/// \a text, cut off behind 1,000 characters.
QString shortened(const QString &text);
} // namespace Workbench
