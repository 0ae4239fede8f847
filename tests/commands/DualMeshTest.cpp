#include "DualMesh.h"
#include "FootSearch.h"
#include "MeshWalks.h"
#include "Meshes.h"
#include "Vectors.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A model with feet on its faces, told one by one.
class DualMeshTest : public testing::Test
{
protected:
    explicit DualMeshTest(const IndexedMesh& mesh = CentredTetrahedron())
        : m_Solid(*LoadQuietly(m_Elements, mesh))
    {
    }

    DSFace& FaceAt(std::size_t i) { return *m_Solid.GetFaceList()[i]; }

    void AddFoot(std::size_t face, const smVec3d& point, std::size_t cloudIndex)
    {
        m_Feet.Add({&FaceAt(face), point, 0.0, {}}, cloudIndex);
        m_IsPointDone.resize(std::max(m_IsPointDone.size(), cloudIndex + 1));
    }

    /// With feet so far from the centroid of a face, each with its place in the cloud.
    void SelectAround(std::size_t face, const std::vector<std::pair<smVec3d, std::size_t>>& feet)
    {
        for (const auto& [way, cloudIndex] : feet)
        {
            AddFoot(face, FaceAt(face).CalcCentroid() + way, cloudIndex);
        }
        Select();
    }

    void Select() { SelectFaceFeet(m_Solid, m_Feet, m_IsPointDone); }

    MANBrepElementManager m_Elements;
    DSSolid& m_Solid;
    FootList m_Feet;
    std::vector<bool> m_IsPointDone;
};

TEST_F(DualMeshTest, SelectsTheFootNearestToTheCentroid)
{
    SelectAround(1, {{{0.3, 0, 0}, 4}, {{0.1, 0, 0}, 2}, {{0.2, 0, 0}, 0}});
    EXPECT_EQ(FaceAt(1).GetTag(), 1);
    EXPECT_THAT(m_IsPointDone, ElementsAre(false, false, true, false, false)); // its cloud point
}

TEST_F(DualMeshTest, SelectsTheEarlierOfTwoFeetAtEqualDistances)
{
    SelectAround(0, {{{0.5, 0, 0}, 0}, {{0.25, 0, 0}, 1}, {{0, 0.25, 0}, 2}});
    EXPECT_EQ(FaceAt(0).GetTag(), 1);
}

TEST_F(DualMeshTest, SelectsNothingOnAFaceWithASingleFoot)
{
    FaceAt(3).GetTag() = 7; // of a run before
    AddFoot(2, FaceAt(2).CalcCentroid(), 0);
    Select();
    for (std::size_t i = 0; i < 4; ++i)
    {
        EXPECT_EQ(FaceAt(i).GetTag(), -1);
    }
    EXPECT_THAT(m_IsPointDone, ElementsAre(false));
    EXPECT_THAT(MakeDualMesh(m_Solid, m_Feet).positions, IsEmpty());
}

TEST_F(DualMeshTest, HasAVertexForFootZeroThatNoPolygonUses)
{
    for (std::size_t face = 0; face < 4; ++face)
    {
        AddFoot(face, FaceAt(face).CalcCentroid(), 10 + face);
        AddFoot(face, smVec3d(9, 9, 9), 20);
    }
    Select();
    EXPECT_EQ(FaceAt(0).GetTag(), 0);
    EXPECT_EQ(FaceAt(3).GetTag(), 6);
    const DualMesh dual = MakeDualMesh(m_Solid, m_Feet);
    EXPECT_THAT(dual.cloudIndices, ElementsAre(10, 11, 12, 13));
    ASSERT_EQ(dual.positions.size(), 4U);
    EXPECT_EQ(dual.positions[2], m_Feet.points[4]);
    // Three of the four vertices lie on face 0 and have two other faces only: they are left out.
    EXPECT_THAT(dual.faceSizes, ElementsAre(3));
    std::vector<std::int32_t> corners = dual.corners;
    std::sort(corners.begin(), corners.end());
    EXPECT_THAT(corners, ElementsAre(2, 3, 4)); // one-based
}

class DualOfFanTest : public DualMeshTest
{
protected:
    DualOfFanTest() : DualMeshTest(Sphere(0)) {} // an octahedron
};

TEST_F(DualOfFanTest, JoinsTheSelectedFacesAroundAVertexInTheOrderOfItsWalk)
{
    AddFoot(7, smVec3d(), 0); // foot 0 alone on its face
    for (std::size_t face = 0; face < 8; ++face)
    {
        if (face != 5)
        {
            AddFoot(face, FaceAt(face).CalcCentroid(), face);
            AddFoot(face, smVec3d(9, 9, 9), face);
        }
    }
    Select();
    const DualMesh dual = MakeDualMesh(m_Solid, m_Feet);
    EXPECT_EQ(dual.positions.size(), 7U);
    // Six vertices with four faces each; three of them lie on face 5.
    std::vector<std::int32_t> sizes = dual.faceSizes;
    std::sort(sizes.begin(), sizes.end());
    EXPECT_THAT(sizes, ElementsAre(3, 3, 3, 4, 4, 4));
    std::size_t at = 0;
    std::size_t polygon = 0;
    for (const DSVertex* vertex : m_Solid.GetVertexList())
    {
        for (const DSFace* face : FacesAround(*vertex))
        {
            if (const std::int32_t tag = face->GetTag(); tag > 0)
            {
                const auto number = static_cast<std::size_t>(dual.corners.at(at++)) - 1;
                EXPECT_EQ(dual.positions[number], m_Feet.points[static_cast<std::size_t>(tag)]);
            }
        }
        ++polygon;
    }
    EXPECT_EQ(polygon, dual.faceSizes.size());
    EXPECT_EQ(at, dual.corners.size());
}
}
}
