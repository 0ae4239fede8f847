#include "FaceRuns.h"
#include "LiteralPick.h"
#include "PickStage.h"
#include <algorithm>
#include <gmock/gmock.h>
#include <random>

namespace tessarine
{
namespace
{
constexpr std::uint32_t kKinds[] = {ElementKind::Vertex, ElementKind::Edge, ElementKind::Face,
                                    ElementKind::Solid};

/// Picks by the command, with and without runs of faces, and by the literal form.
class PickComparison
{
public:
    explicit PickComparison(const std::vector<IndexedMesh>& meshes)
    {
        for (const IndexedMesh& mesh : meshes)
        {
            m_Solids.push_back(m_Stage.Show(mesh));
        }
        m_Stage.m_Camera.SetSize(80, 60);
        m_Command.SetCamera(&m_Stage.m_Camera);
        m_Command.SetScene(&m_Stage.m_Scene);
    }

    /// Of each solid the faces become loops of the first.
    void JoinAllFaces()
    {
        for (const DSSolid* solid : m_Solids)
        {
            while (solid->GetFaceList().size() > 1)
            {
                m_Stage.JoinFaces(*solid, solid->GetFaceList()[0]->GetID(), solid->GetFaceList()[1]->GetID());
            }
        }
    }

    Open3DCamera& GetCamera() { return m_Stage.m_Camera; }
    const DSVertex& GetVertex(std::size_t number) const
    {
        const auto& vertices = m_Stage.m_Elements.GetVertexArray();
        return *vertices[number % vertices.size()];
    }
    int CountHits() const { return m_nHits; }

    void ExpectTheSame(int x, int y)
    {
        for (const std::uint32_t kind : kKinds)
        {
            const LiteralHit literal = PickLiterally(m_Stage.m_Scene, m_Stage.m_Camera, kind, x, y);
            EXPECT_EQ(Pick(kind, x, y, nullptr), literal);
            EXPECT_EQ(Pick(kind, x, y, &m_Runs), literal);
            m_nHits += literal.isHit ? 1 : 0;
        }
    }

private:
    LiteralHit Pick(std::uint32_t kind, int x, int y, FaceRuns* runs)
    {
        m_Command.SetFaceRuns(runs);
        m_Command.SetKind(kind);
        m_Command.SetMouse(x, y);
        m_Command.Execute();
        return {m_Command.HasHit(), m_Command.GetElementID()};
    }

    PickStage m_Stage;
    std::vector<const DSSolid*> m_Solids;
    IASelectCommand m_Command;
    FaceRuns m_Runs;
    int m_nHits = 0;
};

/// Rays through anywhere, and rays that meet a vertex, an edge's middle or an axis as exactly as numbers can.
void CompareOn(PickComparison& comparison, int rays)
{
    std::mt19937 random(4711);
    const auto within = [&random](double limit)
    { return std::uniform_real_distribution<double>(-limit, limit)(random); };
    for (int i = 0; i < rays; ++i)
    {
        const smVec3d& first = comparison.GetVertex(random()).GetPosition();
        const smVec3d& second = comparison.GetVertex(random()).GetPosition();
        const smVec3d target = i % 3 == 0 ? first : (first + second) * 0.5;
        const smVec3d off = i % 4 == 0 ? smVec3d(0, 0, 1 + i % 3) : smVec3d(within(3), within(3), within(3));
        comparison.GetCamera().SetLookAt(target + off, target, smVec3d(0.1, 1, 0.05));
        comparison.ExpectTheSame(40, 30); // straight at the target
        comparison.ExpectTheSame(static_cast<int>(random() % 80), static_cast<int>(random() % 60));
    }
    EXPECT_GT(comparison.CountHits(), rays / 2);
}

void CompareOn(const std::vector<IndexedMesh>& meshes, int rays)
{
    PickComparison comparison(meshes);
    CompareOn(comparison, rays);
}

TEST(PickAgainstLiteral, AgreesOnASphere)
{
    CompareOn({Sphere(3)}, 300);
}

TEST(PickAgainstLiteral, AgreesOnPolygonsOfManyCornersAndWithNotches)
{
    CompareOn({Prism(30), NotchedFaces(), CentredCube()}, 500);
}

TEST(PickAgainstLiteral, AgreesOnSeveralSolidsAndFacesInOnePlace)
{
    CompareOn({Torus(12, 8), StackedSquares(4), Placed(Tetrahedron(), 2.0, smVec3d(-0.5, -0.5, -0.5))}, 300);
}

TEST(PickAgainstLiteral, AgreesOnFacesWithSeveralLoops)
{
    IndexedMesh holeFirst = Placed(SquareAndHole(), 0.5, smVec3d(2, 0, 0));
    std::rotate(holeFirst.indices.begin(), holeFirst.indices.begin() + 4, holeFirst.indices.end());
    PickComparison comparison({SquareAndHole(), holeFirst, StackedSquares(3), NotchedFaces()});
    comparison.JoinAllFaces();
    CompareOn(comparison, 500);
}

TEST(PickAgainstLiteral, AgreesFarFromTheOrigin)
{
    CompareOn({Placed(Torus(12, 8), 1.0, smVec3d(3e7, -2e7, 1e7))}, 300);
}

TEST(PickAgainstLiteral, AgreesOnFacesWithoutArea)
{
    CompareOn({DegenerateTriangle(), Grid(3), BowTie()}, 300);
}

TEST(PickAgainstLiteral, AgreesOnAPolygonOfMoreCornersThanAGlanceTakes)
{
    CompareOn({Prism(1500)}, 40);
}

TEST(PickAgainstLiteral, AgreesWhereProductsOverflow)
{
    IndexedMesh huge = Placed(QuadCube(), 1e200, smVec3d(-5e199, -5e199, -5e199));
    PickComparison comparison({huge, CentredCube()});
    comparison.GetCamera().SetLookAt({2, 1, 3}, {0, 0, 0}, {0, 1, 0});
    for (int x = 0; x < 80; x += 7)
    {
        comparison.ExpectTheSame(x, 30);
    }
}
}
}
