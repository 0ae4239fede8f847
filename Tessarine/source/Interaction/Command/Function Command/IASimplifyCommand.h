#pragma once
#include "IACommand.h"
#include "smVec3d.h"
#include "smVec3f.h"
#include <cstdint>
#include <memory>
#include <vector>

namespace tessarine
{
class DSSolid;
class MANBrepElementManager;
class MANSceneManager;
class PairContraction;

/// Simplification of the current solid: contracts its edges, the cheapest first, until the share m_fRatio of
/// its faces is booked as removed, and builds a new solid of what is left.
///
/// Needs   A triangle mesh as the solid of the root's first child. Where faces have other numbers of corners,
///         each three corners behind one another are taken for a face all the same.
/// Leaves  The new solid, with normals, in a new leaf behind the root's other children. The input solid and
///         its leaf are hidden, and otherwise as before, so that a second run starts from the same mesh. Of the
///         new one materials and texture coordinates stay unset. It may have no face.
/// Says    "sTriangles: ", "sVertexes: " and "fn.Size(): ", what the builder says, and an assertion for each
///         vertex between faces that have folded over one another.
/// Fails   Failure for a ratio outside 0 to 1, without a solid, with too few corners for the faces, and where
///         a position is none that single precision can hold. What PairContraction throws.
/// Units   Single precision throughout.
/// Cost    As PairContraction.
class IASimplifyCommand : public IACommand
{
public:
    IASimplifyCommand() = default;

    void SetElementManager(MANBrepElementManager* pManager) { m_pElementManager = pManager; }
    void SetSceneManager(MANSceneManager* pManager) { m_pSceneManager = pManager; }
    /// The share of the faces that goes, 0 to 1.
    void SetRatio(float fRatio) { m_fRatio = fRatio; }

    void Execute() override;

private:
    void DemandRatio() const;
    void ReadSolid(const DSSolid& solid);
    void ReadVertices(const DSSolid& solid);
    void ReadFaces(const DSSolid& solid);
    void ContractPairs();
    void NumberSurvivors(const PairContraction& work);
    void NumberRoots(const PairContraction& work, std::vector<std::int32_t>& numbers);
    void ReleaseInput();
    void ShowSimplifiedSolid();

    MANBrepElementManager* m_pElementManager = nullptr;
    MANSceneManager* m_pSceneManager = nullptr;

    std::int32_t m_nVertices = 0;
    std::int32_t m_nFaces = 0;
    std::vector<smVec3f> m_Vertices;
    std::vector<std::int32_t> m_FaceVertices; ///< places in m_Vertices
    std::unique_ptr<smVec3f[]> m_pFaceNormals;
    std::int32_t sVertexes = 0;
    std::int32_t sTriangles = 0;
    std::vector<std::int32_t> fv; ///< one-based
    std::vector<smVec3d> vList;
    float m_fRatio = 0.0F;
};
}
