// One line on standard error that rewrites itself, shown only on a terminal and
// at most ten times a second. Main thread.

#pragma once

#include <QElapsedTimer>
#include <QString>

class ProgressLine
{
public:
    ProgressLine();
    ~ProgressLine();
    ProgressLine(const ProgressLine &) = delete;
    ProgressLine &operator=(const ProgressLine &) = delete;

    // Whether standard error is a terminal, so that the line shows at all.
    bool enabled() const { return m_enabled; }
    void show(const QString &text);
    void clear();

private:
    bool m_enabled;
    bool m_shown = false;
    qsizetype m_width = 0;
    QElapsedTimer m_clock;
};
