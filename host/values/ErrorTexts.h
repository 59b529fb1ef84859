#pragma once

#include <QCoreApplication>

namespace StepHost
{
/// What is wrong with values, scripts, plug-ins and runs, in the language of the program's user: `ErrorTexts::tr()`.
class ErrorTexts
{
    Q_DECLARE_TR_FUNCTIONS(StepHost::ErrorTexts)
};
} // namespace StepHost
