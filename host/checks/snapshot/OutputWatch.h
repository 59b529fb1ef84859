#pragma once

#include <QtGlobal>

namespace StepHost
{
/// While it lives, takes what this process writes to standard output and standard error, and counts it.
class OutputWatch
{
public:
    OutputWatch();
    ~OutputWatch();

    /// Whether it can count here at all.
    bool isPossible() const
    {
        return m_file >= 0;
    }

    /// The bytes that were written so far, those in buffers included.
    qint64 written() const;

private:
    Q_DISABLE_COPY(OutputWatch)

    int m_file = -1;
    int m_output = -1;
    int m_errors = -1;
};
} // namespace StepHost
