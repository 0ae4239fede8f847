#include "IAReconstructionSmoothCommand.h"
#include "DSBrep.h"
#include "Failure.h"
#include "IncrementalConnection.h"
#include "Open3DView.h"
#include <limits>

namespace tessarine
{
namespace
{
constexpr char kBoxCloud[] = "Data\\box.txta";
}

void IAReconstructionSmoothCommand::Execute()
{
    TakeClosedSolid();
    NormalizeCurrentSolid();
    LoadPoints(kBoxCloud);
    ShowCloud();
    m_PointDone.assign(m_Points.size(), false);
    FootSearch search(*m_pSolid, kIncrementalFeet);
    FootList feet = CalculateFootPoints(
        *m_pSolid, m_Points, [this](std::size_t point) { return !m_PointDone[point]; }, search,
        &m_pView->GetProjectedPoints());

    const auto connection = std::make_shared<IncrementalConnection>();
    connection->Begin(m_pElementManager, m_pSolid, std::move(feet));
    connection->MakeSeed();
    m_pConnection = connection;
    m_pView->SetNewMesh(connection->GetNewSolid());
}

void IAReconstructionSmoothCommand::ConnectNext(std::uint64_t steps)
{
    if (GetLiveConnection().IsFrontEmpty())
    {
        return;
    }
    const auto connection = std::make_shared<IncrementalConnection>(*m_pConnection);
    for (; steps != 0 && !connection->IsFrontEmpty(); --steps)
    {
        connection->ConnectNext();
    }
    connection->CalcNormals();
    m_pConnection = connection;
}

void IAReconstructionSmoothCommand::ConnectAll()
{
    ConnectNext(std::numeric_limits<std::uint64_t>::max());
}

void IAReconstructionSmoothCommand::SaveEnvironment() const
{
    GetLiveConnection().SaveEnvironment(m_PointDone);
}

const IncrementalConnection& IAReconstructionSmoothCommand::GetLiveConnection() const
{
    ASSERT(m_pConnection != nullptr);
    if (!m_pConnection->IsModelUnchanged())
    {
        throw Failure("the model has changed or moved since the new mesh was started on it: start anew "
                      "(\"递增连接算法\")");
    }
    return *m_pConnection;
}
}
