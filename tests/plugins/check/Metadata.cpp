// What moc writes for Q_PLUGIN_METADATA, with room for faults: METADATA_IID and METADATA_CLASS.

#include "hostapi/OperationCoreVersion.h"

#include <QtPlugin>

#ifndef METADATA_IID
#define METADATA_IID IOperationPlugin_iid
#endif
#ifndef METADATA_ARCHITECTURE
#ifdef QT_NO_DEBUG
#define METADATA_ARCHITECTURE "\0"
#else
#define METADATA_ARCHITECTURE "\1"
#endif
#endif

// A CBOR map of key 2, a text of 42 bytes, and key 3, a text of 12 bytes.
QT_PLUGIN_METADATA_SECTION
static constexpr unsigned char qt_pluginMetaData[] =
    "QTMETADATA !"
    "\0\5\17" METADATA_ARCHITECTURE "\xbf\2\x78\x2a" METADATA_IID "\3\x6c" METADATA_CLASS "\xff";

extern "C" Q_DECL_EXPORT const char *qt_plugin_query_metadata()
{
    return reinterpret_cast<const char *>(qt_pluginMetaData);
}
