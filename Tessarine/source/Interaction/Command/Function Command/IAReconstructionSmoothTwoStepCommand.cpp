#include "IAReconstructionSmoothTwoStepCommand.h"
#include "Angles.h"
#include "Console.h"
#include "EdgeSwaps.h"
#include "Failure.h"
#include "LeastSquaresSystem.h"
#include "MANBrepElementManager.h"
#include "Open3DView.h"
#include "Platform.h"
#include "SwapTests.h"
#include "TriangleSurgery.h"
#include "Umbrellas.h"
#include "VertexMatching.h"
#include "VertexRings.h"
#include <algorithm>
#include <cstdio>
#include <utility>

namespace tessarine
{
namespace
{
constexpr char kPairedCloudFile[] = "Data\\bunny.txta";
constexpr std::int32_t kNotSelected = -1;

/// Runs a stage, and shows how long it took.
template <class TStage>
void RunTimed(TStage stage)
{
    constexpr double kTicksASecond = 1000.0;
    const std::uint64_t begin = GetPlatform().GetTickCount();
    stage();
    char text[32];
    std::snprintf(text, sizeof text, "%.2f",
                  static_cast<double>(GetPlatform().GetTickCount() - begin) / kTicksASecond);
    ShowMessage(text);
}
}

void IAReconstructionSmoothTwoStepCommand::Execute()
{
    TakeClosedSolid();
    NormalizeCurrentSolid();
    LoadPoints(kPairedCloudFile);
    m_pView->GetPointCloud() = m_Points;
    m_pView->GetProjectedPoints() = m_Points;
    m_Pairs.m_PointOwner.assign(m_Points.size(), PointPairs::kNone);
    VertexMatching(m_pElementManager, *m_pSolid, m_Points, m_Pairs, m_pView->GetProjectedPoints()).Run();
    Update();
    m_pSolid->CalcVertexNormals(); // once more
}

/// Other commands may have worked on the solid since.
void IAReconstructionSmoothTwoStepCommand::CheckSolid() const
{
    ASSERT(m_pSolid != nullptr);
    DemandClosed(*m_pSolid);
}

void IAReconstructionSmoothTwoStepCommand::Update()
{
    ASSERT(m_pSolid != nullptr);
    m_OldPositions.clear();
    for (const bool isFirstPass : {true, false})
    {
        for (const auto& [vertexID, point] : m_Pairs.m_VertexPoint)
        {
            DSVertex* pVertex = m_pElementManager->GetVertex(vertexID);
            if (pVertex == nullptr)
            {
                continue;
            }
            if (isFirstPass)
            {
                m_OldPositions.push_back(pVertex->GetPosition());
            }
            if (point >= 0)
            {
                pVertex->GetPosition() = m_Points[static_cast<std::size_t>(point)];
            }
        }
    }
    m_pSolid->CalcNormals();
}

void IAReconstructionSmoothTwoStepCommand::Restore()
{
    ASSERT(m_pSolid != nullptr);
    std::size_t running = 0;
    for (const auto& entry : m_Pairs.m_VertexPoint)
    {
        if (running == m_OldPositions.size())
        {
            throw Failure("the vertices cannot be put back: some have been removed since they were paired "
                          "with points, and "
                          "fewer old positions are known than vertices");
        }
        const smVec3d& position = m_OldPositions[running++];
        if (DSVertex* pVertex = m_pElementManager->GetVertex(entry.first))
        {
            pVertex->GetPosition() = position;
        }
    }
    m_pSolid->CalcNormals();
}

void IAReconstructionSmoothTwoStepCommand::RestoreState(State&& state) noexcept
{
    m_Pairs = std::move(state.pairs);
    m_OldPositions = std::move(state.oldPositions);
    m_nStep = state.stepCount;
}

void IAReconstructionSmoothTwoStepCommand::Step()
{
    CheckSolid();
    ShowCloud();
    RunTimed([this] { FindFeet(); });
    RunTimed([this] { SelectFeet([this](DSFace& face) { SelectFoot(face); }); });
    RunTimed([this] { SplitFaces(false); });
    SayWhereNoSphere("After sub Self Intersection!");
    ++m_nStep;
    Update();
    SayWhereNoSphere("After update Self Intersection!");
    m_pSolid->CalcVertexNormals(); // once more
}

void IAReconstructionSmoothTwoStepCommand::SayWhereNoSphere(const char* text) const
{
    if (!IsAngleSumOfSphere(*m_pSolid, SumCornerAngles(*m_pSolid)))
    {
        ShowMessage(text);
    }
}

void IAReconstructionSmoothTwoStepCommand::FindFeet()
{
    FootSearch search(*m_pSolid, kTwoStepFeet);
    FootList feet = CalculateFootPoints(
        *m_pSolid, m_Points, [this](std::size_t point) { return m_Pairs.IsFree(point); }, search, nullptr);
    m_FootPoints = std::move(feet.points);
    m_FootPointIndex = std::move(feet.cloudIndices);
}

void IAReconstructionSmoothTwoStepCommand::SelectFeet(const std::function<void(DSFace& face)>& select)
{
    for (DSFace* pFace : m_pSolid->GetFaceList())
    {
        pFace->GetTag() = kNotSelected;
        if (!pFace->GetTagList().empty())
        {
            select(*pFace);
        }
    }
}

/// Kept: what is shown for the winner's point is the foot that was looked at last.
void IAReconstructionSmoothTwoStepCommand::SelectFoot(DSFace& face)
{
    const smVec3d centroid = face.CalcCentroid();
    double best = 0.0;
    for (const std::int32_t tag : face.GetTagList())
    {
        const auto index = static_cast<std::size_t>(tag);
        const smVec3d& foot = m_FootPoints[index];
        const smVec3d& point = m_Points[static_cast<std::size_t>(m_FootPointIndex[index])];
        const double measure = (foot - point).Length() * (foot - centroid).Length();
        if (face.GetTag() == kNotSelected || measure < best)
        {
            best = measure;
            face.GetTag() = tag;
        }
    }
    const std::int32_t winner = m_FootPointIndex[static_cast<std::size_t>(face.GetTag())];
    m_pView->GetProjectedPoints()[static_cast<std::size_t>(winner)] =
        m_FootPoints[static_cast<std::size_t>(face.GetTagList().back())];
}

void IAReconstructionSmoothTwoStepCommand::SelectFootNearestToCentroid(DSFace& face)
{
    const smVec3d centroid = face.CalcCentroid();
    const auto distanceOf = [&](std::int32_t tag)
    { return (m_FootPoints[static_cast<std::size_t>(tag)] - centroid).Length(); };
    const std::vector<std::int32_t>& tags = face.GetTagList();
    face.GetTag() = *std::min_element(tags.begin(), tags.end(),
                                      [&distanceOf](std::int32_t first, std::int32_t second)
                                      { return distanceOf(first) < distanceOf(second); });
    const auto winner = static_cast<std::size_t>(face.GetTag());
    m_pView->GetProjectedPoints()[static_cast<std::size_t>(m_FootPointIndex[winner])] = m_FootPoints[winner];
}

void IAReconstructionSmoothTwoStepCommand::SplitFaces(bool movesAtOnce)
{
    const ElementList<DSFace>& list = m_pSolid->GetFaceList();
    const std::vector<DSFace*> faces(list.begin(), list.end()); // new ones are not visited
    for (DSFace* pFace : faces)
    {
        if (pFace->GetTag() < 0)
        {
            continue;
        }
        const auto index = static_cast<std::size_t>(pFace->GetTag());
        const auto point = static_cast<std::size_t>(m_FootPointIndex[index]);
        DSVertex* pVertex = SplitAtFoot(*pFace, m_FootPoints[index]);
        if (movesAtOnce)
        {
            pVertex->GetPosition() = m_Points[point];
        }
        m_Pairs.Pair(pVertex->GetID(), point);
        pFace->GetTag() = kNotSelected;
    }
}

/// Near an edge the foot splits that, and with it the face across, which has lost its shape then: its own foot waits
/// for the next step.
DSVertex* IAReconstructionSmoothTwoStepCommand::SplitAtFoot(DSFace& face, const smVec3d& foot)
{
    constexpr double kNearEdge = 0.0001;
    constexpr double kTolerance = 0.00001;
    DSHalfEdge* h0 = face.GetLoopList()[0]->GetHalfEdge();
    DSHalfEdge* h1 = h0->GetNext();
    DSHalfEdge* h2 = h1->GetNext();
    const smVec3d shares = PointInTriangle(foot,
                                           {h0->GetVertex()->GetPosition(), h1->GetVertex()->GetPosition(),
                                            h2->GetVertex()->GetPosition()},
                                           kTolerance)
                               .barycentric;
    TriangleSurgery surgery(m_pElementManager);
    if (shares.x >= kNearEdge && shares.y >= kNearEdge && shares.z >= kNearEdge)
    {
        return surgery.SplitFace(face, foot);
    }
    DSHalfEdge* pNear = shares.x < kNearEdge ? h1 : (shares.y < kNearEdge ? h2 : h0);
    pNear->GetTwin()->GetLoop()->GetFace()->GetTag() = kNotSelected;
    return surgery.SplitEdge(*pNear, foot);
}

void IAReconstructionSmoothTwoStepCommand::RefineStep()
{
    CheckSolid();
    ShowCloud();
    FindFeet();
    SelectFeet([this](DSFace& face) { SelectFootNearestToCentroid(face); });
    SplitFaces(true);
    m_pSolid->CalcNormals();
}

void IAReconstructionSmoothTwoStepCommand::ReportError(double& total, double& max, double& average)
{
    constexpr int kNeighbours = 3;
    constexpr char kLine[] = "*****************************************\n";
    CheckSolid();
    FootVariant variant = kTwoStepFeet;
    variant.neighbours = kNeighbours;
    FootSearch search(*m_pSolid, variant);
    total = 0.0;
    max = 0.0;
    for (std::size_t i = 0; i < m_Points.size(); ++i)
    {
        if (m_Pairs.IsFree(i))
        {
            const std::optional<Foot> foot = search.Find(m_Points[i]);
            const double distance = foot ? foot->distance : search.GetVertexDistance();
            total += distance;
            max = std::max(max, distance);
        }
    }
    average = total / static_cast<double>(m_Points.size());
    DebugConsole() << kLine << "Total Error = " << total << '\n'
                   << "Max Error =  " << max << '\n'
                   << "Average Error = " << average << '\n'
                   << kLine;
}

void IAReconstructionSmoothTwoStepCommand::SwapWhere(bool (*test)(const DSHalfEdge&, const DSHalfEdge&))
{
    CheckSolid();
    const std::size_t swaps = EdgeSwaps(m_pElementManager).SwapWhere(*m_pSolid, test);
    DebugConsole() << "The total number of edges swapped: " << swaps << '\n'
                   << "The edge num:" << m_pSolid->GetEdgeList().size() << '\n';
}

void IAReconstructionSmoothTwoStepCommand::SwapEdges()
{
    SwapWhere(ShouldSwap);
}

void IAReconstructionSmoothTwoStepCommand::SwapEdgesByAngle()
{
    SwapWhere(ShouldSwapByAngle);
}

bool IAReconstructionSmoothTwoStepCommand::CanMoveVertex(const DSVertex& vertex, const smVec3d& target) const
{
    constexpr int kRingsOfVertices = 2;
    constexpr int kRingsOfFaces = 4;
    VertexRings rings;
    rings.Grow(vertex, kRingsOfVertices);
    for (const DSVertex* pOther : rings.GetVertices())
    {
        const std::int32_t point = m_Pairs.FindPoint(pOther->GetID());
        if (point >= 0 && (m_Points[static_cast<std::size_t>(point)] - target)
                                  .Dot(pOther->GetPosition() - vertex.GetPosition()) < 0.0)
        {
            DebugConsole() << "Cannot pass test 1..." << '\n';
            return false;
        }
    }
    rings.Grow(vertex, kRingsOfFaces);
    for (const DSFace* pFace : rings.GetFaces())
    {
        const DSHalfEdge* h = pFace->GetLoopList()[0]->GetHalfEdge();
        const TriangleCorners corners{h->GetVertex()->GetPosition(), h->GetNext()->GetVertex()->GetPosition(),
                                      h->GetPrev()->GetVertex()->GetPosition()};
        if (SegmentHitsTriangle(corners, pFace->ComputeNormal(), vertex.GetPosition(), target))
        {
            DebugConsole() << "cannot pass test 2..." << '\n';
            return false;
        }
    }
    return true;
}

void IAReconstructionSmoothTwoStepCommand::SmoothByCGM()
{
    CheckSolid();
    LeastSquaresSystem system;
    system.SetSize(static_cast<int>(m_pSolid->GetVertexList().size()));
    AddUmbrellas(
        *m_pSolid,
        [this](const DSVertex& vertex)
        {
            const std::int32_t point = m_Pairs.FindPoint(vertex.GetID());
            return point >= 0 ? m_Points[static_cast<std::size_t>(point)] : vertex.GetPosition();
        },
        system);
    DebugConsole() << "Init CGM ok..." << '\n';
    const std::vector<smVec3d> positions = system.Solve();
    std::size_t place = 0;
    for (DSVertex* pVertex : m_pSolid->GetVertexList())
    {
        if (pVertex->GetHalfEdge() != nullptr)
        {
            pVertex->GetPosition() = positions[place];
        }
        ++place;
    }
    m_pSolid->CalcNormals();
}

void IAReconstructionSmoothTwoStepCommand::CollapseByPriority()
{
    CheckSolid();
    EdgeSwaps(m_pElementManager).SwapByPriority(*m_pSolid, kTwoStepSwaps);
}
}
