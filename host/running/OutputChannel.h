#pragma once

#include <cstdio>

namespace StepHost
{
/// Takes standard output for what this process has to tell another one, so that nothing that a plug-in prints gets in
/// between: that goes to standard error from now on. Both standard input and the stream that is returned are binary. To be
/// called once, before anything is printed.
std::FILE *takeStandardOutput();
} // namespace StepHost
