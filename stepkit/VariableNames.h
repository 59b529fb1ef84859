#pragma once

#include <QString>

/// How \a name is shown to the user: with the mark "$" in front, unless it is empty or has one.
QString displayVarName(const QString &name);
