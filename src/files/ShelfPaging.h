// How much of a shelf's list is on show: the first `shown` rows, 48 more at a
// time. A value; any thread.

#pragma once

#include <QString>

#include <algorithm>

class ShelfPaging
{
public:
    static constexpr int step = 48;

    int shown() const { return m_shown; }
    // Rows on show out of `total`.
    int visible(qsizetype total) const { return int(std::min<qsizetype>(m_shown, total)); }
    // What the next press adds: the lesser of 48 and what remains; 0 hides the button.
    int more(qsizetype total) const { return int(std::clamp<qsizetype>(total - m_shown, 0, step)); }
    // "Show 48 more", or empty when nothing remains.
    QString moreText(qsizetype total) const;

    void showMore() { m_shown += step; }
    // Back to the first 48; true if that changed anything.
    bool reset();

private:
    int m_shown = step;
};
