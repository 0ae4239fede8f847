#include "IAReconstructionSmoothEnergyFunctionCommand.h"
#include "Console.h"
#include "DSBrep.h"
#include "Failure.h"
#include "FootSearch.h"
#include "FreeList.h"
#include "Open3DView.h"
#include "Umbrellas.h"
#include "VertexWalk.h"
#include <array>
#include <cmath>

namespace tessarine
{
namespace
{
constexpr char kCloudFile[] = "Data\\dragon.txta";
constexpr std::int32_t kHasPoint = 1;
constexpr std::int32_t kHasNoPoint = -1;
constexpr std::int32_t kUnavailable = -1;

bool TouchesPoint(const DSVertex& vertex)
{
    if (vertex.GetHalfEdge() == nullptr)
    {
        return false;
    }
    for (VertexWalk walk(vertex.GetHalfEdge()); !walk.IsAtEnd(); walk.Step())
    {
        if (walk.Get()->GetLoop()->GetFace()->GetTag() > 0)
        {
            return true;
        }
    }
    return false;
}
}

void IAReconstructionSmoothEnergyFunctionCommand::Execute()
{
    TakeClosedSolid();
    LoadPoints(kCloudFile);
    ShowCloud();
    FindFeet();
    InitSystem();
    SetSystem();
    Release();
}

void IAReconstructionSmoothEnergyFunctionCommand::FindFeet()
{
    for (DSFace* pFace : m_pSolid->GetFaceList())
    {
        pFace->GetTag() = kHasNoPoint;
    }
    FootSearch search(*m_pSolid, kEnergyFeet);
    std::vector<smVec3d>& projected = m_pView->GetProjectedPoints();
    int misses = 0;
    for (std::size_t i = 0; i < m_Points.size(); ++i)
    {
        const std::optional<Foot> foot = search.Find(m_Points[i]);
        projected[i] = foot ? foot->point : m_Points[i];
        if (!foot)
        {
            ++misses;
            continue;
        }
        m_FitFaces.push_back(foot->face);
        m_FitBary.push_back(foot->barycentric);
        m_FitPoints.push_back(m_Points[i]);
        foot->face->GetTag() = kHasPoint;
    }
    SayMisses(misses);
    DebugConsole() << "Calculate project point ok.." << '\n';
}

void IAReconstructionSmoothEnergyFunctionCommand::InitSystem()
{
    m_nAvailable = 0;
    m_VertexRow.clear();
    int unavailable = 0;
    for (const DSVertex* pVertex : m_pSolid->GetVertexList())
    {
        const bool isAvailable = TouchesPoint(*pVertex);
        m_VertexRow[pVertex->GetID()] = isAvailable ? m_nAvailable : kUnavailable;
        m_nAvailable += isAvailable ? 1 : 0;
        unavailable += isAvailable ? 0 : 1;
    }
    DebugConsole() << "The number of vertex: " << m_pSolid->GetVertexList().size() << '\n'
                   << "The number of availible vertex: " << m_nAvailable << '\n'
                   << "The number of inavailible vertex: " << unavailable << '\n';
    m_System.SetSize(m_nAvailable);
    DebugConsole() << "Init CGM ok..." << '\n';
}

/// The derivative of the square of the distance between the point and its place on the triangle.
void IAReconstructionSmoothEnergyFunctionCommand::AddPoint(std::size_t index)
{
    const smVec3d& weights = m_FitBary[index];
    if (!std::isfinite(weights.x + weights.y + weights.z))
    {
        throw Failure("the foot of a cloud point falls on a triangle without area, where it has no place: "
                      "remove such triangles (\"Optimize 2\"), and try again");
    }
    std::array<int, 3> rows{};
    const DSHalfEdge* h = m_FitFaces[index]->GetLoopList()[0]->GetHalfEdge();
    for (int& row : rows)
    {
        row = m_VertexRow.at(h->GetVertex()->GetID());
        h = h->GetNext();
    }
    CSparseMatrix& matrix = m_System.GetMatrix();
    for (int j = 0; j < 3; ++j)
    {
        const int row = rows[static_cast<std::size_t>(j)];
        matrix.AddValue(row, row, weights[j] * weights[j]);
        for (int k = 0; k < 3; ++k)
        {
            if (k != j)
            {
                matrix.AddValue(row, rows[static_cast<std::size_t>(k)], weights[k] * weights[j]);
            }
        }
        m_System.AddToRightSide(row, m_FitPoints[index] * weights[j]);
    }
}

void IAReconstructionSmoothEnergyFunctionCommand::AddPoints()
{
    for (std::size_t i = 0; i < m_FitPoints.size(); ++i)
    {
        AddPoint(i);
    }
}

void IAReconstructionSmoothEnergyFunctionCommand::SetSystem()
{
    AddPoints();
    DebugConsole() << "Set CGM ok..." << '\n';
    for (std::size_t place = 1; place <= static_cast<std::size_t>(m_nAvailable); ++place)
    {
        if (m_System.GetRightSide(0)[place] == 0.0 && m_System.GetRightSide(1)[place] == 0.0 &&
            m_System.GetRightSide(2)[place] == 0.0)
        {
            DebugConsole() << "error..." << '\n';
        }
    }
    MoveVertices(m_System.Solve());
}

void IAReconstructionSmoothEnergyFunctionCommand::MoveVertices(const std::vector<smVec3d>& positions)
{
    for (DSVertex* pVertex : m_pSolid->GetVertexList())
    {
        if (const std::int32_t row = m_VertexRow.at(pVertex->GetID()); row >= 0)
        {
            pVertex->GetPosition() = positions[static_cast<std::size_t>(row)];
        }
    }
}

/// The history keeps the command.
void IAReconstructionSmoothEnergyFunctionCommand::Release()
{
    FreeList(m_Points);
    FreeList(m_FitPoints);
    FreeList(m_FitFaces);
    FreeList(m_FitBary);
    m_System = {};
    m_VertexRow = {};
}

void IAReconstructionSmoothEnergyFunctionCommand::AddUmbrellaTerm(const DSSolid& solid,
                                                                  LeastSquaresSystem& system)
{
    AddUmbrellas(
        solid, [](const DSVertex& vertex) { return vertex.GetPosition(); }, system);
}
}
