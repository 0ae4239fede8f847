#include "IASmoothCommand.h"
#include "CloudNormals.h"
#include "Console.h"
#include "DSBrep.h"
#include "FaceCutting.h"
#include "Failure.h"
#include "File.h"
#include "IODatasetText.h"
#include "IOTextOutput.h"
#include "LimitSurfaceFit.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Open3DView.h"
#include "Path.h"
#include "SmoothingTerm.h"
#include <algorithm>
#include <cmath>

namespace tessarine
{
namespace
{
constexpr char kHorseCloud[] = "Data\\horse.txta";
constexpr char kFootPointFile[] = "Data\\CheckFootPoint.data";
constexpr char kCoefficientFile[] = "Data\\CheckCofficientMatrix.data";
constexpr char kResultFile[] = "Data\\result.txt";
constexpr int kVertexFitRounds = 2;
constexpr int kLimitFitRounds = 4;
constexpr double kSmoothingWeight = 0.001;
constexpr std::int32_t kUnclaimed = -1;

IndexList ReadTriangles(IODatasetText& text, std::size_t points)
{
    const int count = text.ReadInteger("the number of triangles");
    if (count < 0)
    {
        text.Refuse("the number of triangles is " + std::to_string(count));
    }
    IndexList corners;
    for (int i = 0; i < count; ++i)
    {
        for (int corner = 0; corner < 3; ++corner)
        {
            const int place = text.ReadInteger("a triangle's corner");
            if (place < 0 || static_cast<std::size_t>(place) >= points)
            {
                text.Refuse("a triangle has point " + std::to_string(place) + " of " +
                            std::to_string(points));
            }
            corners.push_back(place + 1);
        }
    }
    return corners;
}

/// The first number that a generator of numbers below 32768 gives for a seed.
int DrawFirst(std::time_t seed)
{
    constexpr std::uint32_t kFactor = 214013;
    constexpr std::uint32_t kStep = 2531011;
    return static_cast<int>((static_cast<std::uint32_t>(seed) * kFactor + kStep) >> 16U & 0x7FFFU);
}
}

void IASmoothCommand::Execute()
{
    TakeSolidAndCloud();
    BuildDualMesh();
    m_pSolid->CalcNormals();
    m_pView->SetNewMesh(m_pDualSolid);
}

void IASmoothCommand::TakeSolidAndCloud()
{
    TakeClosedSolid(FaceForm::Polygons);
    NormalizeCurrentSolid();
    ReadPoints(kHorseCloud);
    m_PointDone.assign(m_Points.size(), false);
    m_pView->GetProjectedPoints() = m_Points; // Kept: as they stand in the file
    NormalizePoints();
    m_pView->GetPointCloud() = m_Points;
}

void IASmoothCommand::BuildDualMesh()
{
    ASSERT(m_pSolid != nullptr);
    m_PointDone.assign(m_Points.size(), false);
    FootSearch search(*m_pSolid, kHierarchicalFeet);
    m_Feet = CalculateFootPoints(
        *m_pSolid, m_Points, [this](std::size_t i) { return !m_PointDone[i]; }, search,
        &m_pView->GetProjectedPoints());
    SelectFaceFeet(*m_pSolid, m_Feet, m_PointDone);
    BuildDualSolid();
    SnapToCloud();
}

void IASmoothCommand::BuildDualSolid()
{
    DualMesh dual = MakeDualMesh(*m_pSolid, m_Feet);
    m_DualPointIndex = std::move(dual.cloudIndices);
    m_pDualSolid = m_pElementManager->BuildSolid(dual.positions, dual.corners, dual.faceSizes, true);
    SayWhyTheDualIsEmpty();
    m_pDualSolid->CheckTopology();
    m_pDualSolid->CalcNormals();
}

void IASmoothCommand::SayWhyTheDualIsEmpty() const
{
    if (m_pDualSolid->GetVertexList().empty())
    {
        DebugConsole() << "The dual mesh is empty: no face of the model has two feet of the cloud." << '\n';
    }
    else if (m_pDualSolid->GetFaceList().empty())
    {
        DebugConsole()
            << "The dual mesh has no polygon: around no vertex of the model are three faces with two "
               "feet each, that of the very first foot left out."
            << '\n';
    }
}

/// The dual is built on the feet, and ends on the cloud.
void IASmoothCommand::SnapToCloud()
{
    std::size_t i = 0;
    for (DSVertex* pVertex : m_pDualSolid->GetVertexList())
    {
        pVertex->GetPosition() = m_Points[static_cast<std::size_t>(m_DualPointIndex[i++])];
    }
    m_pDualSolid->CalcNormals();
}

void IASmoothCommand::FitVertices()
{
    ASSERT(m_pSolid != nullptr);
    // They take their names together when all is done.
    std::unique_ptr<ReplacingFile> pFootPoints;
    std::unique_ptr<ReplacingFile> pMatrix;
    for (int round = 0; round < kVertexFitRounds; ++round)
    {
        PrepareSamples();
        FindTargets();
        pFootPoints.reset(); // that of the round before needs room on the disk
        pFootPoints = CheckError();
        BuildConstMatrix();
        pMatrix.reset();
        pMatrix = WriteMatrix();
        SolveSystem();
    }
    ReleaseSystem();
    pFootPoints->Finish();
    pMatrix->Finish();
    pFootPoints->Commit();
    pMatrix->Commit();
}

void IASmoothCommand::FitLimitSurface()
{
    ASSERT(m_pSolid != nullptr);
    DemandLimitPatches(*m_pSolid, m_EigenTable);
    std::unique_ptr<ReplacingFile> pFootPoints;
    for (int round = 0; round < kLimitFitRounds; ++round)
    {
        ResetSystem();
        AssembleLimitSystem();
        pFootPoints.reset();
        pFootPoints = CheckError();
        SolveSystem();
    }
    ReleaseSystem();
    pFootPoints->Commit();
}

void IASmoothCommand::PrepareSamples()
{
    m_SamplePoints.clear();
    for (const DSVertex* pVertex : m_pSolid->GetVertexList())
    {
        m_SamplePoints.push_back(pVertex->GetPosition());
    }
}

void IASmoothCommand::FindTargets()
{
    NearestPoints nearest = BuildCloudIndex(m_Points);
    ASSERT(!m_SamplePoints.empty());
    m_TargetPoints.clear();
    for (const smVec3d& sample : m_SamplePoints)
    {
        m_TargetPoints.push_back(m_Points[static_cast<std::size_t>(nearest.Find(sample, 1).front())]);
    }
    DebugConsole() << "Calculate footpoint ok.." << '\n';
}

/// @return the file with all in it, which has no name yet
std::unique_ptr<ReplacingFile> IASmoothCommand::CheckError()
{
    auto pFile = std::make_unique<ReplacingFile>(ResolveForWriting(kFootPointFile));
    const FitError error = CheckFootPoints(m_SamplePoints, m_TargetPoints, *pFile);
    m_fMaxError = error.largest;
    m_fAverageError = error.average;
    SayError(error);
    return pFile;
}

/// Each vertex to its target, and the term that holds them together.
void IASmoothCommand::BuildConstMatrix()
{
    const auto vertices = static_cast<int>(m_pSolid->GetVertexList().size());
    m_System.SetSize(vertices);
    for (int axis = 0; axis < 3; ++axis)
    {
        DebugConsole() << "Const Matrix init OK....\n";
    }
    for (int i = 0; i < vertices; ++i)
    {
        m_System.GetMatrix().AddValue(i, i, 2.0);
    }
    AddSmoothingTerm(*m_pSolid, kSmoothingWeight, m_System.GetMatrix());
    for (int i = 0; i < vertices; ++i)
    {
        m_System.AddToRightSide(i, 2.0 * m_TargetPoints[static_cast<std::size_t>(i)]);
    }
}

void IASmoothCommand::ResetSystem()
{
    m_System.SetSize(static_cast<int>(m_pSolid->GetVertexList().size()));
}

void IASmoothCommand::AssembleLimitSystem()
{
    NearestPoints nearest = BuildCloudIndex(m_Points);
    LimitSamples samples =
        tessarine::AssembleLimitSystem(*m_pSolid, m_EigenTable, nearest, m_Points, m_System);
    m_SamplePoints = std::move(samples.points);
    m_TargetPoints = std::move(samples.targets);
}

/// @return as CheckError
std::unique_ptr<ReplacingFile> IASmoothCommand::WriteMatrix() const
{
    auto pFile = std::make_unique<ReplacingFile>(ResolveForWriting(kCoefficientFile));
    IOTextOutput text([&pFile](std::string_view piece) { pFile->Write(piece); });
    const CSparseMatrix& matrix = m_System.GetMatrix();
    for (int row = 0; row < matrix.GetRowCount(); ++row)
    {
        const std::vector<int>& columns = matrix.GetColumnsOf(row);
        text << "项: " << static_cast<std::int32_t>(columns.size()) << "\n";
        for (std::size_t i = 0; i < columns.size(); ++i)
        {
            text << row << " " << columns[i] << " " << matrix.GetValuesOf(row)[i] << "\n";
        }
    }
    text.Flush();
    return pFile;
}

/// A vertex that no term has reached stays.
void IASmoothCommand::SolveSystem()
{
    const std::vector<smVec3d> positions = m_System.Solve();
    int row = 0;
    for (DSVertex* pVertex : m_pSolid->GetVertexList())
    {
        if (!m_System.GetMatrix().GetColumnsOf(row).empty())
        {
            pVertex->GetPosition() = positions[static_cast<std::size_t>(row)];
        }
        ++row;
    }
}

/// The history keeps the command.
void IASmoothCommand::ReleaseSystem()
{
    m_SamplePoints = {};
    m_TargetPoints = {};
    m_System = {};
}

void IASmoothCommand::ReadResult()
{
    ASSERT(m_pSolid != nullptr);
    IODatasetText text(kResultFile);
    const IndexList corners = ReadTriangles(text, m_Points.size());
    const IndexList faceSizes(corners.size() / 3, 3);
    DSSolid* pSolid = m_pElementManager->BuildSolid(m_Points, corners, faceSizes, false);
    pSolid->CalcNormals();
    m_pSceneManager->AppendLeaf(pSolid);
}

void IASmoothCommand::PerturbVertices()
{
    constexpr double kLargestDraw = 32767.0;
    constexpr double kLength = 0.06;
    ASSERT(m_pSolid != nullptr);
    for (const DSVertex* pVertex : m_pSolid->GetVertexList())
    {
        const smVec3d& normal = pVertex->GetNormal();
        if (!std::isfinite(normal.x + normal.y + normal.z))
        {
            throw Failure("a vertex of the model has no normal to be moved along: remove the faces without "
                          "area around it (\"Optimize 2\"), and try again");
        }
    }
    for (DSVertex* pVertex : m_pSolid->GetVertexList())
    {
        const double drawn = DrawFirst(m_Clock()) / kLargestDraw;
        const double share = drawn > 0.5 ? -drawn : drawn;
        pVertex->GetPosition() += pVertex->GetNormal() * (kLength * share);
    }
}

void IASmoothCommand::EstimateNormals()
{
    ASSERT(m_pView != nullptr);
    NearestPoints nearest = BuildCloudIndex(m_Points);
    m_pView->GetPointNormals() = EstimateCloudNormals(m_Points, nearest);
}

const std::vector<std::int32_t>& IASmoothCommand::FindVertexFeet()
{
    constexpr int kNeighbours = 8;
    ASSERT(m_pSolid != nullptr);
    DebugConsole() << "m_Points.Size()== " << m_Points.size() << '\n';
    NearestPoints nearest = BuildCloudIndex(m_Points);
    m_PointVertex.assign(m_Points.size(), kUnclaimed);
    for (const DSVertex* pVertex : m_pSolid->GetVertexList())
    {
        const std::span<const int> near = nearest.Find(pVertex->GetPosition(), kNeighbours);
        const auto free =
            std::find_if(near.begin(), near.end(),
                         [this](int point) { return !m_PointDone[static_cast<std::size_t>(point)]; });
        if (free == near.end())
        {
            DebugConsole() << "There still exsits error points..." << '\n';
            continue;
        }
        m_PointVertex[static_cast<std::size_t>(*free)] = static_cast<std::int32_t>(pVertex->GetID());
        m_PointDone[static_cast<std::size_t>(*free)] = true;
    }
    DebugConsole() << "Find init vertex footpoint ok..." << '\n';
    return m_PointVertex;
}

std::vector<smVec3d> IASmoothCommand::CheckProjection() const
{
    std::vector<smVec3d> projected(m_Points.size());
    for (const std::int32_t index : m_Feet.cloudIndices)
    {
        projected[static_cast<std::size_t>(index)] = m_Points[static_cast<std::size_t>(index)];
    }
    DebugConsole() << "check the unprojected ponits number: " << m_Points.size() - m_Feet.points.size()
                   << '\n';
    return projected;
}

void IASmoothCommand::TriangulateFaces()
{
    ASSERT(m_pSolid != nullptr);
    tessarine::TriangulateFaces(*m_pElementManager, *m_pSolid);
}

void IASmoothCommand::StarFaces()
{
    ASSERT(m_pSolid != nullptr);
    tessarine::StarFaces(*m_pElementManager, *m_pSolid, m_Feet.points);
}

void IASmoothCommand::BuildOctree()
{
    ASSERT(m_pSolid != nullptr);
    DebugConsole() << "total face number:" << m_Points.size() << '\n';
    m_Octree.Build(m_Points, kCoarseCloudOctree);
}

const smVec3d* IASmoothCommand::NearestInLeaf(const smVec3d& point) const
{
    const OCTNODE* pLeaf = FindLeaf(point);
    return pLeaf == nullptr ? nullptr : FindNearestOf(pLeaf->GetPoints(), point);
}

void IASmoothCommand::MakeSeed()
{
    ASSERT(m_pSolid != nullptr);
    m_Connection.Begin(m_pElementManager, m_pSolid, m_Feet);
    m_Connection.MakeSeed();
    m_pView->SetNewMesh(m_Connection.GetNewSolid());
}

void IASmoothCommand::ConnectNext()
{
    if (!m_Connection.IsFrontEmpty())
    {
        m_Connection.ConnectNext();
        m_Connection.CalcNormals();
    }
}

void IASmoothCommand::SaveEnvironment() const
{
    m_Connection.SaveEnvironment(m_PointDone);
}
}
