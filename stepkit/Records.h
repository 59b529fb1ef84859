#pragma once

/// \file
/// Records that grow: a step's later versions read what its earlier ones wrote.
///
/// Use one of two ways in Operation::saveOperation() and Operation::loadOperation(), behind the call of the base:
///
/// - A step that is new writes a version in front of its fields. Each field that a later version adds stands behind the
///   others, and is read from that version on.
/// - A step that was shipped without a version reads each field that it adds later only while something is left of the
///   record.
///
/// In either way a field that the record lacks gets the value that a new step has, whatever the step held before.

#include <QtGlobal>

class QDataStream;

/// Writes \a version, which is 1 or more, as one `quint32`.
void writeRecordVersion(QDataStream &stream, quint32 version);

/// Reads what writeRecordVersion() wrote, for a step that knows the versions from 1 to \a newest.
///
/// A record of another version gives 0 and sets the stream's status to `QDataStream::ReadCorruptData`, so that hosts
/// refuse it. One that ends before its version gives 0 and leaves the status at `QDataStream::ReadPastEnd`.
quint32 readRecordVersion(QDataStream &stream, quint32 newest);

/// Whether \a stream has something left behind the fields that were read so far, and no error yet.
///
/// It takes for granted that nothing but the record is in the stream, as it is with records in files of this host.
/// Records in a row, each shorter than the step's newest, cannot be read so: they need a version in front.
bool hasRecordTail(const QDataStream &stream);
