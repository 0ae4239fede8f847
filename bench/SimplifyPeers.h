#pragma once
#include "TriangleLists.h"
#include <memory>

/// Well-known libraries that simplify by quadric errors, each behind one class that only its own file knows.
namespace tessarine::bench
{
/// A mesh in memory, to be simplified again and again.
class SimplifyPeer
{
public:
    virtual ~SimplifyPeer() = default;
    /// Sets the mesh back to what was given.
    virtual void Reset() = 0;
    /// Takes away a share of the faces.
    virtual void Simplify(double ratio) = 0;
    virtual TriangleLists GetResult() const = 0;
};
/// vtkQuadricDecimation.
std::unique_ptr<SimplifyPeer> MakeVtkSimplify(const TriangleLists& mesh);
/// DecimaterT with ModQuadricT.
std::unique_ptr<SimplifyPeer> MakeOpenMeshSimplify(const TriangleLists& mesh);
/// Surface_mesh_simplification with GarlandHeckbert_plane_policies.
std::unique_ptr<SimplifyPeer> MakeCgalSimplify(const TriangleLists& mesh);

/// How far two surfaces are from one another, measured from vertices and centroids of each to the nearest point of
/// the other.
struct Deviation
{
    double rms = 0.0;
    double largest = 0.0;
};
Deviation MeasureDeviation(const TriangleLists& a, const TriangleLists& b);
}
