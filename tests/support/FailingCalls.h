#pragma once

/// Lets one system call fail, in the program that links the library FailingCalls or is started with it in LD_PRELOAD:
/// there FAILING_CALL names the call, as in `write 3 5`, and the file that FAILING_CALL_MARK names is made when it
/// fails. For Linux.
namespace FailingCalls
{
/// From now on, the \a n-th call of \a name, counted from 1, fails once with the error number \a error, or gets the signal
/// -\a error and goes on. The names are
/// `open` (for files that it makes), `write`, `fsync` (and fdatasync), `fchown`, `linkat` and `rename`. A call that was
/// named before is forgotten.
void fail(const char *name, int n, int error);

/// Whether the call that was named last has failed.
bool hasFailed();
} // namespace FailingCalls
