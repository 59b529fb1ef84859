#pragma once

#include <QString>

class QObject;

/// What this process is at, noted where another process can read it after this one has crashed.
namespace StepHost
{
/// Notes from now on in the file \a fileName, which is made. Without a call of this, notes go nowhere. To be called
/// once.
void leaveBreadcrumbsIn(const QString &fileName);

/// Notes that \a call of \a object is next, such as `clone()`. Costs next to nothing. With null the call is nobody's.
void noteCall(const char *call, const QObject *object = nullptr);

/// What noteCall() noted last in this process; empty when it was never called.
QString presentCall();

/// The last note in \a fileName, such as `clone() of ListAdd`; empty when there is none.
QString lastBreadcrumb(const QString &fileName);
} // namespace StepHost
