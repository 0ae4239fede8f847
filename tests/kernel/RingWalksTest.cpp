#include "RingWalks.h"
#include "Capture.h"
#include "Meshes.h"
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
/// That each vertex is visited in its turn, with what its own walk meets.
void ExpectRings(const DSSolid& solid)
{
    std::size_t place = 0;
    std::size_t asked = 0;
    std::size_t met = 0;
    RingWalks::ForEach(
        solid.GetVertexList(), [&asked](const DSHalfEdge& /*h*/) { ++asked; },
        [&](const DSVertex& vertex, const VertexRing& ring)
        {
            ASSERT_EQ(&vertex, solid.GetVertexList()[place++]);
            std::vector<const DSHalfEdge*> expected;
            bool endedAtBoundary = false;
            if (vertex.GetHalfEdge() != nullptr)
            {
                VertexWalk walk(vertex.GetHalfEdge());
                for (; !walk.IsAtEnd(); walk.Step())
                {
                    expected.push_back(walk.Get());
                }
                endedAtBoundary = walk.EndedAtBoundary();
            }
            EXPECT_EQ(ring.halfEdges, expected);
            EXPECT_EQ(ring.endedAtBoundary, endedAtBoundary);
            met += expected.size();
        });
    EXPECT_EQ(place, solid.GetVertexList().size());
    EXPECT_EQ(asked, met);
}

TEST(RingWalks, MeetWhatEachWalkMeets)
{
    // More vertices than walks go side by side, and a last lot that is not full; vertices without faces, and on a rim.
    IndexedMesh isolated = Torus(7, 5);
    isolated.positions.insert(isolated.positions.begin() + 3, smVec3d(0, 0, 9));
    for (std::int32_t& index : isolated.indices)
    {
        index += index > 3 ? 1 : 0;
    }
    for (const IndexedMesh& mesh : {Torus(7, 5), isolated, Grid(4), BowTie(), QuadCube(), SingleTriangle()})
    {
        MANBrepElementManager elements;
        ExpectRings(*LoadQuietly(elements, mesh));
    }
}

TEST(RingWalks, EndOnMeshesWhoseFacesRunAgainstTheirNeighbours)
{
    MANBrepElementManager elements;
    ExpectRings(*LoadQuietly(elements, ThreeTrianglesOnOneEdge()));
}

TEST(RingWalks, VisitNothingInAnEmptyList)
{
    ExpectRings(DSSolid());
}
}
}
