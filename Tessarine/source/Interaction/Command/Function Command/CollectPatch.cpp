#include "CollectPatch.h"
#include "DSBrep.h"
#include "EigenTable.h"

namespace tessarine
{
namespace
{
constexpr int kRegularValence = 6;
constexpr int kTriangleCorners = 3;

DSHalfEdge* TwinOf(const DSHalfEdge* h)
{
    DSHalfEdge* pTwin = h->GetTwin();
    ASSERT(pTwin != nullptr);
    return pTwin;
}

/// The next half-edge that leaves the same vertex, across h.
DSHalfEdge* Turn(const DSHalfEdge* h)
{
    return TwinOf(h)->GetNext();
}

bool IsCornerOfTriangle(const DSHalfEdge* h)
{
    return h->GetNext() != h && h->GetNext()->GetNext() != h && h->GetNext()->GetNext()->GetNext() == h;
}

/// The number of triangles around the vertex that h leaves, which must be closed and face the same way.
int CountTriangles(DSHalfEdge* start)
{
    const int valence = start->GetVertex()->GetValence();
    const DSHalfEdge* h = start;
    for (int i = 0; i < valence; ++i)
    {
        ASSERT(IsCornerOfTriangle(h));
        h = Turn(h);
        ASSERT(h->GetVertex() == start->GetVertex());
        ASSERT((h == start) == (i + 1 == valence));
    }
    return valence;
}

/// The first irregular corner; where there is none, the first of all.
DSHalfEdge* FindPatchCorner(DSHalfEdge* first)
{
    DSHalfEdge* he = first;
    for (int i = 0; i < kTriangleCorners && he->GetVertex()->GetValence() == kRegularValence; ++i)
    {
        he = he->GetNext();
    }
    return he;
}
}

int CollectPatch(const DSFace& face, std::vector<DSVertex*>& vertices)
{
    ASSERT(!face.GetLoopList().empty() && face.GetLoopList()[0] != nullptr);
    ASSERT(IsCornerOfTriangle(face.GetLoopList()[0]->GetHalfEdge()));
    DSHalfEdge* const he = FindPatchCorner(face.GetLoopList()[0]->GetHalfEdge());
    const int n = CountTriangles(he);
    ASSERT(n >= EigenTable::kLeastValence);
    ASSERT(CountTriangles(he->GetNext()) == kRegularValence);
    ASSERT(CountTriangles(he->GetPrev()) == kRegularValence);

    vertices.assign(1, he->GetVertex());
    const DSHalfEdge* h = he;
    for (int i = 0; i < n; ++i)
    {
        vertices.push_back(TwinOf(h)->GetVertex());
        h = Turn(h);
    }
    const DSHalfEdge* const start = Turn(he->GetNext());
    h = start;
    for (int i = 0; i < 3; ++i)
    {
        vertices.push_back(TwinOf(h)->GetVertex());
        h = Turn(h);
    }
    const DSHalfEdge* const a = TwinOf(start->GetNext())->GetPrev();
    vertices.push_back(a->GetVertex());
    vertices.push_back(TwinOf(a)->GetPrev()->GetVertex());
    return n;
}
}
