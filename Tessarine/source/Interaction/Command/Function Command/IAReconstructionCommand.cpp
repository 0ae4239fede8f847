#include "IAReconstructionCommand.h"
#include "Assert.h"
#include "Console.h"
#include "Distance2D.h"
#include "ErrorLine.h"
#include "HullCarver.h"
#include "IODatasetImages.h"
#include "IODatasetText.h"
#include "ImageFilter.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "MarkerPixels.h"
#include "Open3DView.h"
#include "PointWelder.h"
#include <algorithm>

namespace tessarine
{
namespace
{
constexpr char kSilhouetteCameras[] = "data\\bunny\\param.dat";
constexpr char kSilhouetteFolder[] = "data\\bunny\\";
constexpr char kBodyCloud[] = "Data\\bunny.txta";

constexpr int kFilteredRun = 1;

/// The place of a pixel on the plane of the image, from -1 to 1.
PlanePoint ToPlane(const Pixel& pixel, const Image& image)
{
    return {pixel.x / (image.width / 2.0) - 1.0, pixel.y / (image.height / 2.0) - 1.0};
}

/// Where the field shows to which side of the surface the corners of a box lie.
enum class BoxSide
{
    Across,
    Inside,
    Outside
};

BoxSide FindSide(const DistanceField& field, const OCTNODE& box)
{
    const smVec3d extent = box.GetMax() - box.GetMin();
    int above = 0;
    int below = 0;
    for (int corner = 0; corner < 8; ++corner)
    {
        const smVec3d step((corner & 1) != 0 ? extent.x : 0.0, (corner & 2) != 0 ? extent.y : 0.0,
                           (corner & 4) != 0 ? extent.z : 0.0);
        const float value = field.GetValueAt(box.GetMin() + step);
        above += value > 0.0F ? 1 : 0;
        below += value < 0.0F ? 1 : 0;
    }
    if (above == 8)
    {
        return BoxSide::Outside;
    }
    return below == 8 ? BoxSide::Inside : BoxSide::Across;
}

/// The lists that a solid is built from.
struct SolidLists
{
    PointWelder welder;
    IndexList corners;
    IndexList faceSizes;

    void Add(const MCTriangle& triangle)
    {
        const auto& p = triangle.p;
        if (IsSamePlace(p[0], p[1]) || IsSamePlace(p[1], p[2]) || IsSamePlace(p[0], p[2]))
        {
            DebugConsole() << " Ambiguous triangle:" << '\n';
            return;
        }
        for (const std::size_t corner : {2, 0, 1})
        {
            corners.push_back(welder.Weld(p[corner]) + 1);
        }
        faceSizes.push_back(3);
    }

    void SaySizes() const
    {
        const std::size_t points = welder.GetPoints().size();
        DebugConsole() << "vCount: " << points << '\n';
        DebugConsole() << "vList.Size(): " << points << '\n';
        DebugConsole() << "fv.Size(): " << corners.size() << '\n';
        DebugConsole() << "fn.Size(): " << faceSizes.size() << '\n';
    }
};
}

void IAReconstructionCommand::Execute()
{
    ASSERT(m_pSceneManager != nullptr);
    ASSERT(m_pView != nullptr);
    BuildField();
    LoadPoints();
    m_pView->GetPointCloud() = m_Cloud.m_Points;
    SamplePoints();
    BuildOctree();
    m_pView->SetOctree(m_Octree.GetRoot());
    ReportOctree();
}

void IAReconstructionCommand::BuildField()
{
    m_Cameras = ReadCameras(kSilhouetteCameras);
    std::vector<std::int32_t> layers(static_cast<std::size_t>(m_Cameras.m_nImageWidth) *
                                     static_cast<std::size_t>(m_Cameras.m_nImageHeight));
    HullCarver carver(m_Field);
    for (int view = 0; view < m_Cameras.GetImageCount(); ++view)
    {
        AddView(view, carver, layers);
        DebugConsole() << "Current image = " << view + 1 << '\n';
    }
}

void IAReconstructionCommand::AddView(int view, HullCarver& carver, std::vector<std::int32_t>& layers)
{
    Image image = ReadDatasetImage(kSilhouetteFolder, view + 1, m_Cameras.m_nImageWidth,
                                   m_Cameras.m_nImageHeight, m_Cameras.GetSizeSource());
    if (FilterImage(image.width, image.height, image.pixels.data(), kFilteredRun, true))
    {
        const std::vector<Pixel> ends = FindMarkerEnds(image); // what the filter has left of them
        if (!ends.empty())
        {
            m_pSceneManager->GetCutFaceList().push_back(
                MakeCutFace(ToPlane(ends[0], image), ToPlane(ends[1], image), m_Cameras.GetInverse(view)));
        }
    }
    BuildDistance2D(image.width, image.height, image.pixels.data(), layers.data());
    carver.AddView(m_Cameras.m_Views[static_cast<std::size_t>(view)],
                   SilhouetteDistance(image.width, image.height, layers.data()));
    DebugConsole() << "Calculate 3D distance field ok.." << '\n';
}

void IAReconstructionCommand::LoadPoints()
{
    IODatasetText file(kBodyCloud);
    ASSERT_VALUE(file.IsOpen()); // the reader tells what is missing
    m_Cloud.ReadPoints(file);
    m_Cloud.Unitize(file.GetName());
    m_Cloud.Unitize(file.GetName()); // rounds once more
}

void IAReconstructionCommand::SamplePoints()
{
    m_PointDistances.resize(m_Cloud.m_Points.size());
    std::transform(m_Cloud.m_Points.begin(), m_Cloud.m_Points.end(), m_PointDistances.begin(),
                   [this](const smVec3d& point) { return m_Field.GetValueAt(point); });
    WritePointDistances(m_Cloud.m_Points, m_PointDistances);
}

void IAReconstructionCommand::BuildOctree()
{
    m_Octree.Build(m_Cloud.m_Points, kBodyOctree);
    DebugConsole() << "total face number:" << m_Cloud.m_Points.size() << '\n';
}

void IAReconstructionCommand::ReportOctree() const
{
    DebugConsole() << "The size of node in the octree:" << m_Octree.GetNodes().size() << '\n';
    int beside = 0;
    for (const auto& node : m_Octree.GetNodes())
    {
        if (!node->IsLeaf() || node->GetPoints().empty())
        {
            continue;
        }
        const BoxSide side = FindSide(m_Field, *node);
        if (side != BoxSide::Across)
        {
            DebugConsole() << (side == BoxSide::Outside ? "A node outside the border..."
                                                        : "A node inside the border...")
                           << '\n';
            ++beside;
        }
    }
    DebugConsole() << "The number of inside&outside node is " << beside << '\n';
}

void IAReconstructionCommand::GenerateMesh(float isoLevel)
{
    m_Triangles.clear();
    tessarine::GenerateMesh(m_Field, isoLevel, m_Triangles);
}

void IAReconstructionCommand::BuildSolid()
{
    ASSERT(m_pElementManager != nullptr && m_pSceneManager != nullptr);
    SolidLists lists;
    for (const MCTriangle& triangle : m_Triangles)
    {
        lists.Add(triangle);
    }
    lists.SaySizes();
    m_pSolid = m_pElementManager->BuildSolid(lists.welder.GetPoints(), lists.corners, lists.faceSizes, true);
    m_pSolid->CalcNormals();
    const bool fits = m_pSolid->CheckTopology();
    DebugConsole() << "solid flag: " << (fits ? "true" : "false") << '\n';
    m_pSceneManager->AppendLeaf(m_pSolid);
    if (lists.faceSizes.empty())
    {
        PrintErrorLine(
            "the surface has no face, as the field does not cross its level: look whether every "
            "silhouette shows its body with red on black, whether the cameras see the body (from -1.2 to "
            "1.2 across and down), and whether the level is near 0");
    }
}

void IAReconstructionCommand::ShowField()
{
    constexpr double kShown = 2.0; // so much smaller than it is
    ASSERT(m_pElementManager != nullptr && m_pSceneManager != nullptr);
    DSSolid* pSolid = m_pElementManager->CreateSolid();
    for (int i = 0; i < DistanceField::kCountX; ++i)
    {
        for (int j = 0; j < DistanceField::kCountY; ++j)
        {
            for (int k = 0; k < DistanceField::kCountZ; ++k)
            {
                const float value = m_Field.GetValue(i, j, k);
                if (value == DistanceField::kOutside || value == DistanceField::kInside)
                {
                    continue;
                }
                const smVec3d place = DistanceField::GetPosition(i, j, k) / kShown;
                const double shade = value == 0.0F ? 1.0 : double{value} / 2.0;
                DSVertex* pVertex = m_pElementManager->CreateVertex();
                pVertex->SetPosition(place.x, place.y, place.z);
                pVertex->GetNormal() = {1.0, shade, shade};
                pSolid->GetVertexList().push_back(pVertex);
            }
        }
    }
    m_pSceneManager->AppendLeaf(pSolid);
}
}
