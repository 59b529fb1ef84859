// All that tells one broken plug-in from another: the name of its fault. It is compiled once for each, so it includes
// nothing.

#ifdef _WIN32
#define EXPORTED __declspec(dllexport)
#define IMPORTED __declspec(dllimport)
#else
#define EXPORTED __attribute__((visibility("default")))
#define IMPORTED EXPORTED
#endif
#ifdef FAULT_IS_LINKED_IN
#undef IMPORTED
#define IMPORTED
#endif

class QObject;

IMPORTED QObject *faultyInstance(const char *fault);

extern "C" EXPORTED QObject *qt_plugin_instance()
{
    return faultyInstance(FAULT);
}

#ifdef FAULT_LEAKS_A_SYMBOL
EXPORTED int leakedHelper();
int leakedHelper()
{
    return 1;
}
#endif

#ifdef FAULT_COPIES_THE_HOST
class EXPORTED Operation
{
public:
    int copied();
};

int Operation::copied()
{
    return 1;
}
#endif
