#include "LiteralTwoStep.h"
#include "ACTEuler.h"
#include "LiteralFit.h"
#include "MANBrepElementManager.h"
#include <ANN/ANN.h>
#include <algorithm>
#include <cmath>
#include <set>

namespace tessarine
{
namespace
{
constexpr double kRadians = 3.1415926535 / 180.0;

DSFace* FaceAt(const DSHalfEdge* h)
{
    return h->GetLoop()->GetFace();
}

const smVec3d& PlaceOf(const DSHalfEdge* h)
{
    return h->GetVertex()->GetPosition();
}

double AreaSum(const smVec3d& p, const smVec3d& t0, const smVec3d& t1, const smVec3d& t2)
{
    return (t1 - p).Cross(t2 - p).Length() + (t2 - p).Cross(t0 - p).Length() +
           (t0 - p).Cross(t1 - p).Length();
}

double DoubleArea(const smVec3d& t0, const smVec3d& t1, const smVec3d& t2)
{
    return (t1 - t0).Cross(t2 - t0).Length();
}

bool WouldFoldLiterally(DSVertex& vertex, const smVec3d& q)
{
    const double threshold = 160 * kRadians;
    const smVec3d old = vertex.GetPosition();
    vertex.GetPosition() = q;
    DSHalfEdge* h = vertex.GetHalfEdge();
    do
    {
        const smVec3d n1 = FaceAt(h)->CalcNormal();
        const smVec3d n2 = FaceAt(h->GetNext()->GetTwin())->CalcNormal();
        const double angle = std::acos(std::min(1.0, std::max(-1.0, n1.Dot(n2))));
        if (angle > threshold)
        {
            vertex.GetPosition() = old;
            return true;
        }
        h = h->GetTwin()->GetNext();
    } while (h != vertex.GetHalfEdge());
    vertex.GetPosition() = old;
    return false;
}

bool ProjectsIntoRingLiterally(const DSVertex& vertex, const smVec3d& q)
{
    DSHalfEdge* h = vertex.GetHalfEdge();
    do
    {
        const smVec3d c = FaceAt(h)->CalcCentroid();
        const smVec3d n = FaceAt(h)->CalcNormal();
        const smVec3d foot = (q - c) - ((q - c).Dot(n)) * n + c;
        const smVec3d t0 = PlaceOf(h);
        const smVec3d t1 = PlaceOf(h->GetNext());
        const smVec3d t2 = PlaceOf(h->GetPrev());
        if (std::fabs(AreaSum(foot, t0, t1, t2) - DoubleArea(t0, t1, t2)) < 0.00001)
        {
            return true;
        }
        h = h->GetTwin()->GetNext();
    } while (h != vertex.GetHalfEdge());
    return false;
}
}

LiteralTwoStep::LiteralTwoStep(MANBrepElementManager& elements, DSSolid& solid,
                               const std::vector<smVec3d>& cloud)
    : m_Projected(cloud),
      m_PointOwner(cloud.size(), -1),
      m_Elements(elements),
      m_Solid(solid),
      m_Points(cloud)
{
}

/// The faces left would name a vertex twice, or none would be left of two that have all their edges in common.
bool LiteralTwoStep::CanCollapse(const DSHalfEdge* ha) const
{
    const DSHalfEdge* hb = ha->GetTwin();
    for (const DSFace* face : m_Solid.GetFaceList())
    {
        const DSHalfEdge* h = face->GetLoopList()[0]->GetHalfEdge();
        const std::set<const DSVertex*> corners{h->GetVertex(), h->GetNext()->GetVertex(),
                                                h->GetPrev()->GetVertex()};
        if (face != FaceAt(ha) && face != FaceAt(hb) && corners.contains(ha->GetVertex()) &&
            corners.contains(hb->GetVertex()))
        {
            return false;
        }
    }
    return FaceAt(ha->GetNext()->GetTwin()) != FaceAt(hb) || FaceAt(ha->GetPrev()->GetTwin()) != FaceAt(hb);
}

bool LiteralTwoStep::MatchVertices()
{
    const int n = static_cast<int>(m_Points.size());
    const int k = std::min(16, n);
    ANNpointArray rows = annAllocPts(n, 3);
    for (int i = 0; i < n; ++i)
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            rows[i][axis] = m_Points[static_cast<std::size_t>(i)][axis];
        }
    }
    {
        ANNkd_tree tree(rows, n, 3, 1, ANN_KD_SUGGEST);
        m_Console += "\nPoints Cloud ANN Init is OK\n";
        std::vector<int> near(static_cast<std::size_t>(k));
        std::vector<double> distances(near.size());
        for (const DSVertex* vertex : m_Solid.GetVertexList())
        {
            m_VertexPoint[vertex->GetID()] = -1;
        }
        for (std::size_t i = 0; i < m_Solid.GetVertexList().size(); ++i)
        {
            DSVertex* vertex = m_Solid.GetVertexList()[i];
            double p[3] = {vertex->GetPosition().x, vertex->GetPosition().y, vertex->GetPosition().z};
            tree.annkSearch(p, k, near.data(), distances.data(), 0.0);
            int j = 0;
            for (; j < k; ++j)
            {
                const auto q = static_cast<std::size_t>(near[static_cast<std::size_t>(j)]);
                if (m_PointOwner[q] >= 0)
                {
                    continue;
                }
                if (WouldFoldLiterally(*vertex, m_Points[q]) ||
                    !ProjectsIntoRingLiterally(*vertex, m_Points[q]))
                {
                    m_Console += "Find topology error...\n";
                    continue;
                }
                m_VertexPoint[vertex->GetID()] = static_cast<std::int32_t>(q);
                m_Projected[q] = vertex->GetPosition();
                m_PointOwner[q] = static_cast<std::int32_t>(vertex->GetID());
                break;
            }
            if (j == k)
            {
                m_Console += "There still exsits error points...\n";
                DSHalfEdge* ha = vertex->GetHalfEdge();
                DSHalfEdge* hb = ha->GetTwin();
                if (!CanCollapse(ha))
                {
                    annDeallocPts(rows);
                    return false;
                }
                ACTEuler euler(&m_Elements);
                euler.LKEF(&m_Solid, ha->GetPrev()->GetTwin(), ha->GetPrev());
                euler.LKEF(&m_Solid, hb->GetPrev()->GetTwin(), hb->GetPrev());
                euler.LKEV(&m_Solid, hb, ha);
                m_Console += "One edge clipped..\n";
                --i;
            }
        }
    }
    annDeallocPts(rows);
    m_Console += "Refine init mesh ok...\n";
    return true;
}

bool LiteralTwoStep::Run()
{
    if (!MatchVertices())
    {
        return false;
    }
    Update();
    m_Solid.CalcNormals();
    return true;
}

void LiteralTwoStep::Update()
{
    m_OldPositions.clear();
    for (const auto& [id, point] : m_VertexPoint)
    {
        DSVertex* vertex = m_Elements.GetVertexArray()[id];
        if (vertex == nullptr)
        {
            continue;
        }
        m_OldPositions.push_back(vertex->GetPosition());
        if (point >= 0)
        {
            vertex->GetPosition() = m_Points[static_cast<std::size_t>(point)];
        }
    }
    m_Solid.CalcNormals();
}

void LiteralTwoStep::Step()
{
    FindFeet();
    SelectFeet();
    SplitFaces();
    Update();
    m_Solid.CalcNormals();
}

void LiteralTwoStep::FindFeet()
{
    m_FootPoints.clear();
    m_FootPointIndex.clear();
    for (DSFace* face : m_Solid.GetFaceList())
    {
        face->GetTagList().clear();
    }
    int misses = 0;
    for (std::size_t i = 0; i < m_Points.size(); ++i)
    {
        if (m_PointOwner[i] >= 0)
        {
            continue;
        }
        const std::optional<Foot> foot = FindFootLiterally(m_Solid, kTwoStepFeet, m_Points[i], m_Console);
        if (!foot)
        {
            ++misses;
            continue;
        }
        foot->face->GetTagList().push_back(static_cast<std::int32_t>(m_FootPoints.size()));
        m_FootPoints.push_back(foot->point);
        m_FootPointIndex.push_back(static_cast<std::int32_t>(i));
    }
    m_Console += "Calculate footpoint ok..\nThere are " + std::to_string(misses) +
                 "points cannot find projection point..\n";
}

void LiteralTwoStep::SelectFeet()
{
    for (DSFace* face : m_Solid.GetFaceList())
    {
        face->GetTag() = -1;
        double best = 0.0;
        const smVec3d* shown = nullptr;
        for (const std::int32_t f : face->GetTagList())
        {
            const smVec3d& foot = m_FootPoints[static_cast<std::size_t>(f)];
            const smVec3d& p =
                m_Points[static_cast<std::size_t>(m_FootPointIndex[static_cast<std::size_t>(f)])];
            const double measure = (foot - p).Length() * (foot - face->CalcCentroid()).Length();
            if (face->GetTag() < 0 || measure < best)
            {
                best = measure;
                face->GetTag() = f;
            }
            shown = &foot;
        }
        if (shown != nullptr)
        {
            const auto winner = static_cast<std::size_t>(face->GetTag());
            m_Projected[static_cast<std::size_t>(m_FootPointIndex[winner])] = *shown;
        }
    }
}

void LiteralTwoStep::SplitFaces()
{
    ACTEuler euler(&m_Elements);
    const std::size_t F = m_Solid.GetFaceList().size();
    for (std::size_t i = 0; i < F; ++i)
    {
        DSFace* face = m_Solid.GetFaceList()[i];
        if (face->GetTag() < 0)
        {
            continue;
        }
        const smVec3d f = m_FootPoints[static_cast<std::size_t>(face->GetTag())];
        const std::int32_t q = m_FootPointIndex[static_cast<std::size_t>(face->GetTag())];
        DSHalfEdge* h0 = face->GetLoopList()[0]->GetHalfEdge();
        DSHalfEdge* h1 = h0->GetNext();
        DSHalfEdge* h2 = h1->GetNext();
        const smVec3d t0 = PlaceOf(h0);
        const smVec3d t1 = PlaceOf(h1);
        const smVec3d t2 = PlaceOf(h2);
        const double A = DoubleArea(t0, t1, t2);
        const double b0 = (t1 - f).Cross(t2 - f).Length() / A;
        const double b1 = (t2 - f).Cross(t0 - f).Length() / A;
        const double b2 = (t0 - f).Cross(t1 - f).Length() / A;
        const double limit = 0.0001;
        std::uint32_t w = 0;
        std::uint32_t newFace = 0;
        if (b0 >= limit && b1 >= limit && b2 >= limit)
        {
            const std::uint32_t v0 = h0->GetVertex()->GetID();
            const std::uint32_t v1 = h1->GetVertex()->GetID();
            const std::uint32_t v2 = h2->GetVertex()->GetID();
            euler.MEVStrut(m_Solid.GetID(), face->GetID(), v0, w, f);
            euler.MEF(m_Solid.GetID(), face->GetID(), newFace, w, v1);
            euler.MEF(m_Solid.GetID(), face->GetID(), newFace, w, v2);
        }
        else
        {
            DSHalfEdge* h = b0 < limit ? h1 : (b1 < limit ? h2 : h0);
            DSHalfEdge* t = h->GetTwin();
            FaceAt(t)->GetTag() = -1;
            euler.LMEV(&m_Solid, h, t->GetNext(), w, f);
            euler.LMEF(&m_Solid, h, h->GetNext()->GetNext(), newFace);
            DSHalfEdge* other = t->GetNext();
            euler.LMEF(&m_Solid, other, other->GetNext()->GetNext(), newFace);
            m_Console += "Edge collapse ok...\n";
        }
        m_PointOwner[static_cast<std::size_t>(q)] = static_cast<std::int32_t>(w);
        m_VertexPoint[w] = q;
        face->GetTag() = -1;
    }
}
}
