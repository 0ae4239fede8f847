#include "IAMoveVertexCommand.h"
#include "MANBrepElementManager.h"
#include "MoveStep.h"

namespace tessarine
{
IAMoveVertexCommand::IAMoveVertexCommand() : IAMoveCommand(SelectType::Vertices) {}

std::vector<DSVertex*> IAMoveVertexCommand::CollectVertices() const
{
    std::vector<DSVertex*> vertices;
    for (const std::uint32_t id : GetSelection())
    {
        DSVertex* pVertex = GetElements().GetVertex(id);
        ASSERT(pVertex != nullptr);
        vertices.push_back(pVertex);
    }
    return vertices;
}

void IAMoveVertexCommand::Execute()
{
    MoveStep step;
    for (DSVertex* pVertex : CollectVertices())
    {
        if (IsAlongNormal())
        {
            step.MoveAlongNormal(*pVertex, GetDistance());
        }
        else
        {
            step.Move(*pVertex, GetStep());
        }
    }
    step.Finish();
}
}
