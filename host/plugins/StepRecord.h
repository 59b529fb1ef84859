#pragma once

#include "host/values/Result.h"

#include <QByteArray>
#include <QDataStream>

class Operation;

/// The records of steps: what Operation::saveOperation() writes and Operation::loadOperation() reads.
namespace StepHost
{
/// The form of the stream that a record is written to or read from; by default that of every file of the host's.
struct StreamForm
{
    int version = QDataStream::Qt_5_15;
    QDataStream::ByteOrder order = QDataStream::BigEndian;
};

/// The record that \a step writes.
QByteArray recordOf(const Operation &step, StreamForm form = {});

/// How a stream was left after loading.
struct LoadEnd
{
    QDataStream::Status status = QDataStream::Ok;
    int position = 0; ///< Bytes read.
};

/// Lets \a step load \a record, whatever becomes of it. What the step throws is passed on.
LoadEnd loadRecord(Operation &step, const QByteArray &record, StreamForm form = {});

/// Lets \a step load \a record. Refused are a record that the step does not read to its end and no further, and a
/// step that throws.
Result<void> loadWholeRecord(Operation &step, const QByteArray &record);
} // namespace StepHost
