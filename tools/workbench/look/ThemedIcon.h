#pragma once

#include <QIcon>
#include <QString>

namespace Workbench
{
/// The icon \a name out of the program's resources, drawn in the text colour of the palette of the time,
/// sharp at every size and resolution. What its SVG draws in `#000000` takes that colour.
QIcon themedIcon(const QString &name);

/// The icon of a step, from the resource path that the step gives. A path that opens no image gives a
/// plain sheet.
QIcon stepIcon(const QString &path);
} // namespace Workbench
