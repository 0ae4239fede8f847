#include "DualMesh.h"
#include "DSBrep.h"
#include "FootSearch.h"
#include "VertexWalk.h"

namespace tessarine
{
namespace
{
constexpr std::int32_t kNoSelection = -1;
constexpr std::size_t kLeastCorners = 3;

std::int32_t FindFootNearestToCentroid(const DSFace& face, const FootList& feet)
{
    const smVec3d centroid = face.CalcCentroid();
    const auto measure = [&](std::int32_t foot)
    { return (feet.points[static_cast<std::size_t>(foot)] - centroid).Length(); };
    std::int32_t nearest = face.GetTagList().front();
    double least = measure(nearest);
    for (const std::int32_t foot : face.GetTagList())
    {
        const double distance = measure(foot);
        if (distance < least)
        {
            least = distance;
            nearest = foot;
        }
    }
    return nearest;
}
}

void SelectFaceFeet(DSSolid& solid, const FootList& feet, std::vector<bool>& isPointDone)
{
    for (DSFace* pFace : solid.GetFaceList())
    {
        pFace->GetTag() = kNoSelection;
        if (pFace->GetTagList().size() > 1)
        {
            const std::int32_t foot = FindFootNearestToCentroid(*pFace, feet);
            pFace->GetTag() = foot;
            isPointDone[static_cast<std::size_t>(feet.cloudIndices[static_cast<std::size_t>(foot)])] = true;
        }
    }
}

DualMesh MakeDualMesh(const DSSolid& solid, const FootList& feet)
{
    DualMesh dual;
    IndexList numbers(feet.points.size()); // of the vertex at each foot
    for (const DSFace* pFace : solid.GetFaceList())
    {
        if (pFace->GetTag() >= 0)
        {
            const auto foot = static_cast<std::size_t>(pFace->GetTag());
            dual.positions.push_back(feet.points[foot]);
            dual.cloudIndices.push_back(feet.cloudIndices[foot]);
            numbers[foot] = static_cast<std::int32_t>(dual.positions.size());
        }
    }
    IndexList polygon;
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        if (pVertex->GetHalfEdge() == nullptr)
        {
            continue;
        }
        polygon.clear();
        VertexWalk walk(pVertex->GetHalfEdge());
        for (; !walk.IsAtEnd(); walk.Step())
        {
            if (const std::int32_t foot = walk.Get()->GetLoop()->GetFace()->GetTag(); foot > 0)
            {
                polygon.push_back(numbers[static_cast<std::size_t>(foot)]);
            }
        }
        ASSERT(!walk.EndedAtBoundary());
        if (polygon.size() >= kLeastCorners)
        {
            dual.corners.insert(dual.corners.end(), polygon.begin(), polygon.end());
            dual.faceSizes.push_back(static_cast<std::int32_t>(polygon.size()));
        }
    }
    return dual;
}
}
