#include "ProgressLine.h"

#include <iostream>
#include <string>

namespace
{
constexpr qint64 showIntervalMs = 200;
}

ProgressLine::ProgressLine(const char *task) : m_task(task), m_nextShow(showIntervalMs)
{
    m_timer.start();
}

ProgressLine::~ProgressLine()
{
    if (m_width > 0)
        std::cerr << '\r' << std::string(m_width, ' ') << '\r' << std::flush;
}

void ProgressLine::update(int done, int total)
{
    const qint64 elapsed = m_timer.elapsed();
    if (elapsed < m_nextShow)
        return;
    m_nextShow = elapsed + showIntervalMs;
    const std::string line = std::string(m_task) + ' ' + std::to_string(done) + '/' + std::to_string(total);
    m_width = int(line.size());
    std::cerr << '\r' << line << std::flush;
}
