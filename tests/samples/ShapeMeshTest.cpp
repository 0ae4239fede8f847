#include "ShapeMesh.h"
#include "ShapeSamples.h"
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <utility>

namespace tessarine
{
namespace
{
std::vector<ShapeSample> GetAllSamples()
{
    std::vector<ShapeSample> samples = GetFitSamples();
    samples.push_back(GetManSample());
    return samples;
}

/// Each edge is used once each way.
bool IsClosed(const ShapeMesh& mesh)
{
    std::set<std::pair<int, int>> edges;
    for (const auto& triangle : mesh.triangles)
    {
        for (std::size_t i = 0; i < 3; ++i)
        {
            if (!edges.emplace(triangle[i], triangle[(i + 1) % 3]).second)
            {
                return false;
            }
        }
    }
    return std::all_of(edges.begin(), edges.end(),
                       [&edges](const auto& edge) {
                           return edges.count({edge.second, edge.first}) == 1;
                       });
}

double GetVolume(const ShapeMesh& mesh)
{
    double volume = 0.0;
    for (const auto& triangle : mesh.triangles)
    {
        const smVec3d& a = mesh.points[static_cast<std::size_t>(triangle[0])];
        const smVec3d& b = mesh.points[static_cast<std::size_t>(triangle[1])];
        const smVec3d& c = mesh.points[static_cast<std::size_t>(triangle[2])];
        volume += a.Dot(b.Cross(c)) / 6;
    }
    return volume;
}

/// The models of the workspace, each made once.
class ShapeMeshTest : public testing::TestWithParam<std::string>
{
protected:
    static const ShapeSample& GetSample()
    {
        static const std::vector<ShapeSample> kSamples = GetAllSamples();
        return *std::find_if(kSamples.begin(), kSamples.end(),
                             [](const ShapeSample& sample) { return sample.name == GetParam(); });
    }
    static const ShapeMesh& GetMesh()
    {
        static std::map<std::string, ShapeMesh> meshes;
        const auto [entry, isNew] = meshes.try_emplace(GetParam());
        if (isNew)
        {
            entry->second = MakeShapeMesh(GetSample().shape, GetSample().cell);
        }
        return entry->second;
    }

    const Shape& m_Shape = GetSample().shape;
    const ShapeMesh& m_Mesh = GetMesh();
};

TEST_P(ShapeMeshTest, HasFromTwoToFiftyThousandTriangles)
{
    EXPECT_GE(m_Mesh.triangles.size(), 2000U);
    EXPECT_LE(m_Mesh.triangles.size(), 50000U);
}

TEST_P(ShapeMeshTest, IsClosedAndWithoutAHole)
{
    EXPECT_TRUE(IsClosed(m_Mesh));
    const auto vertices = static_cast<int>(m_Mesh.points.size());
    const auto faces = static_cast<int>(m_Mesh.triangles.size());
    EXPECT_EQ(vertices - faces / 2, 2); // V - E + F of a ball, with three half edges a face
}

TEST_P(ShapeMeshTest, LiesOnTheSurfaceAndLooksOutward)
{
    EXPECT_GT(GetVolume(m_Mesh), 0.0);
    for (std::size_t i = 0; i < m_Mesh.points.size(); ++i)
    {
        ASSERT_NEAR(m_Shape(m_Mesh.points[i]), 0.0, 1e-3);
        ASSERT_GT(m_Shape(m_Mesh.points[i] + m_Mesh.normals[i] * 0.01), 0.003);
    }
}

TEST_P(ShapeMeshTest, HasItsCloudOnTheSurfaceAndInTheSameBox)
{
    constexpr int kCount = 1000;
    const std::vector<smVec3d> cloud = ScatterPoints(m_Shape, m_Mesh, kCount);
    EXPECT_EQ(cloud.size(), std::size_t{kCount});
    const UnitFrame ofMesh = FindUnitFrame(m_Mesh.points);
    const UnitFrame ofCloud = FindUnitFrame(cloud);
    EXPECT_EQ(ofMesh.half, ofCloud.half);
    EXPECT_EQ((ofMesh.centre - ofCloud.centre).Length(), 0.0);
    for (const smVec3d& point : cloud)
    {
        ASSERT_NEAR(m_Shape(point), 0.0, 0.01); // those behind the mesh's box are moved to it
    }
}

INSTANTIATE_TEST_SUITE_P(Of, ShapeMeshTest, testing::Values("box", "bunny", "dragon", "horse", "man"),
                         [](const auto& instance) { return instance.param; });
}
}
