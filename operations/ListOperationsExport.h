#pragma once

#include <QtGlobal>

/// Marks the step classes, which the module that they are linked into exports.
#define LISTOPERATIONS_EXPORT Q_DECL_EXPORT
