#pragma once

class QCoreApplication;

namespace StepHost
{
/// The argument that a program is started with to carry out a run.
constexpr char runWorkerName[] = "run-worker";

/// Whether this program was started to carry out a run, as RunProcess starts it.
bool isRunWorker(int argc, char **argv);

/// Carries out the run that RunProcess asks for, and ends the program. To be called first of all in a program that
/// isRunWorker(), before it makes an application object of its own.
///
/// What the plug-ins print goes to standard error. When the process that asked for the run ends, this one ends at once.
/// \a prepare, if it is not null, is called with the application object before all else, such as to install translations.
[[noreturn]] void workOnRun(int &argc, char **argv, void (*prepare)(QCoreApplication &) = nullptr);
} // namespace StepHost
