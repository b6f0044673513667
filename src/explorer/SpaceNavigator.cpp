#include "SpaceNavigator.h"

#include <QElapsedTimer>

#include <algorithm>

SpaceNavigator::SpaceNavigator()
{
    static QElapsedTimer started;
    if (!started.isValid())
        started.start();
    m_clock = [] { return double(started.nsecsElapsed()) / 1e9; };
}

DirNodePtr SpaceNavigator::current(const ScanResultPtr &result) const
{
    if (!result)
        return {};
    if (!m_stack.empty())
        return m_stack.back();
    return result->root;
}

bool SpaceNavigator::open(const DirNodePtr &node, int clickCount, bool isMouse)
{
    if (!m_guard.acceptNavigation(m_clock(), isMouse, clickCount))
        return false;
    m_stack.push_back(node);
    return true;
}

bool SpaceNavigator::goBack(int clickCount, bool isMouse)
{
    if (m_stack.empty() || !m_guard.acceptNavigation(m_clock(), isMouse, clickCount))
        return false;
    m_stack.pop_back();
    return true;
}

bool SpaceNavigator::goToCrumb(int index)
{
    const size_t keep = index < 0 ? 0 : size_t(index) + 1;
    if (keep >= m_stack.size())
        return false;
    m_stack.resize(keep);
    return true;
}

bool SpaceNavigator::reach(const ScanResultPtr &result, const DirNodePtr &node)
{
    std::vector<DirNodePtr> chain;
    for (DirNodePtr n = node; n && n != result->root; n = n->parentNode())
        chain.push_back(n);
    std::reverse(chain.begin(), chain.end());
    const bool depthChanged = chain.size() != m_stack.size();
    m_stack = std::move(chain);
    return depthChanged;
}
