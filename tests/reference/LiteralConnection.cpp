#include "LiteralConnection.h"
#include "ACTEuler.h"
#include "MeshWalks.h"
#include <algorithm>
#include <cmath>

namespace tessarine
{
namespace
{
double CostLiterally(const smVec3d& a, const smVec3d& b, const smVec3d& c)
{
    const double area = (a - b).Cross(b - c).Length();
    const double longest = std::max(std::max((b - c).Length(), (a - c).Length()), (a - b).Length());
    return 0.01 * longest * longest / area + 1.0 * ((a - c).Length() + (b - c).Length());
}

/// The part of a way along a plane, at right angles to a line in it.
smVec3d AcrossLine(const smVec3d& way, const smVec3d& line)
{
    const smVec3d unit = line / line.Length();
    return way - way.Dot(unit) * unit;
}
}

LiteralConnection::LiteralConnection(MANBrepElementManager& elements, DSSolid& solid, FootList feet)
    : m_Elements(elements), m_Solid(solid), m_Feet(std::move(feet)), m_FootVertex(m_Feet.points.size(), -1)
{
}

bool LiteralConnection::MakeSeed()
{
    m_Console += "The size of projection points: " + std::to_string(m_Feet.points.size()) + "\n";
    for (DSFace* face : m_Solid.GetFaceList())
    {
        const std::vector<std::int32_t>& tags = face->GetTagList();
        if (tags.size() <= 3)
        {
            continue;
        }
        m_Console += "Size of projection points: " + std::to_string(tags.size()) + "\n";
        for (const std::int32_t a : tags)
        {
            std::vector<std::int32_t> others;
            std::copy_if(tags.begin(), tags.end(), std::back_inserter(others),
                         [a](std::int32_t other) { return other != a; });
            const std::int32_t b = FindNearest(PointOf(a), others);
            others.erase(std::find(others.begin(), others.end(), b));
            const std::int32_t c = FindThird(PointOf(a), PointOf(b), others);
            if (c >= 0)
            {
                m_NearFaces.push_back(face);
                BuildSeed(a, b, c, *face);
                return true;
            }
        }
    }
    return false;
}

std::int32_t LiteralConnection::FindNearest(const smVec3d& point, const std::vector<std::int32_t>& feet) const
{
    std::vector<smVec3d> points;
    for (const std::int32_t foot : feet)
    {
        points.push_back(PointOf(foot));
    }
    return feet[static_cast<std::size_t>(NearestPoints(points).Find(point, 1).front())];
}

std::int32_t LiteralConnection::FindThird(const smVec3d& a, const smVec3d& b,
                                          const std::vector<std::int32_t>& feet) const
{
    std::int32_t best = -1;
    double least = HUGE_VAL;
    for (const std::int32_t foot : feet)
    {
        if (CostLiterally(a, b, PointOf(foot)) < least)
        {
            best = foot;
            least = CostLiterally(a, b, PointOf(foot));
        }
    }
    return least >= 1.0 ? -1 : best;
}

void LiteralConnection::BuildSeed(std::int32_t a, std::int32_t b, std::int32_t c, const DSFace& face)
{
    ACTEuler euler(&m_Elements);
    std::uint32_t va = 0;
    std::uint32_t vb = 0;
    std::uint32_t vc = 0;
    std::uint32_t seed = 0;
    euler.MVFS(m_nNewSolid, m_nOuterFace, va, PointOf(a));
    euler.MEVStrut(m_nNewSolid, m_nOuterFace, va, vb, PointOf(b));
    euler.MEVStrut(m_nNewSolid, m_nOuterFace, vb, vc, PointOf(c));
    const smVec3d n = face.ComputeNormal();
    if (n.Dot((PointOf(b) - PointOf(a)).Cross(PointOf(c) - PointOf(a))) > 0.0)
    {
        euler.MEF(m_nNewSolid, m_nOuterFace, seed, va, vc);
    }
    else
    {
        euler.MEF(m_nNewSolid, m_nOuterFace, seed, vc, va);
    }
    CalcNormals();
    m_FootVertex[static_cast<std::size_t>(a)] = static_cast<std::int32_t>(va);
    m_FootVertex[static_cast<std::size_t>(b)] = static_cast<std::int32_t>(vb);
    m_FootVertex[static_cast<std::size_t>(c)] = static_cast<std::int32_t>(vc);
    m_Console +=
        "Set vIndex: (" + std::to_string(a) + "," + std::to_string(b) + "," + std::to_string(c) + ")\n";
    for (const DSHalfEdge* h : OuterLoopOf(*m_Elements.GetFace(seed)))
    {
        m_FrontEdges.push_back(h->GetEdge());
    }
}

/// The side whose face is the outer one.
const DSHalfEdge* LiteralConnection::FindOpen(const DSEdge& edge) const
{
    const auto isOuter = [this](const DSHalfEdge* h)
    { return h->GetLoop()->GetFace()->GetID() == m_nOuterFace; };
    if (isOuter(edge.GetHalfEdge1()))
    {
        return edge.GetHalfEdge1();
    }
    return isOuter(edge.GetHalfEdge2()) ? edge.GetHalfEdge2() : nullptr;
}

void LiteralConnection::ConnectNext()
{
    if (m_FrontEdges.empty())
    {
        return;
    }
    const DSEdge& edge = *m_FrontEdges.front();
    const std::int32_t foot = FindCandidate(edge);
    if (foot < 0)
    {
        m_Console += "Cannot find point!\n";
        m_FrontEdges.erase(m_FrontEdges.begin());
        return;
    }
    m_NearFaces = {m_Feet.faces[static_cast<std::size_t>(foot)]};
    ConnectEdge(*FindOpen(edge), foot);
    m_FrontEdges.erase(m_FrontEdges.begin());
    m_nFaces += 1;
    m_Console += "The number of faces created: " + std::to_string(m_nFaces + 1) + "\n";
    CalcNormals();
}

std::int32_t LiteralConnection::FindCandidate(const DSEdge& edge)
{
    const DSHalfEdge* open = FindOpen(edge);
    if (open == nullptr)
    {
        return -1;
    }
    BuildCandidates(*open);
    return FindThird(open->GetVertex()->GetPosition(), open->GetTwin()->GetVertex()->GetPosition(),
                     m_Candidates);
}

int LiteralConnection::CountWithVertex() const
{
    int count = 0;
    for (const std::int32_t foot : m_Candidates)
    {
        count += m_FootVertex[static_cast<std::size_t>(foot)] >= 0 ? 1 : 0;
    }
    return count;
}

void LiteralConnection::BuildCandidates(const DSHalfEdge& open)
{
    m_Candidates.clear();
    std::vector<DSFace*> faces = m_NearFaces;
    for (const DSFace* near : m_NearFaces)
    {
        for (const DSHalfEdge* corner : OuterLoopOf(*near))
        {
            for (DSFace* face : FacesAround(*corner->GetVertex()))
            {
                if (std::find(faces.begin(), faces.end(), face) == faces.end())
                {
                    faces.push_back(face);
                }
            }
        }
    }
    for (const DSFace* face : faces)
    {
        for (const std::int32_t foot : face->GetTagList())
        {
            m_Candidates.push_back(foot);
        }
    }
    m_Console += "Before remove: " + std::to_string(m_Candidates.size()) + "\n";
    m_Console += "The number of vertexes have been created is: " + std::to_string(CountWithVertex()) + "\n";

    const DSVertex& va = *open.GetVertex();
    const DSVertex& vb = *open.GetTwin()->GetVertex();
    const DSVertex& before = *open.GetPrev()->GetVertex();
    const DSVertex& behind = *open.GetNext()->GetTwin()->GetVertex();
    const smVec3d& a = va.GetPosition();
    const smVec3d& b = vb.GetPosition();
    const smVec3d& c = open.GetTwin()->GetPrev()->GetVertex()->GetPosition();
    smVec3d normal = (b - a).Cross(c - a);
    normal.Normalize();
    const smVec3d inward = AcrossLine(c - a, b - a);
    const auto isBehindLine = [&](const smVec3d& p, const smVec3d& from, const smVec3d& to)
    {
        smVec3d right = (to - from).Cross(normal);
        right.Normalize();
        return (p - from).Dot(right) < 0.0;
    };
    const auto isOn = [this](std::int32_t foot, const DSVertex& vertex)
    { return m_FootVertex[static_cast<std::size_t>(foot)] == static_cast<std::int32_t>(vertex.GetID()); };
    // A corner on a line is on no side of it, whatever rounding says.
    for (std::size_t i = 0; i < m_Candidates.size();)
    {
        const std::int32_t foot = m_Candidates[i];
        const smVec3d& p = PointOf(foot);
        bool goes = !isOn(foot, va) && !isOn(foot, vb) && (p - a).Dot(inward) > 0.0;
        if (!isBehindLine(before.GetPosition(), a, b))
        {
            goes =
                goes || (!isOn(foot, before) && !isOn(foot, va) && isBehindLine(p, before.GetPosition(), a));
        }
        if (!isBehindLine(behind.GetPosition(), a, b))
        {
            goes =
                goes || (!isOn(foot, vb) && !isOn(foot, behind) && isBehindLine(p, b, behind.GetPosition()));
        }
        if (goes)
        {
            m_Candidates.erase(m_Candidates.begin() + static_cast<std::ptrdiff_t>(i));
        }
        else
        {
            ++i;
        }
    }
    m_Console += "After remove: " + std::to_string(m_Candidates.size()) + "\n";
    m_Console += "The vertex number: " + std::to_string(CountWithVertex()) + "\n";
}

bool LiteralConnection::HasEdge(std::uint32_t v1, std::uint32_t v2) const
{
    const DSSolid* solid = m_Elements.GetSolid(m_nNewSolid);
    return std::any_of(solid->GetEdgeList().begin(), solid->GetEdgeList().end(),
                       [=](const DSEdge* edge)
                       {
                           const std::uint32_t from = edge->GetHalfEdge1()->GetVertex()->GetID();
                           const std::uint32_t to = edge->GetHalfEdge2()->GetVertex()->GetID();
                           return (from == v1 && to == v2) || (from == v2 && to == v1);
                       });
}

void LiteralConnection::ConnectEdge(const DSHalfEdge& open, std::int32_t foot)
{
    ACTEuler euler(&m_Elements);
    std::uint32_t face = 0;
    const std::uint32_t a = open.GetVertex()->GetID();
    const std::uint32_t b = open.GetTwin()->GetVertex()->GetID();
    const DSFace* outer = m_Elements.GetFace(m_nOuterFace);
    std::int32_t& footVertex = m_FootVertex[static_cast<std::size_t>(foot)];
    if (footVertex < 0)
    {
        std::uint32_t x = 0;
        euler.MEVStrut(m_nNewSolid, m_nOuterFace, a, x, PointOf(foot));
        euler.MEF(m_nNewSolid, m_nOuterFace, face, x, b);
        footVertex = static_cast<std::int32_t>(x);
        m_FrontEdges.push_back(m_Elements.FindFaceEdge(outer, x, a));
        m_FrontEdges.push_back(m_Elements.FindFaceEdge(outer, x, b));
        return;
    }
    const auto w = static_cast<std::uint32_t>(footVertex);
    if (open.GetNext()->GetNext()->GetVertex()->GetID() == w && !HasEdge(a, w))
    {
        euler.MEF(m_nNewSolid, m_nOuterFace, face, a, w);
        m_FrontEdges.push_back(m_Elements.FindFaceEdge(outer, a, w));
    }
    else if (open.GetPrev()->GetVertex()->GetID() == w && !HasEdge(w, b))
    {
        euler.MEF(m_nNewSolid, m_nOuterFace, face, w, b);
        m_FrontEdges.push_back(m_Elements.FindFaceEdge(outer, w, b));
    }
    else
    {
        m_Console += "Connect the two faces..\n";
    }
    m_Console += "The point has a vertex already..\n";
}

void LiteralConnection::CalcNormals()
{
    DSSolid* solid = m_Elements.GetSolid(m_nNewSolid);
    for (DSFace* face : solid->GetFaceList())
    {
        face->CalcNormal();
    }
    for (DSVertex* vertex : solid->GetVertexList())
    {
        smVec3d sum;
        for (const DSFace* face : FacesAround(*vertex))
        {
            sum += face->GetNormal();
        }
        vertex->GetNormal() = smVec3d();
        if (sum.Length() > smVec3d_zero)
        {
            sum.Normalize();
            vertex->GetNormal() = sum;
        }
    }
}
}
