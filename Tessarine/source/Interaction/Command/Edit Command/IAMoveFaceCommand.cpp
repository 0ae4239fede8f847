#include "IAMoveFaceCommand.h"
#include "FaceWalk.h"
#include "MANBrepElementManager.h"
#include "MoveStep.h"

namespace tessarine
{
namespace
{
DSFace& FindSelectedFace(const MANBrepElementManager& elements, std::uint32_t id)
{
    DSFace* pFace = elements.GetFace(id);
    ASSERT(pFace != nullptr);
    return *pFace;
}
}

IAMoveFaceCommand::IAMoveFaceCommand() : IAMoveCommand(SelectType::Faces) {}

std::vector<DSVertex*> IAMoveFaceCommand::CollectVertices() const
{
    std::vector<DSVertex*> vertices;
    for (const std::uint32_t id : GetSelection())
    {
        ForEachHalfEdge(FindSelectedFace(GetElements(), id),
                        [&](DSHalfEdge& halfEdge) { vertices.push_back(halfEdge.GetVertex()); });
    }
    return vertices;
}

void IAMoveFaceCommand::Execute()
{
    MoveStep step;
    for (const std::uint32_t id : GetSelection())
    {
        const DSFace& face = FindSelectedFace(GetElements(), id);
        smVec3d way = GetStep();
        if (IsAlongNormal())
        {
            MoveStep::CheckNormal(face, face.GetNormal());
            way = face.GetNormal() * GetDistance();
        }
        ForEachHalfEdge(face, [&](DSHalfEdge& halfEdge) { step.Move(*halfEdge.GetVertex(), way); });
    }
    step.Finish();
}
}
