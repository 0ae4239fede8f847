#include "IAMoveSolidCommand.h"
#include "MANBrepElementManager.h"
#include "MoveStep.h"
#include <algorithm>

namespace tessarine
{
namespace
{
DSSolid& FindSelectedSolid(const MANBrepElementManager& elements, std::uint32_t id)
{
    DSSolid* pSolid = elements.GetSolid(id);
    ASSERT(pSolid != nullptr);
    return *pSolid;
}

bool StaysFinite(const DSSolid& solid, const smVec3d& way)
{
    const auto& vertices = solid.GetVertexList();
    return std::all_of(vertices.begin(), vertices.end(),
                       [&](const DSVertex* pVertex)
                       { return pVertex == nullptr || IsFinite(pVertex->GetPosition() + way); });
}

void Translate(const DSSolid& solid, const smVec3d& way)
{
    for (DSVertex* pVertex : solid.GetVertexList())
    {
        if (pVertex != nullptr)
        {
            pVertex->GetPosition() += way;
        }
    }
}
}

IAMoveSolidCommand::IAMoveSolidCommand() : IAMoveCommand(SelectType::Solids) {}

std::vector<DSVertex*> IAMoveSolidCommand::CollectVertices() const
{
    std::vector<DSVertex*> vertices;
    for (const std::uint32_t id : GetSelection())
    {
        const auto& ofSolid = FindSelectedSolid(GetElements(), id).GetVertexList();
        vertices.reserve(vertices.size() + ofSolid.size());
        std::copy_if(ofSolid.begin(), ofSolid.end(), std::back_inserter(vertices),
                     [](const DSVertex* pVertex) { return pVertex != nullptr; });
    }
    return vertices;
}

void IAMoveSolidCommand::Execute()
{
    // A solid may be listed more than once: after an import the list has ids of the model before.
    const smVec3d way = GetStep();
    const smVec3d wayAtMost = way * static_cast<double>(GetSelection().size());
    for (const std::uint32_t id : GetSelection())
    {
        if (!StaysFinite(FindSelectedSolid(GetElements(), id), wayAtMost))
        {
            RefuseFarPosition();
        }
    }
    for (const std::uint32_t id : GetSelection())
    {
        Translate(FindSelectedSolid(GetElements(), id), way);
    }
}
}
