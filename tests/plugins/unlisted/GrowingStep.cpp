#include "GrowingStep.h"

#include "ActiveFault.h"

#include <QDataStream>

void GrowingStep::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << note << qint32(times) << loud;
}

void GrowingStep::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    stream >> note;
    if (!has("persistence.tail-kept")) {
        times = 1;
        loud = true;
    }
    if (has("persistence.tail-zero")) {
        stream >> times >> loud;
        stream.resetStatus();
        return;
    }
    const bool isWhole = stream.status() == QDataStream::Ok;
    if (isWhole && !stream.atEnd())
        stream >> times;
    if (isWhole && !stream.atEnd())
        stream >> loud;
    if (has("persistence.tail-half") && isWhole && stream.status() != QDataStream::Ok) {
        times = 1;
        stream.resetStatus();
    }
}

Operation *GrowingStep::clone(QObject *parent) const
{
    auto *copy = new GrowingStep;
    copy->setParent(parent);
    copy->note = note;
    copy->times = times;
    copy->loud = loud;
    copy->m_baseState = m_baseState;
    return copy;
}
