#include "Umbrellas.h"
#include "LeastSquaresSystem.h"
#include "VertexPlaces.h"
#include "VertexWalk.h"

namespace tessarine
{
void AddUmbrellas(const DSSolid& solid, const std::function<smVec3d(const DSVertex&)>& pointOf,
                  LeastSquaresSystem& system)
{
    ASSERT(system.GetSize() == static_cast<int>(solid.GetVertexList().size()));
    const VertexPlaces places(solid);
    std::vector<int> around;
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        if (pVertex->GetHalfEdge() == nullptr)
        {
            continue;
        }
        around.clear();
        for (VertexWalk walk(pVertex->GetHalfEdge()); !walk.IsAtEnd(); walk.Step())
        {
            around.push_back(places.GetPlace(*walk.Get()->GetNext()->GetVertex()));
        }
        system.AddUmbrella(around, pointOf(*pVertex));
    }
}
}
