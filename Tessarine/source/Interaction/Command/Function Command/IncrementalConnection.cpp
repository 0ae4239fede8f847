#include "IncrementalConnection.h"
#include "ACTEuler.h"
#include "Console.h"
#include "DSBrep.h"
#include "FaceWalk.h"
#include "Failure.h"
#include "File.h"
#include "IOTextOutput.h"
#include "MANBrepElementManager.h"
#include "NearestPoints.h"
#include "Path.h"
#include "SeedProspects.h"
#include "VertexWalk.h"
#include <algorithm>
#include <limits>
#include <unordered_set>

namespace tessarine
{
namespace
{
constexpr std::int32_t kNoFoot = -1;
constexpr std::int32_t kNoFootVertex = -1;

constexpr char kTooFewFeetOnFaces[] = "no face of the model has four feet of the cloud, which a first "
                                      "triangle needs: take a model with fewer faces "
                                      "near the cloud, or a cloud with more points";
constexpr char kNoFirstTriangle[] = "there are faces with four feet of the cloud and more, but no foot makes "
                                    "a first triangle with the one nearest "
                                    "to it: points that come twice make none, nor do points on one line or "
                                    "far apart; remove the doubles from the "
                                    "cloud, or take one with more points";

bool IsSolidThere(const MANBrepElementManager& manager, const DSSolid* pSolid, std::uint32_t id)
{
    const std::size_t index = id & ~ElementKind::Solid;
    return index < manager.GetSolidArray().size() && manager.GetSolidArray()[index] == pSolid;
}

/// Both turn around their vertex until the smaller fan is through.
bool AreJoined(const DSVertex& first, const DSVertex& second)
{
    VertexWalk atFirst(first.GetHalfEdge());
    VertexWalk atSecond(second.GetHalfEdge());
    for (; !atFirst.IsAtEnd() && !atSecond.IsAtEnd(); atFirst.Step(), atSecond.Step())
    {
        if (atFirst.Get()->GetNext()->GetVertex() == &second ||
            atSecond.Get()->GetNext()->GetVertex() == &first)
        {
            return true;
        }
    }
    return false;
}

std::int32_t AsSignedID(std::uint32_t id)
{
    return static_cast<std::int32_t>(id);
}

/// What lies beyond an edge of the rim: its border stands upright on the plane of a triangle.
struct HalfSpace
{
    smVec3d corner; ///< on the border
    smVec3d outward;
    std::int32_t endVertex; ///< on the border as well, but for rounding

    bool Has(const smVec3d& p) const { return (p - corner).Dot(outward) >= 0.0; }
};

/// Beyond an open edge, and beyond the edges before and behind it on the rim where they turn outward, all by the plane
/// of the triangle at the edge: what lies there covers nothing of the triangles at these edges.
std::vector<HalfSpace> HalfSpacesAt(const DSHalfEdge& open)
{
    const DSVertex& before = *open.GetPrev()->GetVertex();
    const DSVertex& end = *open.GetNext()->GetVertex();
    const DSVertex& behind = *open.GetNext()->GetNext()->GetVertex();
    const smVec3d& a = open.GetVertex()->GetPosition();
    const smVec3d& b = end.GetPosition();
    const smVec3d& c = open.GetTwin()->GetPrev()->GetVertex()->GetPosition();
    const smVec3d normal = (b - a).Cross(c - a);
    const HalfSpace beyondEdge{a, (b - a).Cross(normal), AsSignedID(end.GetID())};
    std::vector<HalfSpace> spaces{beyondEdge};
    if (beyondEdge.Has(before.GetPosition()))
    {
        spaces.push_back({a, (a - before.GetPosition()).Cross(normal), AsSignedID(before.GetID())});
    }
    if (beyondEdge.Has(behind.GetPosition()))
    {
        spaces.push_back({b, (behind.GetPosition() - b).Cross(normal), AsSignedID(behind.GetID())});
    }
    return spaces;
}

std::int32_t CutToInteger(double value)
{
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp(value, static_cast<double>(Limits::min()), static_cast<double>(Limits::max())));
}

/// How many, and a number of each, a line each.
template <class TList, class TNumber>
void WriteNumbers(IOTextOutput& out, const TList& list, TNumber numberOf)
{
    out << static_cast<std::int32_t>(list.size()) << "\n";
    for (const auto& entry : list)
    {
        out << numberOf(entry) << "\n";
    }
}
}

double IncrementalConnection::TriangleCost(const smVec3d& a, const smVec3d& b, const smVec3d& c)
{
    constexpr double kShapeWeight = 0.01;
    constexpr double kLengthWeight = 1.0;
    const double area = (a - b).Cross(b - c).Length();
    const double ac = (a - c).Length();
    const double bc = (b - c).Length();
    const double longest = std::max({bc, ac, (a - b).Length()});
    return kShapeWeight * longest * longest / area + kLengthWeight * (ac + bc);
}

void IncrementalConnection::Begin(MANBrepElementManager* pManager, DSSolid* pSolid, FootList feet)
{
    ASSERT(pManager != nullptr && pSolid != nullptr);
    *this = {};
    m_pManager = pManager;
    m_pSolid = pSolid;
    m_nSolidID = pSolid->GetID();
    m_nOldFaces = pSolid->GetFaceList().size();
    for (const DSVertex* pVertex : pSolid->GetVertexList())
    {
        m_OldPositions.push_back(pVertex->GetPosition());
    }
    m_Feet = std::move(feet);
    m_FootVertex.assign(m_Feet.points.size(), kNoFootVertex);
}

void IncrementalConnection::MakeSeed()
{
    constexpr std::size_t kTooFewFeet = 3;
    ASSERT(m_pSolid != nullptr && m_pNewSolid == nullptr);
    DebugConsole() << "The size of projection points: " << m_Feet.points.size() << '\n';
    std::optional<Seed> seed;
    bool hasEnoughFeet = false;
    for (DSFace* pFace : m_pSolid->GetFaceList())
    {
        if (pFace->GetTagList().size() <= kTooFewFeet)
        {
            continue;
        }
        hasEnoughFeet = true;
        DebugConsole() << "Size of projection points: " << pFace->GetTagList().size() << '\n';
        seed = FindSeed(*pFace);
        if (seed)
        {
            m_NearFaces.push_back(pFace);
            break;
        }
    }
    ASSERT_VALUE(seed.has_value());
    if (!seed)
    {
        throw Failure(hasEnoughFeet ? kNoFirstTriangle : kTooFewFeetOnFaces);
    }
    BuildSeed(*seed, m_NearFaces.front()->ComputeNormal());
}

std::optional<IncrementalConnection::Seed> IncrementalConnection::FindSeed(const DSFace& face) const
{
    const FootIndices& feet = face.GetTagList();
    SeedProspects prospects(PointsOf(feet));
    for (std::size_t i = 0; i < feet.size(); ++i)
    {
        if (!prospects.MayStartAt(PointOf(feet[i])))
        {
            continue;
        }
        const auto offset = static_cast<std::ptrdiff_t>(i);
        FootIndices others = feet;
        others.erase(others.begin() + offset);
        const smVec3d& a = PointOf(feet[i]);
        const std::size_t nearest = NearestFoot(a, others);
        const std::int32_t second = others[nearest];
        others.erase(others.begin() + static_cast<std::ptrdiff_t>(nearest));
        const std::int32_t third = BestThird(a, PointOf(second), others);
        if (third != kNoFoot)
        {
            return Seed{feet[i], second, third};
        }
    }
    return std::nullopt;
}

std::vector<smVec3d> IncrementalConnection::PointsOf(const FootIndices& feet) const
{
    std::vector<smVec3d> points;
    points.reserve(feet.size());
    for (const std::int32_t foot : feet)
    {
        points.push_back(PointOf(foot));
    }
    return points;
}

/// The place in the list.
std::size_t IncrementalConnection::NearestFoot(const smVec3d& point, const FootIndices& feet) const
{
    return static_cast<std::size_t>(NearestPoints(PointsOf(feet)).Find(point, 1).front());
}

/// The earliest of the cheapest.
std::int32_t IncrementalConnection::BestThird(const smVec3d& a, const smVec3d& b,
                                              const FootIndices& feet) const
{
    std::int32_t best = kNoFoot;
    double least = kCostLimit;
    for (const std::int32_t foot : feet)
    {
        const double cost = TriangleCost(a, b, PointOf(foot));
        if (cost < least) // no number is not
        {
            least = cost;
            best = foot;
        }
    }
    return best;
}

/// @param normal of the face that the seed lies on
void IncrementalConnection::BuildSeed(const Seed& seed, const smVec3d& normal)
{
    const smVec3d& a = PointOf(seed[0]);
    const smVec3d& b = PointOf(seed[1]);
    const smVec3d& c = PointOf(seed[2]);
    ACTEuler euler(m_pManager);
    std::uint32_t outerFace = 0;
    std::uint32_t seedFace = 0;
    std::array<std::uint32_t, 3> corners{};
    euler.MVFS(m_nNewSolidID, outerFace, corners[0], a);
    euler.MEVStrut(m_nNewSolidID, outerFace, corners[0], corners[1], b);
    euler.MEVStrut(m_nNewSolidID, outerFace, corners[1], corners[2], c);
    const bool agrees = normal.Dot((b - a).Cross(c - a)) > 0.0;
    euler.MEF(m_nNewSolidID, outerFace, seedFace, agrees ? corners[0] : corners[2],
              agrees ? corners[2] : corners[0]);

    m_pNewSolid = m_pManager->GetSolid(m_nNewSolidID);
    m_pSeedFace = m_pManager->GetFace(seedFace);
    m_pOuterLoop = m_pManager->GetFace(outerFace)->GetLoopList()[0];
    CalcNormals();
    for (std::size_t i = 0; i < seed.size(); ++i)
    {
        VertexOf(seed[i]) = AsSignedID(corners[i]);
    }
    DebugConsole() << "Set vIndex: (" << seed[0] << ',' << seed[1] << ',' << seed[2] << ")\n";
    ForEachHalfEdge(*m_pSeedFace, [this](DSHalfEdge& h) { m_FrontEdges.push_back(h.GetEdge()); });
}

void IncrementalConnection::CalcNormals()
{
    ASSERT(m_pNewSolid != nullptr);
    for (DSFace* pFace : m_pNewSolid->GetFaceList())
    {
        pFace->CalcNormal();
    }
    bool isReported = false;
    for (DSVertex* pVertex : m_pNewSolid->GetVertexList())
    {
        smVec3d sum;
        for (VertexWalk walk(pVertex->GetHalfEdge()); !walk.IsAtEnd(); walk.Step())
        {
            sum += walk.Get()->GetLoop()->GetFace()->GetNormal();
        }
        const bool cancelsOut = !(sum.Length() > smVec3d_zero);
        if (!cancelsOut || !isReported)
        {
            sum.Normalize(); // reports
        }
        isReported = isReported || cancelsOut;
        pVertex->GetNormal() = cancelsOut ? smVec3d() : sum;
    }
}

/// The half-edge of the outer loop, or null where there are triangles on both sides.
DSHalfEdge* IncrementalConnection::FindOpenSide(const DSEdge& edge) const
{
    for (DSHalfEdge* h : {edge.GetHalfEdge1(), edge.GetHalfEdge2()})
    {
        if (h->GetLoop() == m_pOuterLoop)
        {
            return h;
        }
    }
    return nullptr;
}

void IncrementalConnection::ConnectNext()
{
    if (m_FrontEdges.empty())
    {
        return;
    }
    const DSEdge& edge = *m_FrontEdges.front();
    const std::int32_t foot = FindCandidate(edge);
    if (foot == kNoFoot)
    {
        DebugConsole() << "Cannot find point!" << '\n';
        m_FrontEdges.pop_front();
        return;
    }
    m_NearFaces.assign(1, m_Feet.faces[static_cast<std::size_t>(foot)]);
    ConnectEdge(FindOpenSide(edge), foot);
    m_FrontEdges.pop_front();
    ++m_nFaces;
    DebugConsole() << "The number of faces created: " << m_nFaces + 1 << '\n';
}

std::int32_t IncrementalConnection::FindCandidate(const DSEdge& edge)
{
    m_Candidates.clear();
    const DSHalfEdge* pOpen = FindOpenSide(edge);
    if (pOpen == nullptr)
    {
        return kNoFoot; // closed from another edge meanwhile
    }
    BuildCandidates(*pOpen);
    return BestThird(pOpen->GetVertex()->GetPosition(), pOpen->GetNext()->GetVertex()->GetPosition(),
                     m_Candidates);
}

/// Those of the faces within a ring of vertices around the near ones.
void IncrementalConnection::GatherNearFeet()
{
    std::vector<const DSFace*> faces(m_NearFaces.begin(), m_NearFaces.end());
    std::unordered_set<const DSFace*> listed(m_NearFaces.begin(), m_NearFaces.end());
    const auto addFacesAround = [&](const DSHalfEdge& corner)
    {
        for (VertexWalk walk(corner.GetVertex()->GetHalfEdge()); !walk.IsAtEnd(); walk.Step())
        {
            const DSFace* pFace = walk.Get()->GetLoop()->GetFace();
            if (listed.insert(pFace).second)
            {
                faces.push_back(pFace);
            }
        }
    };
    for (const DSFace* pNear : m_NearFaces)
    {
        ForEachHalfEdge(*pNear, addFacesAround);
    }
    for (const DSFace* pFace : faces)
    {
        m_Candidates.insert(m_Candidates.end(), pFace->GetTagList().begin(), pFace->GetTagList().end());
    }
}

void IncrementalConnection::BuildCandidates(const DSHalfEdge& open)
{
    GatherNearFeet();
    DebugConsole() << "Before remove: " << m_Candidates.size() << '\n'
                   << "The number of vertexes have been created is: " << CountCandidatesWithVertex() << '\n';

    const std::vector<HalfSpace> spaces = HalfSpacesAt(open);
    std::erase_if(m_Candidates,
                  [&](std::int32_t foot)
                  {
                      return std::any_of(spaces.begin(), spaces.end(),
                                         [&](const HalfSpace& space) {
                                             return space.endVertex != VertexOf(foot) &&
                                                    !space.Has(PointOf(foot));
                                         });
                  });

    DebugConsole() << "After remove: " << m_Candidates.size() << '\n'
                   << "The vertex number: " << CountCandidatesWithVertex() << '\n';
}

std::size_t IncrementalConnection::CountCandidatesWithVertex() const
{
    return static_cast<std::size_t>(std::count_if(
        m_Candidates.begin(), m_Candidates.end(),
        [this](std::int32_t foot) { return m_FootVertex[static_cast<std::size_t>(foot)] != kNoFootVertex; }));
}

void IncrementalConnection::ConnectEdge(DSHalfEdge* pOpen, std::int32_t foot)
{
    ASSERT(foot >= 0);
    if (VertexOf(foot) == kNoFootVertex)
    {
        ConnectNewVertex(pOpen, foot);
        return;
    }
    if (!CloseTriangle(pOpen, *m_pManager->GetVertex(static_cast<std::uint32_t>(VertexOf(foot)))))
    {
        DebugConsole() << "Connect the two faces.." << '\n';
    }
    DebugConsole() << "The point has a vertex already.." << '\n';
}

void IncrementalConnection::ConnectNewVertex(DSHalfEdge* pOpen, std::int32_t foot)
{
    ACTEuler euler(m_pManager);
    std::uint32_t vertex = 0;
    std::uint32_t face = 0;
    euler.LMEV(m_pNewSolid, pOpen, pOpen, vertex, PointOf(foot));
    DSHalfEdge* pBack = pOpen->GetPrev(); // from the new vertex
    euler.LMEF(m_pNewSolid, pBack, pOpen->GetNext(), face);
    VertexOf(foot) = AsSignedID(vertex);
    m_FrontEdges.push_back(pBack->GetEdge());
    m_FrontEdges.push_back(m_pNewSolid->GetEdgeList().back());
}

/// Joins two corners of the outer loop, where that makes a triangle and no second edge between them.
bool IncrementalConnection::CloseTriangle(DSHalfEdge* pOpen, const DSVertex& third)
{
    DSHalfEdge* pNext = pOpen->GetNext();
    DSHalfEdge* pBefore = pOpen->GetPrev();
    ACTEuler euler(m_pManager);
    std::uint32_t face = 0;
    if (pNext->GetNext()->GetVertex() == &third && !AreJoined(*pOpen->GetVertex(), third))
    {
        euler.LMEF(m_pNewSolid, pOpen, pNext->GetNext(), face);
    }
    else if (pBefore->GetVertex() == &third && !AreJoined(third, *pNext->GetVertex()))
    {
        euler.LMEF(m_pNewSolid, pBefore, pNext, face);
    }
    else
    {
        return false;
    }
    m_FrontEdges.push_back(m_pNewSolid->GetEdgeList().back());
    return true;
}

bool IncrementalConnection::IsModelUnchanged() const
{
    return AreSolidsThere() && AreVerticesInPlace() && HaveFacesTheirFeet();
}

bool IncrementalConnection::AreSolidsThere() const
{
    return IsSolidThere(*m_pManager, m_pSolid, m_nSolidID) &&
           IsSolidThere(*m_pManager, m_pNewSolid, m_nNewSolidID) &&
           m_pSolid->GetFaceList().size() == m_nOldFaces &&
           m_pSolid->GetVertexList().size() == m_OldPositions.size();
}

bool IncrementalConnection::AreVerticesInPlace() const
{
    constexpr double kRounding = 1e-6; // of single precision in the cube from -1 to 1
    return std::equal(m_OldPositions.begin(), m_OldPositions.end(), m_pSolid->GetVertexList().begin(),
                      [](const smVec3d& position, const DSVertex* pVertex)
                      { return (pVertex->GetPosition() - position).Length() <= kRounding; });
}

bool IncrementalConnection::HaveFacesTheirFeet() const
{
    std::size_t feet = 0;
    for (const DSFace* pFace : m_pSolid->GetFaceList())
    {
        std::int32_t last = kNoFoot;
        for (const std::int32_t foot : pFace->GetTagList())
        {
            if (foot <= last || static_cast<std::size_t>(foot) >= m_Feet.faces.size() ||
                m_Feet.faces[static_cast<std::size_t>(foot)] != pFace)
            {
                return false;
            }
            last = foot;
            ++feet;
        }
    }
    return feet == m_Feet.faces.size();
}

void IncrementalConnection::SaveEnvironment(const std::vector<bool>& pointDone) const
{
    ASSERT(m_pNewSolid != nullptr);
    const auto idOf = [](const DSElement* pElement) { return AsSignedID(pElement->GetID()); };
    ReplacingFile file(ResolveForWriting("data\\SmoothEnvionment.data"));
    IOTextOutput out([&file](std::string_view text) { file.Write(text); });
    out << idOf(m_pNewSolid) << "\n" << idOf(m_pSeedFace) << "\n";
    WriteNumbers(out, m_FrontEdges, idOf);
    WriteNumbers(out, m_NearFaces, idOf);
    out << static_cast<std::int32_t>(m_Feet.points.size()) << "\n";
    for (const smVec3d& foot : m_Feet.points)
    {
        out << CutToInteger(foot.x) << " " << CutToInteger(foot.y) << " " << CutToInteger(foot.z) << "\n";
    }
    WriteNumbers(out, m_FootVertex, [](std::int32_t id) { return id; });
    WriteNumbers(out, m_Feet.faces, idOf);
    WriteNumbers(out, pointDone, [](bool isDone) { return static_cast<std::int32_t>(isDone); });
    out.Flush();
    file.Commit();
}
}
