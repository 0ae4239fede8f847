#pragma once
#include "EdgeMatcher.h"
#include "MANBrepElementManager.h"

namespace tessarine
{
/// Builds one linked solid from index lists, as MANBrepElementManager::BuildSolid tells.
///
/// Needs   The three steps in their order, each once: MakeSolid, MakeVertices, MakeFaces. The lists outlive
///         the builder.
class SolidBuilder
{
public:
    struct Lists
    {
        const PositionList& positions;
        const IndexList& indices;
        const IndexList& faceSizes;
        const TexCoordList* pTexCoords = nullptr;
        const IndexList* pTexIndices = nullptr;

        bool HasTexCoords() const { return pTexIndices != nullptr && !pTexIndices->empty(); }
    };

    /// Throws std::out_of_range when the lists do not fit one another; nothing was made then.
    SolidBuilder(MANBrepElementManager& manager, const Lists& lists, bool reversed);

    std::size_t CountCorners() const { return m_nCorners; }

    DSSolid* MakeSolid();
    void MakeVertices();
    void MakeFaces(EdgeMatcher::Reports reports);

private:
    void CheckFaceSizes();
    void CheckNumbers(const IndexList& numbers, std::size_t limit, const char* what) const;
    void MakeRoom();
    DSLoop* MakeFace();
    void MakeCorners(DSLoop* loop, std::size_t offset, std::size_t count);
    DSHalfEdge* MakeHalfEdge(DSLoop* loop, std::size_t corner);

    MANBrepElementManager& m_Manager;
    Lists m_Lists;
    bool m_bReversed;
    std::size_t m_nCorners = 0;
    DSSolid* m_pSolid = nullptr;
};
}
