#pragma once

#include <QString>

namespace Workbench
{
/// \a text for a tool tip, which then shows it as it stands, even if it looks like HTML, and no more than its first
/// 1,000 characters. What deceives is shown as StepHost::inLines() does.
QString toolTipText(const QString &text);

/// \a text, which may be anybody's, in one line of a menu or of a label that takes the focus elsewhere: it names no key,
/// and no more than its first 1,000 characters are shown. What deceives is shown as StepHost::inOneLine() does.
QString menuText(const QString &text);

/// \a text of a menu, without what marks its key and without "…", for a tool bar.
QString toolBarText(QString text);

/// \a text, cut off behind 1,000 characters.
QString shortened(const QString &text);
} // namespace Workbench
