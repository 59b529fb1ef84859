#include "StepRecord.h"

#include "host/values/ErrorTexts.h"
#include "hostapi/Operation.h"

#include <QIODevice>

#include <exception>

namespace StepHost
{
QByteArray recordOf(const Operation &step, StreamForm form)
{
    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    stream.setVersion(form.version);
    stream.setByteOrder(form.order);
    step.saveOperation(stream);
    return record;
}

LoadEnd loadRecord(Operation &step, const QByteArray &record, StreamForm form)
{
    QDataStream stream(record);
    stream.setVersion(form.version);
    stream.setByteOrder(form.order);
    step.loadOperation(stream);
    return {stream.status(), int(stream.device()->pos())};
}

Result<void> loadWholeRecord(Operation &step, const QByteArray &record)
{
    LoadEnd end;
    try {
        end = loadRecord(step, record);
    } catch (const std::exception &exception) {
        return failure(
            ErrorTexts::tr("the step threw an exception: %1").arg(QString::fromUtf8(exception.what())));
    } catch (...) {
        return failure(ErrorTexts::tr("the step threw an exception"));
    }
    if (end.status == QDataStream::ReadPastEnd)
        return failure(ErrorTexts::tr("the record ends too early"));
    if (end.status != QDataStream::Ok)
        return failure(ErrorTexts::tr("the record is damaged, or one of a newer version of the step"));
    const int rest = record.size() - end.position;
    if (rest != 0)
        return failure(ErrorTexts::tr("the step leaves %1 bytes of the record").arg(rest));
    return {};
}
} // namespace StepHost
