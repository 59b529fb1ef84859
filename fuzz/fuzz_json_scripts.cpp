/// Any bytes as a script in JSON: read, written, read again and run.
///
/// The whole input is the document.

#include "FuzzInput.h"
#include "ScriptCheck.h"
#include "host/ScriptJson.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray json =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const StepHost::ScriptResult read = StepHost::readScript(json, listSteps());
    require(read || (read.script.steps.empty() && read.script.variables.empty()),
            "a refused script is not empty");
    if (!read)
        return 0;

    const StepHost::WriteResult written = StepHost::writeScript(read.script);
    // The typed form of a value is deeper than the plain one, so a script may be too deep to be written.
    if (written) {
        const StepHost::ScriptResult again = StepHost::readScript(written.bytes, listSteps());
        require(static_cast<bool>(again), "a written script does not read");
        requireSameScript(read.script, again.script);
    }
    requireRuns(read.script);
    return 0;
}
