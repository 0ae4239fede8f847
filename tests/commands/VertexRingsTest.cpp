#include "VertexRings.h"
#include "Capture.h"
#include "RandomMeshes.h"
#include <gtest/gtest.h>
#include <set>

namespace tessarine
{
namespace
{
TEST(VertexRings, AreThoseOfATorus)
{
    MANBrepElementManager elements;
    const DSSolid* solid = LoadQuietly(elements, Torus(20, 20));
    VertexRings rings;
    const DSVertex& centre = *solid->GetVertexList()[47];
    // Every vertex has six neighbours: hexagons of 6, 12, 18 and 24 vertices; within the n-th lie 6 n^2 triangles.
    const std::size_t vertices[] = {0, 6, 18, 36, 60};
    const std::size_t faces[] = {0, 6, 24, 54, 96};
    for (int n = 0; n <= 4; ++n)
    {
        rings.Grow(centre, n);
        EXPECT_EQ(rings.GetVertices().size(), vertices[n]);
        EXPECT_EQ(rings.GetFaces().size(), faces[n]);
        const std::set<const DSVertex*> different(rings.GetVertices().begin(), rings.GetVertices().end());
        EXPECT_EQ(different.size(), vertices[n]);
        EXPECT_EQ(different.count(&centre), 0U);
    }
}

TEST(VertexRings, StopWhereTheMeshEnds)
{
    MANBrepElementManager elements;
    const DSSolid* solid = LoadQuietly(elements, Bipyramid(5));
    VertexRings rings;
    rings.Grow(*solid->GetVertexList()[0], 4);
    EXPECT_EQ(rings.GetVertices().size(), 6U);
    EXPECT_EQ(rings.GetFaces().size(), 10U);
}

TEST(VertexRings, AssertFacesAllAround)
{
    MANBrepElementManager elements;
    const DSSolid* solid = LoadQuietly(elements, Grid(2));
    const AssertionCapture assertions;
    VertexRings rings;
    EXPECT_THROW(rings.Grow(*solid->GetVertexList()[0], 1), AssertionFailure);
}
}
}
