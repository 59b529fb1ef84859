#include "StepTexts.h"

#include "host/values/ErrorTexts.h"
#include "host/values/QuotedText.h"

#include <exception>

namespace StepHost
{
QString takenText(const QString &text)
{
    constexpr int most = 10000000;
    return bounded(text, most);
}

QString stepText(const Operation &step, QString (Operation::*text)() const)
{
    try {
        return takenText((step.*text)());
    } catch (const std::exception &exception) {
        return ErrorTexts::tr("(the plug-in threw an exception: %1)")
            .arg(messageLine(QString::fromUtf8(exception.what())));
    } catch (...) {
        return ErrorTexts::tr("(the plug-in threw an exception)");
    }
}

QString shownStepText(const Operation &step, QString (Operation::*text)() const)
{
    return inLines(stepText(step, text));
}

Operation *cloneStep(const Operation &step, QObject *parent)
{
    try {
        return step.clone(parent);
    } catch (...) {
        return nullptr;
    }
}
} // namespace StepHost
