#pragma once
#include "VertexRun.h"
#include <cstdint>

namespace tessarine
{
class DSVertex;

/// Lines between the vertices of a mesh, in the order in which they are added. An end that was met shortly
/// before, in the same colour, is not sent again: around a vertex there are six edges in the mean.
///
/// Needs   A current context, from the construction to the end, and no change of GL's state in between.
class EdgeRun
{
public:
    EdgeRun();
    ~EdgeRun();
    EdgeRun(const EdgeRun&) = delete;
    EdgeRun& operator=(const EdgeRun&) = delete;

    /// @param color has an address for itself: colours are told apart by it
    void AddLine(const DSVertex& a, const DSVertex& b, const std::array<float, 3>& color);

private:
    static constexpr std::size_t kCornerCapacity = 1024;
    static constexpr std::size_t kEndCapacity = 8 * kCornerCapacity;
    static constexpr std::size_t kPlaceCount = 4096;

    /// What a corner was made of.
    struct Source
    {
        const DSVertex* pVertex;
        const std::array<float, 3>* pColor;
        bool operator==(const Source&) const = default;
    };

    std::uint16_t FindCorner(const Source& source);
    void Flush();

    std::size_t m_nCornerCount = 0;
    std::size_t m_nEndCount = 0;
    // Filled up to their counts.
    std::array<ColoredCorner, kCornerCapacity> m_Corners;
    std::array<Source, kCornerCapacity> m_Sources;
    std::array<std::uint16_t, kEndCapacity> m_Ends; ///< which corners the lines join
    /// By the address of a vertex: the corner that it may have. What was there before a flush is seen from
    /// m_Sources to be of no use.
    std::array<std::uint16_t, kPlaceCount> m_Places{};
};
}
