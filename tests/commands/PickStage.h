#pragma once
#include "ACTEuler.h"
#include "Capture.h"
#include "IASelectCommand.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Meshes.h"
#include "Open3DCamera.h"

namespace tessarine
{
/// A scene that is looked at from (0, 0, 5) along -z, on 100 by 100 pixels. At depth t a pixel is
/// t tan(22.5 degrees) / 50 wide, and pixel (50, 50) lies on the axis.
class PickStage
{
public:
    PickStage()
    {
        m_Camera.SetLookAt({0, 0, 5}, {0, 0, 0}, {0, 1, 0});
        m_Camera.SetSize(100, 100);
    }

    DSSolid* Show(const IndexedMesh& mesh) { return ShowBelow(*m_Scene.GetRootGroup(), mesh); }

    DSSolid* ShowBelow(MANSceneGroup& group, const IndexedMesh& mesh)
    {
        DSSolid* solid = LoadQuietly(m_Elements, mesh);
        m_pLeaf = m_Scene.NewLeaf();
        m_pLeaf->SetSolid(solid);
        m_pLeaf->SetParent(&group);
        group.AddChild(m_pLeaf);
        return solid;
    }

    /// The loop of the second face becomes one more of the first. They are named by their ids.
    void JoinFaces(const DSSolid& solid, std::uint32_t first, std::uint32_t second)
    {
        ACTEuler(&m_Elements).KFMRH(solid.GetID(), first, second);
    }

    MANBrepElementManager m_Elements;
    MANSceneManager m_Scene;
    Open3DCamera m_Camera;
    MANSceneLeaf* m_pLeaf = nullptr; ///< of the last solid
};

/// The cube around the origin with edges of length 1; its face towards the eye is the second.
inline IndexedMesh CentredCube()
{
    return Placed(QuadCube(), 1.0, smVec3d(-0.5, -0.5, -0.5));
}

/// A square around the z axis with edges of length 2, its front towards +z.
inline IndexedMesh SquareAt(double z)
{
    IndexedMesh mesh;
    mesh.positions = {smVec3d(-1, -1, z), smVec3d(1, -1, z), smVec3d(1, 1, z), smVec3d(-1, 1, z)};
    mesh.AddFace({1, 2, 3, 4});
    return mesh;
}

/// The square at 0, and one a quarter as wide in its middle, turned over: joined, a face with a hole.
inline IndexedMesh SquareAndHole()
{
    IndexedMesh mesh = SquareAt(0);
    const IndexedMesh hole = Placed(SquareAt(0), 0.25, smVec3d());
    mesh.positions.insert(mesh.positions.end(), hole.positions.begin(), hole.positions.end());
    mesh.AddFace({8, 7, 6, 5});
    return mesh;
}
}
