#pragma once
#include "CollectPatch.h"
#include "RandomMeshes.h"
#include "SimultaneousLoop.h"
#include <stdexcept>

namespace tessarine
{
/// A closed mesh, shaken, with a face that has one corner of valence N, and that corner first.
class PatchStage
{
public:
    explicit PatchStage(int nValence)
        : m_Mesh(Shaken(SubdivideSimultaneously(Bipyramid(nValence)), static_cast<unsigned>(nValence)))
    {
        MANBrepElementManager elements;
        const DSSolid& solid = *LoadQuietly(elements, m_Mesh);
        for (; m_nFace < m_Mesh.CountFaces(); m_nFace += 4) // those at old corners
        {
            const DSFace& face = *solid.GetFaceList()[m_nFace];
            DSVertex* pCorner = face.GetLoopList()[0]->GetHalfEdge()->GetVertex();
            if (pCorner->GetValence() == nValence)
            {
                FindPatch(face);
                return;
            }
        }
        throw std::logic_error("no face has a corner of that valence");
    }

    const IndexedMesh& GetMesh() const { return m_Mesh; }
    std::size_t GetFace() const { return m_nFace; }
    const std::vector<smVec3d>& GetControlPoints() const { return m_ControlPoints; }

private:
    void FindPatch(const DSFace& face)
    {
        std::vector<DSVertex*> vertices;
        CollectPatch(face, vertices);
        for (const DSVertex* pVertex : vertices)
        {
            m_ControlPoints.push_back(pVertex->GetPosition());
        }
    }

    IndexedMesh m_Mesh;
    std::size_t m_nFace = 0;
    std::vector<smVec3d> m_ControlPoints;
};
}
