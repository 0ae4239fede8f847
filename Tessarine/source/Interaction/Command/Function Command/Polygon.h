#pragma once
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace tessarine
{
/// A closed polygon given by vertex numbers, in order: the last one's next is the first.
///
/// Fails   An index outside the polygon, the next of an absent vertex and its removal are assertions.
/// Cost    Linear in the size for everything that searches.
class Polygon
{
public:
    Polygon() = default;
    explicit Polygon(std::vector<std::int32_t> vertices) : m_Vertices(std::move(vertices)) {}

    int GetSize() const { return static_cast<int>(m_Vertices.size()); }

    std::int32_t operator[](int nIndex) const;
    std::int32_t& operator[](int nIndex);

    /// Index of the first occurrence, or -1.
    int Find(std::int32_t nVertex) const;
    std::int32_t Next(std::int32_t nVertex) const;
    /// Nothing, and nothing is said, when the vertex is absent.
    std::optional<std::int32_t> Previous(std::int32_t nVertex) const;

    void Append(std::int32_t nVertex) { m_Vertices.push_back(nVertex); }
    /// Removes the first occurrence.
    void Remove(std::int32_t nVertex);

    /// Makes the element at nSteps the first one. Does nothing unless 0 < nSteps < size.
    void Rotate(int nSteps);

    /// Does a vertex occur twice? In n log n.
    bool HasRepeatedVertex() const;

    /// Says the vertex numbers on one line of the console, separated by ", ". An empty polygon says nothing.
    void Print() const;

private:
    std::vector<std::int32_t> m_Vertices;
};
}
