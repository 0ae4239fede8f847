#pragma once
#include "DSBrep.h"
#include <vector>

/// What tests read off a solid, by its links alone.
namespace tessarine
{
/// The half-edges of a face's outer loop, from the loop's own on.
inline std::vector<DSHalfEdge*> OuterLoopOf(const DSFace& face)
{
    std::vector<DSHalfEdge*> corners;
    DSHalfEdge* const start = face.GetLoopList()[0]->GetHalfEdge();
    DSHalfEdge* h = start;
    do
    {
        corners.push_back(h);
        h = h->GetNext();
    } while (h != start);
    return corners;
}

/// The vertices of the same.
inline std::vector<std::uint32_t> CornerIDsOf(const DSFace& face)
{
    std::vector<std::uint32_t> corners;
    for (const DSHalfEdge* h : OuterLoopOf(face))
    {
        corners.push_back(h->GetVertex()->GetID());
    }
    return corners;
}

/// The faces around a vertex of a closed solid, from that of its half-edge on.
inline std::vector<DSFace*> FacesAround(const DSVertex& vertex)
{
    std::vector<DSFace*> faces;
    DSHalfEdge* h = vertex.GetHalfEdge();
    do
    {
        faces.push_back(h->GetLoop()->GetFace());
        h = h->GetTwin()->GetNext();
    } while (h != vertex.GetHalfEdge());
    return faces;
}

inline std::vector<smVec3d> PositionsOf(const DSSolid& solid)
{
    std::vector<smVec3d> positions;
    for (const DSVertex* vertex : solid.GetVertexList())
    {
        positions.push_back(vertex->GetPosition());
    }
    return positions;
}
}
