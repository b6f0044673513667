#include "NavigationGuard.h"

bool NavigationGuard::acceptNavigation(double now, bool isMouse, int clickCount)
{
    if (isRepeat(isMouse, clickCount))
        return false;
    if (isMouse && now - m_last < holdSeconds)
        return false;
    m_last = now;
    return true;
}
