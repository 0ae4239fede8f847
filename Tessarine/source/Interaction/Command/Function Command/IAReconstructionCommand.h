#pragma once
#include "CloudOctree.h"
#include "DistanceField.h"
#include "IACommand.h"
#include "IAPointCloud.h"
#include "IODatasetCameras.h"
#include "MarchingCubes.h"
#include <vector>

namespace tessarine
{
class DSSolid;
class HullCarver;
class MANBrepElementManager;
class MANSceneManager;
class Open3DView;

/// The hull of a body from its silhouettes ("data\bunny") as a distance field, an octree over a cloud of the body
/// ("Data\bunny.txta"), and the surface of the hull.
///
/// Needs   The scene, the elements and a view (asserted).
/// Leaves  The scene's solids as they are; cut faces for the images with markers; the cloud and the octree in the
///         view, which points at the nodes of this command; "pointDistance.dat".
/// Fails   A missing cloud is reported as an assertion. FileError and Failure name the file, and the line, of what is
///         missing or cannot be used, such as a camera without an inverse of an image with markers.
/// Source  A. Laurentini, "The visual hull concept for silhouette-based image understanding", 1994.
class IAReconstructionCommand : public IACommand
{
public:
    void SetSceneManager(MANSceneManager* scene) { m_pSceneManager = scene; }
    void SetElementManager(MANBrepElementManager* elements) { m_pElementManager = elements; }
    void SetView(Open3DView* view) { m_pView = view; }

    void Execute() override;

    // What the finished command can do beyond its run.

    /// The triangles of the field's surface, in place of those before.
    void GenerateMesh(float isoLevel);

    /// A solid of the triangles, welded, as a new child of the root.
    /// Says    " Ambiguous triangle:" for each one that has two corners at one place, and is left out; the sizes of
    ///         the lists; "solid flag: "; on standard error, that there is no face
    void BuildSolid();

    /// A solid of points as a new child of the root: half the position of each sample that a view has bounded, its
    /// colour in the place of the normal.
    void ShowField();

    const DistanceField& GetField() const { return m_Field; }
    const std::vector<MCTriangle>& GetTriangles() const { return m_Triangles; }
    DSSolid* GetSolid() const { return m_pSolid; }
    const OCTNODE* GetOctreeRoot() const { return m_Octree.GetRoot(); }
    const std::vector<float>& GetPointDistances() const { return m_PointDistances; }

private:
    void BuildField();
    void AddView(int view, HullCarver& carver, std::vector<std::int32_t>& layers);
    void LoadPoints();
    void SamplePoints();
    void BuildOctree();
    void ReportOctree() const;

    MANSceneManager* m_pSceneManager = nullptr;
    MANBrepElementManager* m_pElementManager = nullptr;
    Open3DView* m_pView = nullptr;
    IODatasetCameras m_Cameras;
    DistanceField m_Field;
    std::vector<MCTriangle> m_Triangles;
    IAPointCloud m_Cloud;
    DSSolid* m_pSolid = nullptr;
    CloudOctree m_Octree;
    std::vector<float> m_PointDistances;
};
}
