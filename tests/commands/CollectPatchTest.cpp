#include "CollectPatch.h"
#include "Capture.h"
#include "DSBrep.h"
#include "RandomMeshes.h"
#include "SimultaneousLoop.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
/// The patch of a face as one-based numbers of the mesh's vertices.
std::vector<int> FindPatch(const IndexedMesh& mesh, std::size_t face)
{
    MANBrepElementManager elements;
    const DSSolid& solid = *LoadQuietly(elements, mesh);
    std::vector<DSVertex*> vertices;
    CollectPatch(*solid.GetFaceList()[face], vertices);
    std::vector<int> numbers;
    for (const DSVertex* pVertex : vertices)
    {
        numbers.push_back(static_cast<int>(pVertex->GetID()) + 1);
    }
    return numbers;
}

/// 5 by 5 squares of which the sides are joined, so that every vertex is regular: number 5 y + x + 1 at (x, y).
IndexedMesh RegularTorus()
{
    return Torus(5, 5);
}

TEST(CollectPatch, StartsAtTheFirstCornerWhereAllAreRegular)
{
    const IndexedMesh mesh = RegularTorus();
    const std::vector<int> patch = FindPatch(mesh, 0);
    ASSERT_EQ(patch.size(), 12U);
    EXPECT_EQ(patch[0], mesh.indices[0]);
    EXPECT_EQ(patch[1], mesh.indices[1]);
    EXPECT_EQ(patch[6], mesh.indices[2]);
    EXPECT_THAT(std::set<int>(patch.begin(), patch.end()), testing::SizeIs(12)); // all different
}

TEST(CollectPatch, TurnsToTheIrregularCorner)
{
    // Face 4f + 1 has the old corner second, 4f + 2 third.
    const IndexedMesh mesh = SubdivideSimultaneously(Bipyramid(9));
    const auto top = FindPatch(mesh, 0);
    EXPECT_EQ(top.size(), 15U);
    EXPECT_EQ(top[0], 1);
    const auto rim = FindPatch(mesh, 1);
    EXPECT_EQ(rim.size(), 10U); // the rim has valence 4
    EXPECT_EQ(rim[0], mesh.indices[4]);
    EXPECT_EQ(rim[1], mesh.indices[5]);
    EXPECT_EQ(rim[4], mesh.indices[3]);
    const auto third = FindPatch(mesh, 2);
    EXPECT_EQ(third.size(), 10U);
    EXPECT_EQ(third[0], mesh.indices[8]);
    EXPECT_EQ(third[1], mesh.indices[6]);
    EXPECT_EQ(third[4], mesh.indices[7]);
}

TEST(CollectPatch, GoesRoundTheVertexAndThenAcross)
{
    // The corner (0, 0) of squares with diagonals, as a lattice.
    const IndexedMesh mesh = RegularTorus();
    const std::vector<int> patch = FindPatch(mesh, 0);
    const auto isFace = [&mesh](int a, int b, int c)
    {
        for (std::size_t i = 0; i < mesh.indices.size(); i += 3)
        {
            for (std::size_t turn = 0; turn < 3; ++turn)
            {
                if (mesh.indices[i + turn] == a && mesh.indices[i + (turn + 1) % 3] == b &&
                    mesh.indices[i + (turn + 2) % 3] == c)
                {
                    return true;
                }
            }
        }
        return false;
    };
    const auto p = [&patch](int i) { return patch[static_cast<std::size_t>(i)]; };
    for (int i = 1; i <= 6; ++i)
    {
        EXPECT_TRUE(isFace(p(0), p(i % 6 + 1), p(i)) || isFace(p(0), p(i), p(i % 6 + 1))) << i;
    }
    EXPECT_TRUE(isFace(p(0), p(1), p(6)));
    EXPECT_TRUE(isFace(p(6), p(1), p(7)));
    EXPECT_TRUE(isFace(p(7), p(1), p(8)));
    EXPECT_TRUE(isFace(p(8), p(1), p(9)));
    EXPECT_TRUE(isFace(p(9), p(1), p(2)));
    EXPECT_TRUE(isFace(p(6), p(7), p(10)));
    EXPECT_TRUE(isFace(p(6), p(10), p(11)));
    EXPECT_TRUE(isFace(p(6), p(11), p(5)));
}

TEST(CollectPatch, RefusesTwoIrregularCorners)
{
    const AssertionCapture capture;
    EXPECT_THROW(FindPatch(Sphere(0), 0), AssertionFailure); // an octahedron
    EXPECT_THROW(FindPatch(Tetrahedron(), 0), AssertionFailure);
    EXPECT_THAT(capture.GetExpressions(), testing::Each(testing::HasSubstr("== kRegularValence")));
}

TEST(CollectPatch, RefusesABoundaryWhereverItTouchesTheTriangle)
{
    const AssertionCapture capture;
    const IndexedMesh whole = RegularTorus();
    const std::vector<int> patch = FindPatch(whole, 0);
    for (std::size_t removed = 1; removed < whole.CountFaces(); ++removed)
    {
        IndexedMesh mesh = whole;
        const auto first = mesh.indices.begin() + static_cast<std::ptrdiff_t>(3 * removed);
        const bool touches = std::any_of(first, first + 3,
                                         [&whole](std::int32_t vertex) {
                                             return vertex == whole.indices[0] ||
                                                    vertex == whole.indices[1] || vertex == whole.indices[2];
                                         });
        mesh.indices.erase(first, first + 3);
        mesh.faceSizes.pop_back();
        if (touches)
        {
            EXPECT_THROW(FindPatch(mesh, 0), AssertionFailure) << removed;
        }
        else
        {
            EXPECT_EQ(FindPatch(mesh, 0), patch) << removed;
        }
    }
}

TEST(CollectPatch, RefusesFacesThatAreNoTriangles)
{
    const AssertionCapture capture;
    EXPECT_THROW(FindPatch(QuadTorus(5, 5), 0), AssertionFailure);
}

TEST(CollectPatch, EndsOnMeshesThatAreNone)
{
    const AssertionCapture capture;
    ConsoleCapture console;
    const IndexedMesh start = Torus(6, 6);
    for (unsigned seed = 0; seed < 20; ++seed)
    {
        const IndexedMesh mesh = Spoilt(start, seed);
        for (std::size_t face = 0; face < mesh.CountFaces(); ++face)
        {
            try
            {
                EXPECT_GE(FindPatch(mesh, face).size(), 9U);
            }
            catch (const AssertionFailure&) // refused
            {
            }
        }
    }
}

TEST(CollectPatch, RefusesAVertexOfValenceTwo)
{
    const AssertionCapture capture;
    IndexedMesh pillow = SingleTriangle();
    pillow.AddFace({1, 3, 2});
    EXPECT_THROW(FindPatch(pillow, 0), AssertionFailure);
    EXPECT_THAT(capture.GetExpressions(), testing::ElementsAre("n >= EigenTable::kLeastValence"));
}
}
}
