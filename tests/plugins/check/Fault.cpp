// All that tells one broken plug-in from another: the name of its fault.

#include <QtGlobal>

class QObject;

Q_DECL_IMPORT QObject *faultyInstance(const char *fault);

extern "C" Q_DECL_EXPORT QObject *qt_plugin_instance()
{
    return faultyInstance(FAULT);
}

#ifdef FAULT_LEAKS_A_SYMBOL
Q_DECL_EXPORT int leakedHelper();
int leakedHelper()
{
    return 1;
}
#endif

#ifdef FAULT_COPIES_THE_HOST
class Q_DECL_EXPORT Operation
{
public:
    int copied();
};

int Operation::copied()
{
    return 1;
}
#endif
