#pragma once

#include <QtGlobal>

namespace StepHost
{
/// While it lives, this process has a terminal of its own as standard input, so that there is one to look at. On Linux
/// only.
class OwnTerminal
{
public:
    OwnTerminal();
    ~OwnTerminal();

    /// Whether there is one.
    bool isThere() const
    {
        return m_master >= 0;
    }

private:
    Q_DISABLE_COPY(OwnTerminal)

    int m_master = -1;
    int m_input = -1;
};
} // namespace StepHost
