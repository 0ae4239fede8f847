#include "Polygon.h"
#include "Assert.h"
#include "Console.h"
#include <algorithm>

namespace tessarine
{
std::int32_t Polygon::operator[](int nIndex) const
{
    ASSERT(nIndex >= 0 && nIndex < GetSize());
    return m_Vertices[static_cast<std::size_t>(nIndex)];
}

std::int32_t& Polygon::operator[](int nIndex)
{
    ASSERT(nIndex >= 0 && nIndex < GetSize());
    return m_Vertices[static_cast<std::size_t>(nIndex)];
}

int Polygon::Find(std::int32_t nVertex) const
{
    const auto found = std::find(m_Vertices.begin(), m_Vertices.end(), nVertex);
    return found == m_Vertices.end() ? -1 : static_cast<int>(found - m_Vertices.begin());
}

std::int32_t Polygon::Next(std::int32_t nVertex) const
{
    const int nIndex = Find(nVertex);
    ASSERT(nIndex != -1);
    return (*this)[(nIndex + 1) % GetSize()];
}

std::optional<std::int32_t> Polygon::Previous(std::int32_t nVertex) const
{
    const int nIndex = Find(nVertex);
    if (nIndex == -1)
    {
        return std::nullopt;
    }
    return (*this)[nIndex == 0 ? GetSize() - 1 : nIndex - 1];
}

void Polygon::Remove(std::int32_t nVertex)
{
    const int nIndex = Find(nVertex);
    ASSERT(nIndex != -1);
    m_Vertices.erase(m_Vertices.begin() + nIndex);
}

void Polygon::Rotate(int nSteps)
{
    if (nSteps > 0 && nSteps < GetSize())
    {
        std::rotate(m_Vertices.begin(), m_Vertices.begin() + nSteps, m_Vertices.end());
    }
}

bool Polygon::HasRepeatedVertex() const
{
    std::vector<std::int32_t> sorted = m_Vertices;
    std::sort(sorted.begin(), sorted.end());
    return std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end();
}

void Polygon::Print() const
{
    for (int i = 0; i < GetSize(); ++i)
    {
        DebugConsole() << (*this)[i] << (i + 1 < GetSize() ? ", " : "\n");
    }
}
}
