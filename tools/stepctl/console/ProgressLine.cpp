#include "ProgressLine.h"

#include "Terminal.h"
#include "host/values/QuotedText.h"

#include <QThread>

#include <iostream>
#include <string>

namespace
{
constexpr int showIntervalMs = 200;

// In place of the line that is there, which was `former`.
void showInstead(const QString &former, const QString &text)
{
    const int left = StepHost::columnsOf(former) - StepHost::columnsOf(text);
    std::cerr << '\r' << text.toStdString() << std::string(std::size_t(qMax(0, left)), ' ') << std::flush;
}
} // namespace

ProgressLine::ProgressLine()
    : m_clock(QThread::create([this] {
          while (!m_isOver.tryAcquire(1, showIntervalMs))
              show();
      }))
{
    m_clock->start();
}

ProgressLine::~ProgressLine()
{
    m_isOver.release();
    m_clock->wait();
    if (m_shown.isEmpty())
        return;
    showInstead(m_shown, QString());
    std::cerr << '\r' << std::flush;
}

void ProgressLine::update(const QString &text)
{
    const QMutexLocker lock(&m_mutex);
    m_text = text;
}

void ProgressLine::show()
{
    m_mutex.lock();
    const QString text = m_text;
    m_mutex.unlock();
    // In the last column some terminals begin the next line.
    const QString line =
        StepHost::cutToColumns(StepHost::inOneLine(text), terminalColumns() - 1, QStringLiteral("..."));
    if (line == m_shown)
        return;
    showInstead(m_shown, line);
    m_shown = line;
}
