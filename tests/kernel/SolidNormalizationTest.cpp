#include "SolidNormalization.h"
#include "Failure.h"
#include "MeshWalks.h"
#include "Meshes.h"
#include "Vectors.h"
#include <gtest/gtest.h>
#include <limits>

namespace tessarine
{
namespace
{
class SolidNormalization : public testing::Test
{
protected:
    DSSolid& Load(PositionList positions)
    {
        IndexedMesh mesh;
        mesh.positions = std::move(positions);
        return *LoadQuietly(m_Elements, mesh);
    }

    MANBrepElementManager m_Elements;
};

TEST_F(SolidNormalization, PutsTheLongestSideFromFaceToFace)
{
    DSSolid& solid = Load({smVec3d(2, 1, 0), smVec3d(6, 2, 0), smVec3d(4, 3, 0)});
    NormalizeSolid(solid);
    // Centre (4, 2, 0), longest side 4: scale 1/2.
    EXPECT_EQ(PositionsOf(solid), (PositionList{smVec3d(-1, -0.5, 0), smVec3d(1, 0, 0), smVec3d(0, 0.5, 0)}));
}

TEST_F(SolidNormalization, RoundsEachCoordinateThreeTimes)
{
    const double x = 0.1;
    const double y = 1.0 / 3.0;
    DSSolid& solid = Load({smVec3d(x, 0, 0), smVec3d(y, 0, 0), smVec3d(3, 0, 0)});
    NormalizeSolid(solid);
    const double centre = (3 + x) / 2;
    const double scale = 2.0 / (3 - x);
    const auto expected = [&](double value)
    {
        const float rounded = static_cast<float>(value);
        const float moved = static_cast<float>(rounded - centre);
        return static_cast<double>(static_cast<float>(moved * scale));
    };
    EXPECT_EQ(PositionsOf(solid)[1].x, expected(y));
    EXPECT_NE(PositionsOf(solid)[1].x, (y - centre) * scale);
    EXPECT_EQ(PositionsOf(solid)[0].x, expected(x));
}

TEST_F(SolidNormalization, IsNearlyDoneWhenItHasBeenDone)
{
    DSSolid& solid = Load({smVec3d(0.3, 7, 1), smVec3d(5, 0.2, 9), smVec3d(1, 1, 1)});
    NormalizeSolid(solid);
    const PositionList once = PositionsOf(solid);
    NormalizeSolid(solid);
    for (std::size_t i = 0; i < once.size(); ++i)
    {
        EXPECT_LT((PositionsOf(solid)[i] - once[i]).Length(), 1e-6);
    }
}

TEST_F(SolidNormalization, OnlyCentresASinglePoint)
{
    DSSolid& solid = Load({smVec3d(3, 4, 5), smVec3d(3, 4, 5)});
    NormalizeSolid(solid);
    EXPECT_EQ(PositionsOf(solid), (PositionList{smVec3d(0, 0, 0), smVec3d(0, 0, 0)}));
}

TEST_F(SolidNormalization, LeavesASolidWithoutVertices)
{
    DSSolid& solid = Load({});
    NormalizeSolid(solid);
    EXPECT_TRUE(solid.GetVertexList().empty());
}

TEST_F(SolidNormalization, MovesNothingWhereACoordinateCannotBeScaled)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double bad : {nan, std::numeric_limits<double>::infinity(), 1e39, -1e39})
    {
        DSSolid& solid = Load({smVec3d(1, 2, 3), smVec3d(4, bad, 6)});
        EXPECT_THROW(NormalizeSolid(solid), Failure) << bad;
        EXPECT_EQ(PositionsOf(solid)[0], smVec3d(1, 2, 3));
    }
    DSSolid& tiny = Load({smVec3d(0, 0, 0), smVec3d(1e-309, 0, 0)});
    EXPECT_THROW(NormalizeSolid(tiny), Failure);
}
}
}
