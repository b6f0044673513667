// Where the Space explorer stands in a scan result: the folders opened from the
// root, in order, moved by opening, going back, the crumbs and focusing, with
// mouse navigation held back by a NavigationGuard. Owned by SpaceModel; main
// thread only.

#pragma once

#include "NavigationGuard.h"

#include "core/DirNode.h"
#include "core/ScanResult.h"

#include <functional>
#include <vector>

class SpaceNavigator
{
public:
    SpaceNavigator();

    // Seconds on a monotonic clock; replaceable for tests.
    void setClock(std::function<double()> clock) { m_clock = std::move(clock); }

    // The opened folders below the root, outermost first; empty at the root.
    const std::vector<DirNodePtr> &stack() const { return m_stack; }
    bool canGoBack() const { return !m_stack.empty(); }
    // The folder shown: the innermost opened one, else the root of `result`;
    // null without a result.
    DirNodePtr current(const ScanResultPtr &result) const;

    // Each true when the folder changed. A navigation by mouse may be refused
    // by the guard (a repeat, or too soon after the last one).
    bool open(const DirNodePtr &node, int clickCount, bool isMouse);
    bool goBack(int clickCount, bool isMouse);
    // -1 for the root, else the position in the stack.
    bool goToCrumb(int index);
    // Opens every folder from the root of `result` down to `node`, a folder of
    // it. True when the depth changed.
    bool reach(const ScanResultPtr &result, const DirNodePtr &node);
    // Back to the root.
    void clear() { m_stack.clear(); }

private:
    std::vector<DirNodePtr> m_stack;
    NavigationGuard m_guard;
    std::function<double()> m_clock;
};
