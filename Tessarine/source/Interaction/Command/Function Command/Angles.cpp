#include "Angles.h"
#include "Degree.h"
#include "VertexWalk.h"

namespace tessarine
{
namespace
{
smVec3d DirectionOf(const DSHalfEdge& from, const DSHalfEdge& to)
{
    smVec3d way = to.GetVertex()->GetPosition() - from.GetVertex()->GetPosition();
    way.Normalize();
    return way;
}
}

double SumCornerAngles(const DSSolid& solid)
{
    double sum = 0.0;
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        ASSERT(pVertex != nullptr);
        if (pVertex->GetHalfEdge() == nullptr)
        {
            continue;
        }
        for (VertexWalk walk(pVertex->GetHalfEdge()); !walk.IsAtEnd(); walk.Step())
        {
            const DSHalfEdge& h = *walk.Get();
            sum += AngleBetween(DirectionOf(h, *h.GetNext()), DirectionOf(h, *h.GetPrev()));
        }
    }
    return sum;
}

bool IsAngleSumOfSphere(const DSSolid& solid, double sum)
{
    constexpr double kCharacteristic = 2.0;
    constexpr double kTolerance = 1e-6;
    const double defect = 2.0 * kPi * static_cast<double>(solid.GetVertexList().size()) - sum;
    return std::abs(2.0 * kPi * kCharacteristic - defect) <= kTolerance;
}
}
