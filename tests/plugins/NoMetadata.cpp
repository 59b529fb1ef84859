#include "FixturePlugin.h"

// A library, but no plug-in.
extern "C" Q_DECL_EXPORT Operation *createStep()
{
    return new FixtureStep("fixture.first");
}
