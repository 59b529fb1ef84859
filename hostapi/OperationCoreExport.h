#pragma once

#include <QtGlobal>

/// Marks what the library `OperationCore` exports.
#ifdef OPERATIONCORE_LIBRARY
#define OPERATIONCORE_EXPORT Q_DECL_EXPORT
#else
#define OPERATIONCORE_EXPORT Q_DECL_IMPORT
#endif
