#pragma once
#include "smVec3f.h"
#include <cstdint>

namespace tessarine
{
class DSEdge;
class DSFace;
class DSSolid;
class DSVertex;
struct DSMaterial;

/// The two vertices of an edge, as the wire frame takes them.
struct EdgeEnds
{
    const DSVertex* pFirst = nullptr; ///< null, like the other, where the edge has no half-edge
    const DSVertex* pSecond = nullptr;
};
EdgeEnds FindEnds(const DSEdge& edge);

/// Sends a material to GL, for front faces.
void ApplyMaterial(const DSMaterial& material);

/// Draws solids in the ways of the view, from the records and anew in each frame.
///
/// The pixels are those of one GL_POLYGON a face: a polygon is sent as the triangles (v[k], v[k+1], v[0]), in
/// the order of the faces.
///
/// Needs   A current context. Each operation turns lighting on at its end.
class SolidDrawer
{
public:
    /// @param displayFlags the view's switches (DisplayFlag)
    /// @param defaultMaterial of the faces without one
    SolidDrawer(std::uint32_t displayFlags, const DSMaterial& defaultMaterial)
        : m_nDisplayFlags(displayFlags), m_DefaultMaterial(defaultMaterial)
    {
    }

    /// The edges, and over them the boundary edges where DisplayFlag::BoundaryEdges is set.
    void DrawWire(const DSSolid& solid) const;

    /// Flat or smooth, each face in its material.
    void DrawSurface(const DSSolid& solid) const;

    /// Leaves the material in GL that DrawSurface leaves there.
    void ApplyLastMaterial(const DSSolid& solid) const;

    /// Smooth, each face in its texture and all in the material that GL holds.
    ///
    /// Kept    No material is applied.
    void DrawTextured(const DSSolid& solid) const;

    /// The vertices; those without a normal are red, the selected ones large.
    void DrawPoints(const DSSolid& solid) const;

    /// All faces in one colour, over what was drawn before.
    void DrawSolidMark(const DSSolid& solid, const smVec3f& color) const;
    void DrawFaceMark(const DSFace& face, const smVec3f& color) const;

private:
    const DSMaterial& GetMaterial(const DSFace& face) const;

    std::uint32_t m_nDisplayFlags;
    const DSMaterial& m_DefaultMaterial;
};
}
