#include "ProgressLine.h"

#include "Command.h"

#include <algorithm>

#include <unistd.h>

ProgressLine::ProgressLine() : m_enabled(::isatty(STDERR_FILENO) == 1) { m_clock.start(); }

ProgressLine::~ProgressLine() { clear(); }

void ProgressLine::show(const QString &text)
{
    if (!m_enabled || (m_shown && m_clock.elapsed() < 100))
        return;
    m_clock.restart();
    QString line = text;
    if (line.size() > 78)
        line = line.left(77) + QChar(0x2026);
    Commands::err() << '\r' << line << QString(std::max<qsizetype>(0, m_width - line.size()), QLatin1Char(' '));
    Commands::err().flush();
    m_width = line.size();
    m_shown = true;
}

void ProgressLine::clear()
{
    if (!m_shown)
        return;
    Commands::err() << '\r' << QString(m_width, QLatin1Char(' ')) << '\r';
    Commands::err().flush();
    m_shown = false;
    m_width = 0;
}
