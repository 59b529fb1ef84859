#pragma once

namespace StepHost
{
/// Fixes the order of Qt's hashes and sets in this process, from now on, to one of two. They differ for the elements of
/// the lists that steps are run on, so that what depends on the order shows.
void fixHashOrder(bool isOther);
} // namespace StepHost
