#pragma once
#include "IACommand.h"
#include "smVec3d.h"

namespace tessarine
{
class DSEdge;
class DSSolid;
class MANSceneManager;

/// The squared longest edge of a triangle over twice its area: 2 / sqrt(3) where it is equilateral, and the larger
/// the worse. Without area it is infinite, in a single point or with a corner that is no number it is no number.
double TriangleQuality(const smVec3d& p, const smVec3d& q, const smVec3d& r);

/// The seed of a tool for the quality of meshes. No menu entry and no id of the command manager leads to it.
class IATriangleQualityCommand : public IACommand
{
public:
    /// The two triangles at an edge, as they stand and with the diagonal flipped: sums of two qualities.
    struct EdgeQuality
    {
        double before = 0.0;
        double after = 0.0;
    };

    void SetSceneManager(MANSceneManager* pManager) { m_pSceneManager = pManager; }
    void SetSolid(DSSolid* pSolid) { m_pSolid = pSolid; }

    /// Takes the current solid and brings it into the unit cube.
    ///
    /// Fails   As NormalizeSolid.
    void Execute() override;

    /// Moves and scales the solid into the cube from -1 to 1 (SolidNormalization).
    ///
    /// Needs   A solid (asserted).
    void NormalizeSolid();

    /// Measures every edge of the solid, in list order, and calculates the normals of the two faces there.
    ///
    /// Needs   A solid without rims: each edge has both half-edges (asserted).
    /// Kept    The two sums are not compared, and no diagonal is flipped.
    void EvaluateEdges();

    /// Needs   Both half-edges (asserted).
    static EdgeQuality EvaluateEdge(const DSEdge& edge);

private:
    MANSceneManager* m_pSceneManager = nullptr;
    DSSolid* m_pSolid = nullptr;
};
}
