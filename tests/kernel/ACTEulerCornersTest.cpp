#include "ACTEulerTest.h"

namespace tessarine
{
namespace
{
DSSolid* LoadPolygon(MANBrepElementManager& manager, int n)
{
    IndexedMesh mesh;
    mesh.positions.resize(static_cast<std::size_t>(n));
    for (int i = 1; i <= n; ++i)
    {
        mesh.indices.push_back(i);
    }
    mesh.faceSizes.push_back(n);
    return LoadQuietly(manager, mesh);
}

std::vector<DSHalfEdge*> EverySecond(const DSSolid* solid, std::size_t count)
{
    std::vector<DSHalfEdge*> corners;
    DSHalfEdge* h = solid->GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge();
    for (; corners.size() < count; h = h->GetNext()->GetNext())
    {
        corners.push_back(h);
    }
    return corners;
}

/// The parameter is the number of corners of a polygon.
class ACTEulerCornersTest : public testing::TestWithParam<int>
{
};

TEST_P(ACTEulerCornersTest, CutsCornersAsOneCutAfterAnotherDoes)
{
    for (std::size_t count = 2; 2 * count <= static_cast<std::size_t>(GetParam()); ++count)
    {
        MANBrepElementManager oneByOne;
        DSSolid* pSolid = LoadPolygon(oneByOne, GetParam());
        for (DSHalfEdge* h : EverySecond(pSolid, count))
        {
            std::uint32_t nFaceID = 0;
            ACTEuler(&oneByOne).LMEF(pSolid, h->GetNext(), h->GetPrev(), nFaceID);
        }
        MANBrepElementManager atOnce;
        DSSolid* pOther = LoadPolygon(atOnce, GetParam());
        ACTEuler(&atOnce).LMEFCorners(pOther, EverySecond(pOther, count));
        EXPECT_EQ(DumpRecords(atOnce), DumpRecords(oneByOne)) << count << " corners";
        EXPECT_TRUE(LinksHold(*pOther));
    }
}

INSTANTIATE_TEST_SUITE_P(Polygons, ACTEulerCornersTest, testing::Values(4, 5, 6, 7, 12, 13));

TEST(ACTEulerCorners, RefusesCornersThatAreNotEverySecond)
{
    const AssertionCapture assertions;
    MANBrepElementManager manager;
    ACTEuler euler(&manager);
    DSSolid* pSolid = LoadPolygon(manager, 6);
    const std::vector<DSHalfEdge*> corners = EverySecond(pSolid, 4); // once round and one more
    const std::string before = DumpRecords(manager);
    EXPECT_THROW(euler.LMEFCorners(pSolid, corners), AssertionFailure);
    EXPECT_THROW(euler.LMEFCorners(pSolid, {}), AssertionFailure);
    EXPECT_THROW(euler.LMEFCorners(pSolid, {corners[0]}), AssertionFailure);
    EXPECT_THROW(euler.LMEFCorners(pSolid, {corners[0], corners[0]->GetNext()}), AssertionFailure);
    EXPECT_EQ(DumpRecords(manager), before);
}
}
}
