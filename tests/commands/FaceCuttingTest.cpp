#include "FaceCutting.h"
#include "LinksHold.h"
#include "MANBrepElementManager.h"
#include "RandomMeshes.h"
#include "Vectors.h"
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

bool AreAllTriangles(const DSSolid& solid)
{
    return std::all_of(solid.GetFaceList().begin(), solid.GetFaceList().end(),
                       [](const DSFace* face) { return CornerIDsOf(*face).size() == 3; });
}

/// A face from below and from above.
IndexedMesh Pillow(const std::vector<smVec3d>& outline)
{
    IndexedMesh mesh;
    mesh.positions = outline;
    const auto n = static_cast<std::int32_t>(outline.size());
    for (std::int32_t i = 1; i <= n; ++i)
    {
        mesh.indices.push_back(i);
    }
    for (std::int32_t i = n; i >= 1; --i)
    {
        mesh.indices.push_back(i);
    }
    mesh.faceSizes = {n, n};
    return mesh;
}

/// The corners of the triangles that such a body is cut into.
std::vector<std::vector<std::uint32_t>> CutPillow(const std::vector<smVec3d>& outline)
{
    MANBrepElementManager elements;
    DSSolid& solid = *LoadQuietly(elements, Pillow(outline));
    TriangulateFaces(elements, solid);
    EXPECT_TRUE(AreAllTriangles(solid));
    EXPECT_TRUE(LinksHold(solid));
    std::vector<std::vector<std::uint32_t>> triangles;
    for (const DSFace* face : solid.GetFaceList())
    {
        triangles.push_back(CornerIDsOf(*face));
    }
    return triangles;
}

TEST(FaceCutting, CutsTheSharpestCornerOffAFaceOfFour)
{
    // A kite with its sharp corner at the third place.
    const auto triangles = CutPillow({{0, 0, 0}, {1, 1, 0}, {0, 6, 0}, {-1, 1, 0}});
    ASSERT_EQ(triangles.size(), 4U);
    EXPECT_THAT(triangles[2], ElementsAre(1, 2, 3)); // of the first face
    EXPECT_THAT(triangles[0], UnorderedElementsAre(0, 1, 3));
}

TEST(FaceCutting, CutsTheFlattestCornerOffALargerFace)
{
    // A square with a corner in the middle of its first side, hardly a turn.
    const auto triangles = CutPillow({{-1, -1, 0}, {0, -1.1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}});
    ASSERT_EQ(triangles.size(), 6U);
    EXPECT_THAT(triangles[2], ElementsAre(0, 1, 2));
}

TEST(FaceCutting, MeasuresTheCornersBesideACutAnew)
{
    // Corner 1 goes first. Of the four that are left corner 0 turns by 104 degrees, and did by 87 before; corner 4,
    // which turns by 95, would be next otherwise. The face from below meets them the other way round.
    const auto triangles = CutPillow({{0, 0, 0}, {1, -0.3, 0}, {2, 0, 0}, {2.5, 1.3, 0}, {0.5, 2, 0}});
    ASSERT_EQ(triangles.size(), 6U);
    for (const std::size_t face : {0U, 1U})
    {
        EXPECT_THAT(triangles[2 + 2 * face], UnorderedElementsAre(0, 1, 2));
        EXPECT_THAT(triangles[3 + 2 * face], UnorderedElementsAre(4, 0, 2));
        EXPECT_THAT(triangles[face], UnorderedElementsAre(2, 3, 4));
    }
}

TEST(FaceCutting, CutsTheEarliestOfEqualCorners)
{
    MANBrepElementManager elements;
    DSSolid& solid = *LoadQuietly(elements, QuadCube());
    const std::vector<std::uint32_t> before = CornerIDsOf(*solid.GetFaceList()[0]);
    TriangulateFaces(elements, solid);
    EXPECT_EQ(solid.GetFaceList().size(), 12U);
    EXPECT_THAT(CornerIDsOf(*solid.GetFaceList()[6]), ElementsAre(before[3], before[0], before[1]));
    EXPECT_EQ(EulerCharacteristic(solid), 2);
    EXPECT_TRUE(LinksHold(solid));
}

TEST(FaceCutting, LeavesTrianglesAlone)
{
    MANBrepElementManager elements;
    DSSolid& solid = *LoadQuietly(elements, Tetrahedron());
    TriangulateFaces(elements, solid);
    StarFaces(elements, solid, {});
    EXPECT_EQ(solid.GetFaceList().size(), 4U);
    EXPECT_EQ(solid.GetVertexList().size(), 4U);
}

TEST(FaceCutting, CutsFacesOfAnySize)
{
    for (const int n : {4, 5, 6, 7, 19, 400})
    {
        MANBrepElementManager elements;
        DSSolid& solid = *LoadQuietly(elements, Shaken(Prism(n), static_cast<unsigned>(n)));
        TriangulateFaces(elements, solid);
        // n quadrilaterals to two each, two faces of n to n - 2 each.
        EXPECT_EQ(solid.GetFaceList().size(), static_cast<std::size_t>(2 * n + 2 * (n - 2)));
        EXPECT_TRUE(AreAllTriangles(solid));
        EXPECT_TRUE(LinksHold(solid));
        EXPECT_EQ(EulerCharacteristic(solid), 2);
    }
}

TEST(FaceCutting, TakesCornersAtOnePlace)
{
    EXPECT_EQ(CutPillow(std::vector<smVec3d>(6, smVec3d(1, 1, 1))).size(), 8U);
}

TEST(FaceCutting, PutsAStarIntoEachFaceWithASelectedFoot)
{
    MANBrepElementManager elements;
    DSSolid& solid = *LoadQuietly(elements, QuadCube());
    solid.GetFaceList()[2]->GetTag() = 1;
    const std::vector<std::uint32_t> corners = CornerIDsOf(*solid.GetFaceList()[2]);
    StarFaces(elements, solid, {smVec3d(9, 9, 9), smVec3d(0.5, 0.25, 0.125)});
    EXPECT_EQ(solid.GetFaceList().size(), 9U); // four in the place of one
    ASSERT_EQ(solid.GetVertexList().size(), 9U);
    const DSVertex* centre = solid.GetVertexList()[8];
    EXPECT_EQ(centre->GetPosition(), smVec3d(0.5, 0.25, 0.125));
    for (const std::size_t face : {6U, 7U, 8U})
    {
        EXPECT_THAT(CornerIDsOf(*solid.GetFaceList()[face]),
                    UnorderedElementsAre(corners[face - 6], corners[face - 5], centre->GetID()));
    }
    EXPECT_THAT(CornerIDsOf(*solid.GetFaceList()[2]),
                UnorderedElementsAre(corners[3], corners[0], centre->GetID()));
    EXPECT_EQ(EulerCharacteristic(solid), 2);
    EXPECT_TRUE(LinksHold(solid));
}

TEST(FaceCutting, PutsAStarAtTheFirstFootAsWell)
{
    MANBrepElementManager elements;
    DSSolid& solid = *LoadQuietly(elements, QuadCube());
    solid.GetFaceList()[4]->GetTag() = 0;
    StarFaces(elements, solid, {smVec3d(0.5, 0.25, 0.125)});
    EXPECT_EQ(solid.GetFaceList().size(), 9U);
    ASSERT_EQ(solid.GetVertexList().size(), 9U);
    EXPECT_EQ(solid.GetVertexList()[8]->GetPosition(), smVec3d(0.5, 0.25, 0.125));
}
}
}
