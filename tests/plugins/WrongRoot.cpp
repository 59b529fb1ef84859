#include "hostapi/IOperationPlugin.h"

#include <QObject>

// Claims the interface in its metadata only.
class WrongRoot : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)
};

#include "WrongRoot.moc"
