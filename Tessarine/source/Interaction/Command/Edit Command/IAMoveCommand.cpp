#include "IAMoveCommand.h"
#include "Assert.h"
#include "MANBrepElementManager.h"
#include <algorithm>
#include <cmath>

namespace tessarine
{
namespace
{
bool IsSelectionAlive(const MANBrepElementManager& elements)
{
    const auto& ids = elements.GetSelectList();
    return std::all_of(ids.begin(), ids.end(),
                       [&](std::uint32_t id) { return elements.FindLiveElement(id) != nullptr; });
}
}

void IAMoveCommand::SavePositions()
{
    const std::vector<DSVertex*> vertices = CollectVertices();
    std::vector<smVec3d> positions;
    positions.reserve(vertices.size());
    for (const DSVertex* pVertex : vertices)
    {
        positions.push_back(pVertex->GetPosition());
    }
    m_SavedPositions.swap(positions);
}

bool IAMoveCommand::CanUndo() const
{
    return m_pElementManager != nullptr && m_pElementManager->GetSelectType() == m_nSelectType &&
           IsSelectionAlive(*m_pElementManager) && CollectVertices().size() == m_SavedPositions.size();
}

void IAMoveCommand::Undo()
{
    const std::vector<DSVertex*> vertices = CollectVertices();
    ASSERT(vertices.size() == m_SavedPositions.size());
    for (std::size_t i = 0; i < vertices.size(); ++i)
    {
        vertices[i]->GetPosition() = m_SavedPositions[i];
    }
}

const std::vector<std::uint32_t>& IAMoveCommand::GetSelection() const
{
    ASSERT(m_pElementManager != nullptr);
    ASSERT(m_pElementManager->GetSelectType() == m_nSelectType);
    return m_pElementManager->GetSelectList();
}

bool IAMoveCommand::IsAlongNormal() const
{
    constexpr double kTolerance = 1e-10;
    const smVec3d off = m_Direction - kAlongNormal;
    return std::abs(off.x) < kTolerance && std::abs(off.y) < kTolerance && std::abs(off.z) < kTolerance;
}
}
