#include "MoveStep.h"
#include "DSBrep.h"
#include "Failure.h"
#include <string>

namespace tessarine
{
void RefuseFarPosition()
{
    throw Failure("the move leads further than numbers reach: nothing was moved");
}

MoveStep::~MoveStep()
{
    for (auto state = m_Before.rbegin(); state != m_Before.rend(); ++state)
    {
        state->pVertex->GetPosition() = state->position;
        state->pVertex->GetNormal() = state->normal;
    }
}

void MoveStep::Keep(DSVertex& vertex)
{
    m_Before.push_back({&vertex, vertex.GetPosition(), vertex.GetNormal()});
}

void MoveStep::Move(DSVertex& vertex, const smVec3d& way)
{
    const smVec3d position = vertex.GetPosition() + way;
    if (!IsFinite(position))
    {
        RefuseFarPosition();
    }
    Keep(vertex);
    vertex.GetPosition() = position;
}

void MoveStep::MoveAlongNormal(DSVertex& vertex, double distance)
{
    Keep(vertex);
    const smVec3d normal = vertex.CalcNormal();
    CheckNormal(vertex, normal);
    Move(vertex, normal * distance);
}

void MoveStep::CheckNormal(const DSElement& element, const smVec3d& normal)
{
    if (!IsFinite(normal))
    {
        throw Failure("element " + std::to_string(element.GetID()) +
                      " has no normal to move along: move it along an axis");
    }
}
}
