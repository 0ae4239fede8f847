#include "QualityText.h"
#include "Failure.h"
#include "Meshes.h"
#include <gtest/gtest.h>

using namespace tessarine;

namespace
{
std::string QualityOf(const IndexedMesh& mesh)
{
    MANBrepElementManager elements;
    return MakeQualityText(*LoadQuietly(elements, mesh));
}

/// Right angles between 1 and the length: (1 + length^2) / length.
IndexedMesh RightTriangles(std::initializer_list<double> lengths)
{
    IndexedMesh mesh;
    for (const double length : lengths)
    {
        const auto first = static_cast<std::int32_t>(mesh.positions.size() + 1);
        mesh.positions.insert(mesh.positions.end(),
                              {smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(0, length, 0)});
        mesh.AddFace({first, first + 1, first + 2});
    }
    return mesh;
}

std::string ReasonFor(const IndexedMesh& mesh)
{
    try
    {
        return "none: " + QualityOf(mesh);
    }
    catch (const Failure& failure)
    {
        return failure.GetMessage();
    }
}
}

TEST(QualityText, HasSmallestMedianMeanAndLargest)
{
    // 17/4, 2, 5/2: their mean is 35/12.
    EXPECT_EQ(QualityOf(RightTriangles({4, 1, 2})), "2\n2.5\n2.9166666666666665\n4.25\n");
}

TEST(QualityText, TakesTheMeanOfTheTwoInTheMiddle)
{
    // 2, 5/2, 17/4, 65/8.
    EXPECT_EQ(QualityOf(RightTriangles({1, 2, 4, 8})), "2\n3.375\n4.21875\n8.125\n");
}

TEST(QualityText, CountsAFaceWithoutAreaAsInfinitelyBad)
{
    EXPECT_EQ(QualityOf(RightTriangles({1, 1, 0})), "2\n2\ninf\ninf\n");
    IndexedMesh point = RightTriangles({1});
    point.AddFace({1, 1, 1});
    EXPECT_EQ(QualityOf(point), "2\ninf\ninf\ninf\n");
}

TEST(QualityText, IsRefusedWithoutFaces)
{
    EXPECT_EQ(ReasonFor({}), "the model has no face to measure");
}

TEST(QualityText, IsRefusedForFacesWithOtherThanThreeCorners)
{
    EXPECT_EQ(ReasonFor(QuadCube()),
              "face 1 does not have three corners: the quality is that of a triangle mesh");
    IndexedMesh mesh = RightTriangles({1});
    mesh.AddFace({1, 2});
    EXPECT_EQ(ReasonFor(mesh), "face 2 does not have three corners: the quality is that of a triangle mesh");
}
