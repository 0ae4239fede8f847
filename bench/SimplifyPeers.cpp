#include "SimplifyPeers.h"
#include <CGAL/AABB_traits.h>
#include <CGAL/AABB_tree.h>
#include <CGAL/AABB_triangle_primitive.h>
#include <CGAL/Simple_cartesian.h>
#include <CGAL/Surface_mesh.h>
#include <CGAL/Surface_mesh_simplification/Policies/Edge_collapse/Count_stop_predicate.h>
#include <CGAL/Surface_mesh_simplification/Policies/Edge_collapse/GarlandHeckbert_plane_policies.h>
#include <CGAL/Surface_mesh_simplification/edge_collapse.h>
#include <OpenMesh/Core/Mesh/TriMesh_ArrayKernelT.hh>
#include <OpenMesh/Tools/Decimater/DecimaterT.hh>
#include <OpenMesh/Tools/Decimater/ModQuadricT.hh>
#include <algorithm>
#include <cmath>
#include <vtkCellArray.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkQuadricDecimation.h>

namespace tessarine::bench
{
namespace
{
class VtkSimplify : public SimplifyPeer
{
public:
    explicit VtkSimplify(const TriangleLists& mesh)
    {
        vtkNew<vtkPoints> points;
        for (const auto& p : mesh.positions)
        {
            points->InsertNextPoint(p.data());
        }
        vtkNew<vtkCellArray> faces;
        for (const auto& face : mesh.faces)
        {
            const vtkIdType corners[3] = {face[0], face[1], face[2]};
            faces->InsertNextCell(3, corners);
        }
        m_Input->SetPoints(points);
        m_Input->SetPolys(faces);
    }
    void Reset() override
    {
        m_Filter = vtkSmartPointer<vtkQuadricDecimation>::New();
        m_Filter->SetInputData(m_Input);
    }
    void Simplify(double ratio) override
    {
        m_Filter->SetTargetReduction(ratio);
        m_Filter->Update();
    }
    TriangleLists GetResult() const override
    {
        TriangleLists mesh;
        vtkPolyData* output = m_Filter->GetOutput();
        for (vtkIdType i = 0; i < output->GetNumberOfPoints(); ++i)
        {
            const double* p = output->GetPoint(i);
            mesh.positions.push_back({p[0], p[1], p[2]});
        }
        vtkCellArray* faces = output->GetPolys();
        vtkIdType count = 0;
        const vtkIdType* corners = nullptr;
        for (faces->InitTraversal(); faces->GetNextCell(count, corners) != 0;)
        {
            mesh.faces.push_back(
                {static_cast<int>(corners[0]), static_cast<int>(corners[1]), static_cast<int>(corners[2])});
        }
        return mesh;
    }

private:
    vtkNew<vtkPolyData> m_Input;
    vtkSmartPointer<vtkQuadricDecimation> m_Filter;
};

class OpenMeshSimplify : public SimplifyPeer
{
    using Mesh = OpenMesh::TriMesh_ArrayKernelT<>;

public:
    explicit OpenMeshSimplify(const TriangleLists& mesh)
    {
        for (const auto& p : mesh.positions)
        {
            m_Original.add_vertex(
                {static_cast<float>(p[0]), static_cast<float>(p[1]), static_cast<float>(p[2])});
        }
        for (const auto& face : mesh.faces)
        {
            m_Original.add_face(Mesh::VertexHandle(face[0]), Mesh::VertexHandle(face[1]),
                                Mesh::VertexHandle(face[2]));
        }
        m_Original.request_vertex_status();
        m_Original.request_edge_status();
        m_Original.request_face_status();
    }
    void Reset() override { m_Mesh = m_Original; }
    void Simplify(double ratio) override
    {
        OpenMesh::Decimater::DecimaterT<Mesh> decimater(m_Mesh);
        OpenMesh::Decimater::ModQuadricT<Mesh>::Handle quadric;
        decimater.add(quadric);
        decimater.module(quadric).unset_max_err();
        decimater.initialize();
        decimater.decimate_to_faces(
            0, static_cast<std::size_t>((1.0 - ratio) * static_cast<double>(m_Mesh.n_faces())));
        m_Mesh.garbage_collection();
    }
    TriangleLists GetResult() const override
    {
        TriangleLists mesh;
        for (const auto vertex : m_Mesh.vertices())
        {
            const auto& p = m_Mesh.point(vertex);
            mesh.positions.push_back({p[0], p[1], p[2]});
        }
        for (const auto face : m_Mesh.faces())
        {
            std::array<int, 3> corners{};
            std::transform(m_Mesh.cfv_begin(face), m_Mesh.cfv_end(face), corners.begin(),
                           [](auto vertex) { return vertex.idx(); });
            mesh.faces.push_back(corners);
        }
        return mesh;
    }

private:
    Mesh m_Original;
    Mesh m_Mesh;
};

using Kernel = CGAL::Simple_cartesian<double>;

class CgalSimplify : public SimplifyPeer
{
    using Mesh = CGAL::Surface_mesh<Kernel::Point_3>;

public:
    explicit CgalSimplify(const TriangleLists& mesh)
    {
        for (const auto& p : mesh.positions)
        {
            m_Original.add_vertex({p[0], p[1], p[2]});
        }
        for (const auto& face : mesh.faces)
        {
            m_Original.add_face(At(face[0]), At(face[1]), At(face[2]));
        }
    }
    void Reset() override { m_Mesh = m_Original; }
    void Simplify(double ratio) override
    {
        namespace Simplification = CGAL::Surface_mesh_simplification;
        using Policies = Simplification::GarlandHeckbert_plane_policies<Mesh, Kernel>;
        const auto edges = static_cast<double>(m_Mesh.number_of_edges());
        const Simplification::Count_stop_predicate<Mesh> stop(
            static_cast<std::size_t>((1.0 - ratio) * edges));
        const Policies policies(m_Mesh);
        Simplification::edge_collapse(
            m_Mesh, stop,
            CGAL::parameters::get_cost(policies.get_cost()).get_placement(policies.get_placement()));
        m_Mesh.collect_garbage();
    }
    TriangleLists GetResult() const override
    {
        TriangleLists mesh;
        for (const auto vertex : m_Mesh.vertices())
        {
            const auto& p = m_Mesh.point(vertex);
            mesh.positions.push_back({p.x(), p.y(), p.z()});
        }
        for (const auto face : m_Mesh.faces())
        {
            std::array<int, 3> corners{};
            int i = 0;
            for (const auto vertex : CGAL::vertices_around_face(m_Mesh.halfedge(face), m_Mesh))
            {
                corners[i++ % 3] = static_cast<int>(vertex);
            }
            mesh.faces.push_back(corners);
        }
        return mesh;
    }

private:
    static Mesh::Vertex_index At(int number) { return Mesh::Vertex_index(number); }

    Mesh m_Original;
    Mesh m_Mesh;
};

using Triangles = std::vector<Kernel::Triangle_3>;
using TriangleTree = CGAL::AABB_tree<
    CGAL::AABB_traits<Kernel, CGAL::AABB_triangle_primitive<Kernel, Triangles::const_iterator>>>;

Kernel::Point_3 PointOf(const std::array<double, 3>& p)
{
    return {p[0], p[1], p[2]};
}

Triangles TrianglesOf(const TriangleLists& mesh)
{
    Triangles triangles;
    for (const auto& face : mesh.faces)
    {
        triangles.emplace_back(PointOf(mesh.positions[face[0]]), PointOf(mesh.positions[face[1]]),
                               PointOf(mesh.positions[face[2]]));
    }
    return triangles;
}

struct SquaredDistances
{
    double sum = 0.0;
    double largest = 0.0;
    std::size_t count = 0;

    void Add(double squared)
    {
        sum += squared;
        largest = std::max(largest, squared);
        ++count;
    }
};

/// From at most so many vertices and centroids of one to the other.
void AddDistances(const Triangles& from, const Triangles& to, SquaredDistances& distances)
{
    constexpr std::size_t kMostSamples = 100000;
    TriangleTree tree(to.begin(), to.end());
    tree.accelerate_distance_queries();
    const std::size_t step = std::max<std::size_t>(1, from.size() / kMostSamples);
    for (std::size_t i = 0; i < from.size(); i += step)
    {
        if (!from[i].is_degenerate())
        {
            distances.Add(tree.squared_distance(CGAL::centroid(from[i])));
            distances.Add(tree.squared_distance(from[i].vertex(0)));
        }
    }
}
}

std::unique_ptr<SimplifyPeer> MakeVtkSimplify(const TriangleLists& mesh)
{
    return std::make_unique<VtkSimplify>(mesh);
}

std::unique_ptr<SimplifyPeer> MakeOpenMeshSimplify(const TriangleLists& mesh)
{
    return std::make_unique<OpenMeshSimplify>(mesh);
}

std::unique_ptr<SimplifyPeer> MakeCgalSimplify(const TriangleLists& mesh)
{
    return std::make_unique<CgalSimplify>(mesh);
}

Deviation MeasureDeviation(const TriangleLists& a, const TriangleLists& b)
{
    const Triangles first = TrianglesOf(a);
    const Triangles second = TrianglesOf(b);
    SquaredDistances distances;
    AddDistances(first, second, distances);
    AddDistances(second, first, distances);
    return {std::sqrt(distances.sum / static_cast<double>(distances.count)), std::sqrt(distances.largest)};
}
}
