#include "IASubAdaptiveCommand.h"
#include "Assert.h"
#include "CycleGuard.h"
#include "Failure.h"
#include "LoopMask.h"
#include "MANBrepElementManager.h"
#include "Platform.h"
#include "WanderingLimit.h"
#include <array>
#include <cmath>

namespace tessarine
{
namespace
{
const smVec3d& PointAt(const DSHalfEdge* h)
{
    return h->GetVertex()->GetPosition();
}

/// The three half-edges of a triangle.
std::array<DSHalfEdge*, 3> TriangleOf(const DSFace& face)
{
    DSHalfEdge* h = face.GetLoopList()[0]->GetHalfEdge();
    return {h, h->GetNext(), h->GetNext()->GetNext()};
}

bool HasThreeCorners(const DSFace& face)
{
    if (face.GetLoopList().size() != 1)
    {
        return false;
    }
    const DSHalfEdge* h = face.GetLoopList()[0]->GetHalfEdge();
    return h->GetNext() != h && h->GetNext()->GetNext() != h && h->GetNext()->GetNext()->GetNext() == h;
}

/// Where a third face has joined an edge, the half-edge of another names the edge and is not one of its two.
bool HasTwoFaces(const DSEdge& edge, const DSHalfEdge& halfEdge)
{
    return edge.GetHalfEdge2() != nullptr &&
           (edge.GetHalfEdge1() == &halfEdge || edge.GetHalfEdge2() == &halfEdge);
}

void RefuseAllButClosedTriangles(const DSSolid& solid)
{
    for (const DSEdge* pEdge : solid.GetEdgeList())
    {
        ASSERT(pEdge != nullptr && pEdge->GetHalfEdge1() != nullptr);
    }
    for (const DSFace* pFace : solid.GetFaceList())
    {
        ASSERT(pFace != nullptr);
        if (!HasThreeCorners(*pFace))
        {
            throw Failure("adaptive subdivision takes triangles only, and a face has another number of "
                          "corners: split such faces in the file and import again");
        }
        for (const DSHalfEdge* h : TriangleOf(*pFace))
        {
            ASSERT(h->GetEdge() != nullptr && h->GetEdge()->GetHalfEdge1() != nullptr);
            if (!HasTwoFaces(*h->GetEdge(), *h))
            {
                throw Failure("adaptive subdivision takes closed models only, and an edge has one face, or "
                              "more than two: repair it in the file and import again");
            }
        }
    }
}

/// A mesh as the builder takes it.
struct AdaptiveMesh
{
    PositionList vList;
    IndexList fv;
    IndexList fn;
};

/// The lists of the new mesh, made from the old one, which is closed and of triangles. It marks the edges of the
/// solid that are to be split, as long as it lives.
class AdaptiveRefinement
{
public:
    AdaptiveRefinement(DSSolid& solid, std::size_t vertexIDs, float maxArea)
        : m_Solid(solid),
          m_fMaxArea(maxArea),
          m_PlaceOfID(vertexIDs, -1),
          m_Limit(WanderingLimit::OfEdges(solid.GetEdgeList().size()))
    {
    }
    ~AdaptiveRefinement();
    AdaptiveRefinement(const AdaptiveRefinement&) = delete;
    AdaptiveRefinement& operator=(const AdaptiveRefinement&) = delete;

    void MarkEdgesOfLargeFaces();
    void SplitFaces();
    void FindVertexPositions();
    void FindEdgePositions();

    AdaptiveMesh lists;

private:
    void NumberVertices();
    void SplitFace(const DSFace& face);
    void AddTriangle(std::int32_t a, std::int32_t b, std::int32_t c);
    smVec3d FindVertexPosition(const DSVertex& vertex);

    DSSolid& m_Solid;
    float m_fMaxArea;
    std::int32_t m_nNewVertices = 0;
    std::vector<std::int32_t> m_PlaceOfID; ///< where a vertex stands in the solid's list
    WanderingLimit m_Limit;
};

AdaptiveRefinement::~AdaptiveRefinement()
{
    for (DSEdge* pEdge : m_Solid.GetEdgeList())
    {
        pEdge->GetSplit() = false;
        pEdge->GetSplitVertex() = 0;
    }
}

/// Twice the area.
double MeasureArea(const DSFace& face)
{
    const auto [h0, h1, h2] = TriangleOf(face);
    return (PointAt(h1) - PointAt(h0)).Cross(PointAt(h2) - PointAt(h1)).Length();
}

void AdaptiveRefinement::MarkEdgesOfLargeFaces()
{
    const auto n = static_cast<std::int32_t>(m_Solid.GetVertexList().size());
    for (const DSFace* pFace : m_Solid.GetFaceList())
    {
        if (!(m_fMaxArea < MeasureArea(*pFace)))
        {
            continue;
        }
        for (DSHalfEdge* h : TriangleOf(*pFace))
        {
            DSEdge& edge = *h->GetEdge();
            if (!edge.GetSplit())
            {
                edge.GetSplit() = true;
                edge.GetSplitVertex() = n + m_nNewVertices;
                ++m_nNewVertices;
            }
        }
    }
}

/// Ids and places differ once a solid has been subdivided, or stands behind another.
void AdaptiveRefinement::NumberVertices()
{
    std::int32_t place = 0;
    for (const DSVertex* pVertex : m_Solid.GetVertexList())
    {
        ASSERT(pVertex != nullptr);
        m_PlaceOfID.at(pVertex->GetID()) = place++;
    }
}

void AdaptiveRefinement::SplitFaces()
{
    NumberVertices();
    // Two more faces for each edge that is split, one on either side of it.
    const std::size_t faces = m_Solid.GetFaceList().size() + 2 * static_cast<std::size_t>(m_nNewVertices);
    lists.fn.reserve(faces);
    lists.fv.reserve(3 * faces);
    for (const DSFace* pFace : m_Solid.GetFaceList())
    {
        SplitFace(*pFace);
    }
}

void AdaptiveRefinement::AddTriangle(std::int32_t a, std::int32_t b, std::int32_t c)
{
    lists.fv.insert(lists.fv.end(), {a, b, c});
    lists.fn.push_back(3);
}

/// Edge i runs from corner i to the next. Numbers are one-based.
void AdaptiveRefinement::SplitFace(const DSFace& face)
{
    std::array<std::int32_t, 3> p{};
    std::array<std::int32_t, 3> m{};
    unsigned pattern = 0;
    std::size_t i = 0;
    for (const DSHalfEdge* h : TriangleOf(face))
    {
        p[i] = m_PlaceOfID.at(h->GetVertex()->GetID()) + 1;
        ASSERT(p[i] > 0);
        m[i] = h->GetEdge()->GetSplitVertex() + 1;
        pattern = 2 * pattern + (h->GetEdge()->GetSplit() ? 1 : 0);
        ++i;
    }
    switch (pattern)
    {
    case 0b111:
        AddTriangle(p[0], m[0], m[2]);
        AddTriangle(m[0], p[1], m[1]);
        AddTriangle(m[1], p[2], m[2]);
        AddTriangle(m[0], m[1], m[2]);
        break;
    case 0b110:
        AddTriangle(m[0], p[1], m[1]);
        AddTriangle(p[0], m[0], m[1]);
        AddTriangle(p[0], m[1], p[2]);
        break;
    case 0b101:
        AddTriangle(p[0], m[0], m[2]);
        AddTriangle(m[0], p[1], m[2]);
        AddTriangle(p[1], p[2], m[2]);
        break;
    case 0b100:
        AddTriangle(p[0], m[0], p[2]);
        AddTriangle(m[0], p[1], p[2]);
        break;
    case 0b011:
        AddTriangle(m[1], p[2], m[2]);
        AddTriangle(p[0], m[1], m[2]);
        AddTriangle(p[0], p[1], m[1]);
        break;
    case 0b010:
        AddTriangle(m[1], p[2], p[0]);
        AddTriangle(p[0], p[1], m[1]);
        break;
    case 0b001:
        AddTriangle(p[0], p[1], m[2]);
        AddTriangle(p[1], p[2], m[2]);
        break;
    default: AddTriangle(p[0], p[1], p[2]); break;
    }
}

void DemandFinitePosition(const smVec3d& position)
{
    if (!std::isfinite(position.x) || !std::isfinite(position.y) || !std::isfinite(position.z))
    {
        throw Failure("adaptive subdivision would make a vertex at a position that is not a finite number: "
                      "scale the model to smaller coordinates and try again");
    }
}

void AdaptiveRefinement::FindVertexPositions()
{
    lists.vList.reserve(m_Solid.GetVertexList().size() + static_cast<std::size_t>(m_nNewVertices));
    for (const DSVertex* pVertex : m_Solid.GetVertexList())
    {
        lists.vList.push_back(FindVertexPosition(*pVertex));
        DemandFinitePosition(lists.vList.back());
    }
}

smVec3d AdaptiveRefinement::FindVertexPosition(const DSVertex& vertex)
{
    const DSHalfEdge* pStart = vertex.GetHalfEdge();
    if (pStart == nullptr)
    {
        return vertex.GetPosition(); // no face uses it
    }
    smVec3d sum;
    int valence = 0;
    bool isOnSplitEdge = false;
    CycleGuard guard;
    const DSHalfEdge* h = pStart;
    do
    {
        guard.Visit(h);
        if (!m_Limit.Allows(*h, vertex))
        {
            throw Failure("too many faces run against their neighbours for adaptive subdivision: turn the "
                          "faces of the model the same way round and try again");
        }
        ++valence;
        sum += PointAt(h->GetNext());
        isOnSplitEdge = isOnSplitEdge || h->GetEdge()->GetSplit();
        h = h->GetTwin()->GetNext();
    } while (h != pStart);
    return isOnSplitEdge ? LoopMask::OfVertex(vertex.GetPosition(), sum, valence) : vertex.GetPosition();
}

void AdaptiveRefinement::FindEdgePositions()
{
    lists.vList.resize(lists.vList.size() + static_cast<std::size_t>(m_nNewVertices));
    for (const DSEdge* pEdge : m_Solid.GetEdgeList())
    {
        if (!pEdge->GetSplit())
        {
            continue;
        }
        const DSHalfEdge* h1 = pEdge->GetHalfEdge1();
        const DSHalfEdge* h2 = pEdge->GetHalfEdge2();
        smVec3d& position = lists.vList.at(static_cast<std::size_t>(pEdge->GetSplitVertex()));
        position = LoopMask::OfInnerEdge(PointAt(h1), PointAt(h1->GetNext()), PointAt(h2->GetPrev()),
                                         PointAt(h1->GetPrev()));
        DemandFinitePosition(position);
    }
}

AdaptiveMesh RefineLargeFaces(DSSolid& solid, std::size_t vertexIDs, float maxArea)
{
    AdaptiveRefinement refinement(solid, vertexIDs, maxArea);
    refinement.MarkEdgesOfLargeFaces();
    refinement.SplitFaces();
    refinement.FindVertexPositions();
    refinement.FindEdgePositions();
    return std::move(refinement.lists);
}
}

void IASubAdaptiveCommand::Execute()
{
    ASSERT(m_ClearModels != nullptr);
    DSSolid* pSolid = GetCurrentSolid();
    if (pSolid == nullptr)
    {
        throw Failure("there is no model to subdivide: import one first");
    }
    const std::optional<float> maxArea = GetPlatform().AskAreaThreshold();
    if (!maxArea)
    {
        return;
    }
    if (std::isnan(*maxArea))
    {
        throw Failure("the threshold of the area is not a number: give one such as 0.01");
    }
    RefuseAllButClosedTriangles(*pSolid);
    const AdaptiveMesh lists =
        RefineLargeFaces(*pSolid, GetElementManager()->GetVertexArray().size(), *maxArea);
    m_ClearModels();
    pSolid = GetElementManager()->BuildSolid(lists.vList, lists.fv, lists.fn, false);
    pSolid->CalcNormals();
    pSolid->CheckTopology();
    AddLeafOf(pSolid);
}
}
