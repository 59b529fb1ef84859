#pragma once

#include <QByteArray>

/// Whether the plug-in is to have the fault \a name. The environment variable `QUILLMAP_FAULT` chooses one when the
/// library is loaded; without it the plug-in keeps the contract.
inline bool has(const char *name)
{
    static const QByteArray active = qgetenv("QUILLMAP_FAULT");
    return active == name;
}
