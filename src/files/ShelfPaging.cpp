#include "ShelfPaging.h"

#include <QCoreApplication>

QString ShelfPaging::moreText(qsizetype total) const
{
    const int n = more(total);
    return n > 0 ? QCoreApplication::translate("Files", "Show %1 more").arg(n) : QString();
}

bool ShelfPaging::reset()
{
    if (m_shown == step)
        return false;
    m_shown = step;
    return true;
}
