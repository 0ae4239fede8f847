#pragma once
#include <cstdint>
#include <vector>

namespace tessarine
{
/// The edges of a mesh by what their swap would gain, the largest gain first; of equal gains the one that was entered
/// first.
///
/// Needs   Gains are numbers (asserted). An edge stands in the stack once (asserted), and is there when it is asked
///         for (asserted).
/// Cost    Logarithmic, but for the look at the top.
class EdgeStack
{
public:
    bool IsEmpty() const { return m_Nodes.empty(); }
    std::size_t GetSize() const { return m_Nodes.size(); }
    /// Of a stack that is not empty (asserted).
    double GetTopGain() const;
    std::uint32_t GetTopEdge() const;

    /// Behind all of the same gain.
    void Enter(double gain, std::uint32_t edgeID);
    void Erase(std::uint32_t edgeID);
    /// Whether a walk from the top comes to the first one first.
    bool IsBefore(std::uint32_t firstID, std::uint32_t secondID) const;
    void Clear();

private:
    struct Node
    {
        double gain = 0.0;
        std::uint64_t entry = 0; ///< the number of entries before
        std::uint32_t edgeID = 0;

        bool IsBefore(const Node& other) const
        {
            return gain > other.gain || (gain == other.gain && entry < other.entry);
        }
    };

    static constexpr std::uint32_t kNowhere = UINT32_MAX;

    const Node& GetTop() const;
    std::size_t PlaceOf(std::uint32_t edgeID) const;
    void Put(std::size_t place, const Node& node);
    void SiftUp(std::size_t place, const Node& node);
    void SiftDown(std::size_t place, const Node& node);

    std::vector<Node> m_Nodes;           ///< a binary heap
    std::vector<std::uint32_t> m_Places; ///< in the heap, by the index of the edge
    std::uint64_t m_nEntries = 0;
};
}
