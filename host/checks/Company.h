#pragma once

#include "CheckRunner.h"

namespace StepHost
{
/// Compares what the plug-ins of \a reports are called by: `identity.company`, where it was checked, fails for a plug-in
/// that has a name which one before it has. Type ids that differ in their case only are the same.
void compareCompany(QVector<PluginReport> &reports);
} // namespace StepHost
