#pragma once
#include "DSBrep.h"
#include <cstdint>
#include <vector>

namespace tessarine
{
class MANBrepElementManager;

/// Copies one solid into another, as MANBrepElementManager::CopySolid tells.
///
/// Needs   The two steps in their order, each once: CopyVertices, CopyFaces.
class SolidCopier
{
public:
    SolidCopier(MANBrepElementManager& manager, const DSSolid& source, DSSolid& target);

    void CopyVertices();
    void CopyFaces();

private:
    void NotePlace(const DSVertex& vertex, std::size_t place);
    DSVertex* CopyOf(const DSVertex* vertex) const;
    DSLoop* CopyLoop(const DSLoop& source);
    DSHalfEdge* CopyHalfEdge(const DSHalfEdge& source, DSLoop* loop);

    MANBrepElementManager& m_Manager;
    const DSSolid& m_Source;
    DSSolid& m_Target;
    std::uint32_t m_nLowestID = 0;
    /// Place in the source's list, by the id's distance from the lowest.
    std::vector<std::uint32_t> m_PlaceOfID;
};
}
