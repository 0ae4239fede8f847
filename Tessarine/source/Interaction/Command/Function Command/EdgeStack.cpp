#include "EdgeStack.h"
#include "Assert.h"
#include "DSBrep.h"
#include <cmath>

namespace tessarine
{
namespace
{
std::size_t IndexOfEdge(std::uint32_t edgeID)
{
    return edgeID & ~ElementKind::Edge;
}
}

const EdgeStack::Node& EdgeStack::GetTop() const
{
    ASSERT(!m_Nodes.empty());
    return m_Nodes.front();
}

double EdgeStack::GetTopGain() const
{
    return GetTop().gain;
}

std::uint32_t EdgeStack::GetTopEdge() const
{
    return GetTop().edgeID;
}

std::size_t EdgeStack::PlaceOf(std::uint32_t edgeID) const
{
    const std::size_t index = IndexOfEdge(edgeID);
    ASSERT(index < m_Places.size() && m_Places[index] != kNowhere);
    return m_Places[index];
}

bool EdgeStack::IsBefore(std::uint32_t firstID, std::uint32_t secondID) const
{
    return m_Nodes[PlaceOf(firstID)].IsBefore(m_Nodes[PlaceOf(secondID)]);
}

void EdgeStack::Enter(double gain, std::uint32_t edgeID)
{
    ASSERT(!std::isnan(gain));
    const std::size_t index = IndexOfEdge(edgeID);
    if (index >= m_Places.size())
    {
        m_Places.resize(index + 1, kNowhere);
    }
    ASSERT(m_Places[index] == kNowhere);
    m_Nodes.emplace_back();
    SiftUp(m_Nodes.size() - 1, {gain, m_nEntries++, edgeID});
}

void EdgeStack::Erase(std::uint32_t edgeID)
{
    const std::size_t place = PlaceOf(edgeID);
    m_Places[IndexOfEdge(edgeID)] = kNowhere;
    const Node last = m_Nodes.back();
    m_Nodes.pop_back();
    if (place == m_Nodes.size())
    {
        return;
    }
    const bool rises = place > 0 && last.IsBefore(m_Nodes[(place - 1) / 2]);
    rises ? SiftUp(place, last) : SiftDown(place, last);
}

void EdgeStack::Clear()
{
    m_Nodes.clear();
    m_Places.clear();
    m_nEntries = 0;
}

void EdgeStack::Put(std::size_t place, const Node& node)
{
    m_Nodes[place] = node;
    m_Places[IndexOfEdge(node.edgeID)] = static_cast<std::uint32_t>(place);
}

void EdgeStack::SiftUp(std::size_t place, const Node& node)
{
    for (; place > 0 && node.IsBefore(m_Nodes[(place - 1) / 2]); place = (place - 1) / 2)
    {
        Put(place, m_Nodes[(place - 1) / 2]);
    }
    Put(place, node);
}

void EdgeStack::SiftDown(std::size_t place, const Node& node)
{
    for (std::size_t child = 2 * place + 1; child < m_Nodes.size(); child = 2 * place + 1)
    {
        if (child + 1 < m_Nodes.size() && m_Nodes[child + 1].IsBefore(m_Nodes[child]))
        {
            ++child;
        }
        if (!m_Nodes[child].IsBefore(node))
        {
            break;
        }
        Put(place, m_Nodes[child]);
        place = child;
    }
    Put(place, node);
}
}
