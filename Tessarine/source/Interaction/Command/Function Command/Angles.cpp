#include "Angles.h"
#include "Degree.h"
#include "LookAhead.h"
#include "RingWalks.h"

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
    RingWalks::ForEach(
        solid.GetVertexList(),
        [](const DSHalfEdge& h)
        {
            for (const DSHalfEdge* pSide : {h.GetEdge()->GetHalfEdge1(), h.GetEdge()->GetHalfEdge2()})
            {
                AskForMemory(pSide != nullptr ? pSide->GetVertex() : nullptr, sizeof(DSVertex));
            }
            AskForMemory(h.GetNext(), sizeof(DSHalfEdge));
            AskForMemory(h.GetPrev(), sizeof(DSHalfEdge));
        },
        [&sum](const DSVertex& /*vertex*/, const VertexRing& ring)
        {
            for (const DSHalfEdge* h : ring.halfEdges)
            {
                sum += AngleBetween(DirectionOf(*h, *h->GetNext()), DirectionOf(*h, *h->GetPrev()));
            }
        });
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
