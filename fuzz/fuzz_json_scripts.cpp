/// Any bytes as a script in JSON: read, with a tail read or refused, written, read again and run.
///
/// The whole input is the document.

#include "FuzzInput.h"
#include "ScriptCheck.h"
#include "host/scripts/ScriptJson.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray json =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const auto read = [](const QByteArray &script, const StepHost::StepCatalogue &catalogue) {
        return StepHost::readScript(script, catalogue);
    };
    requireKeepsAndRuns(json, {read, StepHost::writeScript, " \t\r\n"});
    return 0;
}
