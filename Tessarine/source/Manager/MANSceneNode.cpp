#include "MANSceneNode.h"
#include <algorithm>

namespace tessarine
{
void MANSceneGroup::RemoveChild(const MANSceneNode* node)
{
    const auto match = std::find(m_Children.begin(), m_Children.end(), node);
    if (match != m_Children.end())
    {
        m_Children.erase(match);
    }
}
}
