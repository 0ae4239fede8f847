// What the commands leave to be shown: the view's frames against their literal form, pixel by pixel.
#include "FrameComparison.h"
#include "OCTNODE.h"
#include <array>
#include <cmath>
#include <memory>

namespace tessarine
{
namespace
{
using namespace DisplayFlag;

/// An octree whose nodes it owns.
class OctreeOf
{
public:
    OctreeOf(const smVec3d& low, const smVec3d& high) { m_pRoot = AddNode(low, high); }

    OCTNODE& GetRoot() { return *m_pRoot; }

    /// Gives a leaf eight children.
    void Split(OCTNODE& node)
    {
        const smVec3d middle = (node.GetMin() + node.GetMax()) * 0.5;
        for (std::size_t child = 0; child < OCTNODE::kChildCount; ++child)
        {
            smVec3d low = node.GetMin();
            smVec3d high = node.GetMax();
            for (int axis = 0; axis < 3; ++axis)
            {
                ((child >> axis) % 2 == 0 ? high : low)[axis] = middle[axis];
            }
            node.GetChildren()[child] = AddNode(low, high);
        }
        node.SetLeaf(false);
    }

private:
    OCTNODE* AddNode(const smVec3d& low, const smVec3d& high)
    {
        auto& node = m_Nodes.emplace_back(std::make_unique<OCTNODE>());
        node->GetMin() = low;
        node->GetMax() = high;
        return node.get();
    }

    std::vector<std::unique_ptr<OCTNODE>> m_Nodes;
    OCTNODE* m_pRoot = nullptr;
};

class OverlaysTest : public FrameComparison
{
protected:
    /// Points on a curve about the origin, with normals and foot points.
    void FillCloud(int count)
    {
        for (int i = 0; i < count; ++i)
        {
            const double t = 0.37 * i;
            const smVec3d point(std::cos(t), std::sin(1.3 * t), 0.8 * std::sin(t));
            m_View.GetPointCloud().push_back(point);
            m_View.GetPointNormals().push_back(point * (1.0 + 0.01 * i));
            m_View.GetProjectedPoints().push_back(point * 0.7 + smVec3d(0.1, 0.0, 0.0));
        }
    }

    /// With a model among the overlays, and without; near and far.
    void ExpectSame(std::uint32_t flags)
    {
        for (const std::uint32_t mode : {0U, Wire, FlatShading, Wire | SmoothShading | Points, Texture})
        {
            for (const smVec3d& eye : {smVec3d(2.2, 1.6, 2.8), smVec3d(10, 4, 10), smVec3d(0.4, 0.1, 0.3)})
            {
                LookFrom(eye);
                EXPECT_TRUE(SameFrames(flags | mode));
            }
        }
    }
};

TEST_F(OverlaysTest, DrawsThePointCloud)
{
    FillCloud(300);
    ExpectSame(PointCloud);
    BuildAndShow(Placed(Sphere(2), 0.8, smVec3d(0, 0, 0)));
    ExpectSame(PointCloud);
}

TEST_F(OverlaysTest, DrawsTheNormalsOfTheCloud)
{
    FillCloud(300);
    ExpectSame(PointNormals);
    ExpectSame(PointNormals | PointCloud);
}

TEST_F(OverlaysTest, DrawsProjectedPoints)
{
    FillCloud(300);
    ExpectSame(ProjectedPoints);
    ExpectSame(ProjectedPoints | PointCloud);
}

TEST_F(OverlaysTest, DrawsProjectionLinesDotted)
{
    FillCloud(300);
    ExpectSame(ProjectionLines);
    BuildAndShow(Placed(Sphere(2), 0.8, smVec3d(0, 0, 0)));
    ExpectSame(ProjectionLines); // the wire frame behind it is not dotted
}

TEST_F(OverlaysTest, DrawsAllOfTheCloudAtOnce)
{
    FillCloud(200);
    BuildAndShow(Placed(QuadCube(), 0.8, smVec3d(-0.4, -0.4, -0.4)));
    m_View.SetNewMesh(Build(Placed(Sphere(2), 0.5, smVec3d(0.5, 0.1, 0.2))));
    ExpectSame(PointCloud | PointNormals | ProjectedPoints | ProjectionLines | NewMesh | DisplayFlag::Grid |
               Axes);
    ExpectSame(PointCloud | PointNormals | ProjectedPoints | ProjectionLines | LineSmoothing | Blending);
}

TEST_F(OverlaysTest, DrawsNothingOfEmptyLists)
{
    const std::uint32_t overlays =
        PointCloud | PointNormals | ProjectedPoints | ProjectionLines | NewMesh | CutFaces;
    EXPECT_EQ(CountDrawnPixels(DrawByView(overlays)), 0);
    EXPECT_EQ(CountDrawnPixels(DrawLiterally(overlays)), 0);
}

TEST_F(OverlaysTest, DrawsTheNewMeshAsAMark)
{
    DSSolid* mesh = Build(Placed(Torus(14, 8), 0.7, smVec3d(0, 0, 0)));
    m_View.SetNewMesh(mesh);
    ExpectSame(NewMesh);
    BuildAndShow(Placed(QuadCube(), 0.8, smVec3d(-0.1, -0.1, -0.1)));
    ExpectSame(NewMesh);
    m_Elements.ToggleSelect(mesh->GetID());
    ExpectSame(NewMesh);
    mesh->SetVisible(false); // of no concern to a mark
    ExpectSame(NewMesh);
}

TEST_F(OverlaysTest, ShadesTheNewMeshWithTheMaterialOfTheFrameBefore)
{
    m_View.SetNewMesh(Build(Placed(Torus(14, 8), 0.7, smVec3d(0, 0, 0))));
    DSMaterial* glowing = AddMaterial(smVec3f(0.2F, 0.2F, 0.2F));
    glowing->m_Emission = smVec3f(0.1F, 0.4F, 0.2F);
    BuildAndShow(Placed(QuadCube(), 0.4, smVec3d(0.6, 0.3, 0.1)))->SetMaterial(glowing);
    EXPECT_TRUE(SameFrames(NewMesh | FlatShading));
    EXPECT_TRUE(SameFrames(NewMesh | FlatShading)); // it is drawn before the cube, which glows since then
    EXPECT_TRUE(SameFrames(NewMesh));
}

TEST_F(OverlaysTest, DrawsTheLeavesOfTheOctree)
{
    OctreeOf tree(smVec3d(-1, -0.9, -0.8), smVec3d(0.9, 1.0, 1.1));
    m_View.SetOctree(&tree.GetRoot());
    ExpectSame(Octree);
    tree.Split(tree.GetRoot());
    ExpectSame(Octree);
    tree.Split(*tree.GetRoot().GetChildren()[5]);
    tree.Split(*tree.GetRoot().GetChildren()[0]);
    ExpectSame(Octree);
    BuildAndShow(Placed(Sphere(2), 0.8, smVec3d(0, 0, 0)));
    ExpectSame(Octree | DisplayFlag::Grid);
}

TEST_F(OverlaysTest, DrawsCutFacesLast)
{
    m_Scene.GetCutFaceList() = {
        {smVec3d(-1, -1, 0), smVec3d(1, -1, 0.1), smVec3d(1, 1, 0), smVec3d(-1, 1, -0.1)},
        {smVec3d(0, -0.7, -1), smVec3d(0, 0.7, -1), smVec3d(0.1, 0.7, 1), smVec3d(0, -0.7, 1)}};
    ExpectSame(CutFaces);
    DSSolid* solid = BuildAndShow(Placed(Sphere(2), 0.8, smVec3d(0, 0, 0)));
    m_View.GetHoverList() = {solid->GetID()};
    ExpectSame(CutFaces);
}

TEST_F(OverlaysTest, SeesEachOverlay)
{
    // What is compared here can fail: each of these switches shows.
    FillCloud(100);
    m_View.SetNewMesh(Build(Placed(Sphere(2), 0.5, smVec3d(0.5, 0.1, 0.2))));
    m_Scene.GetCutFaceList() = {
        {smVec3d(-1, -1, 0), smVec3d(1, -1, 0.1), smVec3d(1, 1, 0), smVec3d(-1, 1, -0.1)}};
    const Picture plain = DrawByView(DisplayFlag::Grid);
    for (const std::uint32_t bit :
         {PointCloud, PointNormals, ProjectedPoints, ProjectionLines, NewMesh, CutFaces})
    {
        EXPECT_FALSE(SamePictures(plain, DrawLiterally(DisplayFlag::Grid | bit))) << TellFlags(bit);
    }
}
}
}
