#include "VertexMatching.h"
#include "Console.h"
#include "Failure.h"
#include "MoveTests.h"
#include "VertexWalk.h"

namespace tessarine
{
namespace
{
/// Half-edges that are walked over around the vertices that go, all together; ordinary meshes need a tenth of it.
std::size_t MostSteps(const DSSolid& solid)
{
    return 100'000'000 + 200 * solid.GetEdgeList().size();
}
}

VertexMatching::VertexMatching(MANBrepElementManager* pManager, DSSolid& solid,
                               const std::vector<smVec3d>& cloud, PointPairs& pairs,
                               std::vector<smVec3d>& projected)
    : m_Solid(solid),
      m_Cloud(cloud),
      m_Pairs(pairs),
      m_Projected(projected),
      m_Nearest(BuildCloudIndex(cloud)),
      m_Surgery(pManager),
      m_nStepsLeft(MostSteps(solid))
{
}

void VertexMatching::Run()
{
    m_Pairs.m_VertexPoint.clear();
    const ElementList<DSVertex>& vertices = m_Solid.GetVertexList();
    for (const DSVertex* pVertex : vertices)
    {
        m_Pairs.m_VertexPoint.emplace_hint(m_Pairs.m_VertexPoint.end(), pVertex->GetID(), PointPairs::kNone);
    }
    std::size_t roundsLeft = 2 * m_Solid.GetEdgeList().size();
    for (std::size_t i = 0; i < vertices.size();)
    {
        DSVertex& vertex = *vertices[i];
        if (vertex.GetHalfEdge() == nullptr)
        {
            ++i;
            continue;
        }
        if (roundsLeft-- == 0)
        {
            throw Failure(kTooFewPoints);
        }
        if (FindPoint(vertex))
        {
            ++i;
            continue;
        }
        DebugConsole() << "There still exsits error points..." << '\n';
        Remove(vertex);
    }
    DebugConsole() << "Refine init mesh ok..." << '\n';
}

bool VertexMatching::FindPoint(DSVertex& vertex)
{
    constexpr int kNeighbours = 16;
    std::size_t walks = 1;
    for (const int index : m_Nearest.Find(vertex.GetPosition(), kNeighbours))
    {
        const auto point = static_cast<std::size_t>(index);
        if (!m_Pairs.IsFree(point))
        {
            continue;
        }
        ++walks;
        if (WouldFold(vertex, m_Cloud[point]) || !ProjectsIntoRing(vertex, m_Cloud[point]))
        {
            DebugConsole() << "Find topology error..." << '\n';
            continue;
        }
        m_Pairs.Pair(vertex.GetID(), point);
        m_Projected[point] = vertex.GetPosition();
        return true;
    }
    SpendSteps(walks * static_cast<std::size_t>(vertex.GetValence()));
    return false;
}

void VertexMatching::Remove(const DSVertex& vertex)
{
    m_Surgery.CollapseEdge(*vertex.GetHalfEdge()->GetEdge(), vertex);
}

void VertexMatching::SpendSteps(std::size_t nSteps)
{
    if (nSteps > m_nStepsLeft)
    {
        throw Failure(kTooFewPoints);
    }
    m_nStepsLeft -= nSteps;
}
}
