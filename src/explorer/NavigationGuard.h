// Guards the Space explorer's navigation against repeated mouse clicks: the
// later clicks of a multi-click, and a click that lands too soon after the last
// navigation. A value owned by the navigator; main thread only.

#pragma once

// A repeat is the second (or later) click of a multi-click: it is dropped
// wherever a click would navigate or select, since the first click already
// acted and the pointer now stands over something else. Navigation by mouse is
// held back for 0.35 seconds after the last one; keys are not. (The rows of the
// review sheets follow a different rule, RowClick.)
class NavigationGuard
{
public:
    static constexpr double holdSeconds = 0.35;

    static bool isRepeat(bool isMouse, int clickCount) { return isMouse && clickCount >= 2; }

    // True, and noted as the last navigation, when a navigation at `now`
    // (seconds) may go ahead.
    bool acceptNavigation(double now, bool isMouse, int clickCount);

    double lastNavigation() const { return m_last; }

private:
    double m_last = -1e300;
};
