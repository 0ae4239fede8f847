#include "Peers.h"
#include <CGAL/Polygon_mesh_processing/compute_normal.h>
#include <CGAL/Simple_cartesian.h>
#include <CGAL/Surface_mesh.h>
#include <CGAL/boost/graph/IO/OBJ.h>
#include <CGAL/subdivision_method_3.h>
#include <OpenMesh/Core/IO/MeshIO.hh>
#include <OpenMesh/Core/Mesh/TriMesh_ArrayKernelT.hh>
#include <OpenMesh/Tools/Subdivider/Uniform/LoopT.hh>
#include <stdexcept>
#include <tiny_obj_loader.h>

namespace tessarine::bench
{
namespace
{
using CgalKernel = CGAL::Simple_cartesian<double>;
using CgalMesh = CGAL::Surface_mesh<CgalKernel::Point_3>;

struct DoubleTraits : OpenMesh::DefaultTraitsDouble
{
    VertexAttributes(OpenMesh::Attributes::Normal | OpenMesh::Attributes::Status);
    FaceAttributes(OpenMesh::Attributes::Normal | OpenMesh::Attributes::Status);
    EdgeAttributes(OpenMesh::Attributes::Status);
};
using OpenTriMesh = OpenMesh::TriMesh_ArrayKernelT<DoubleTraits>;

CgalMesh ReadCgalMesh(const std::filesystem::path& path)
{
    CgalMesh mesh;
    if (!CGAL::IO::read_OBJ(path.string(), mesh))
    {
        throw std::runtime_error("CGAL cannot read " + path.string());
    }
    return mesh;
}

OpenTriMesh ReadOpenMesh(const std::filesystem::path& path)
{
    OpenTriMesh mesh;
    if (!OpenMesh::IO::read_mesh(mesh, path.string()))
    {
        throw std::runtime_error("OpenMesh cannot read " + path.string());
    }
    return mesh;
}

class CgalLoop : public LoopPeer
{
public:
    explicit CgalLoop(const std::filesystem::path& path) : m_Original(ReadCgalMesh(path)) {}
    void Reset() override { m_Mesh = m_Original; }
    void Subdivide() override
    {
        CGAL::Subdivision_method_3::Loop_subdivision(m_Mesh, CGAL::parameters::number_of_iterations(1));
    }

private:
    CgalMesh m_Original;
    CgalMesh m_Mesh;
};

class OpenMeshLoop : public LoopPeer
{
public:
    explicit OpenMeshLoop(const std::filesystem::path& path) : m_Original(ReadOpenMesh(path)) {}
    void Reset() override { m_Mesh = m_Original; }
    void Subdivide() override
    {
        OpenMesh::Subdivider::Uniform::LoopT<OpenTriMesh, double> loop;
        loop.attach(m_Mesh);
        loop(1);
        loop.detach();
    }

private:
    OpenTriMesh m_Original;
    OpenTriMesh m_Mesh;
};
}

void ReadWithCgal(const std::filesystem::path& path)
{
    CgalMesh mesh = ReadCgalMesh(path);
    auto vertexNormals =
        mesh.add_property_map<CgalMesh::Vertex_index, CgalKernel::Vector_3>("v:normal").first;
    auto faceNormals = mesh.add_property_map<CgalMesh::Face_index, CgalKernel::Vector_3>("f:normal").first;
    CGAL::Polygon_mesh_processing::compute_normals(mesh, vertexNormals, faceNormals);
}

void ReadWithOpenMesh(const std::filesystem::path& path)
{
    OpenTriMesh mesh = ReadOpenMesh(path);
    mesh.update_normals();
}

void ParseWithTinyObj(const std::filesystem::path& path)
{
    tinyobj::ObjReaderConfig config;
    config.triangulate = false;
    tinyobj::ObjReader reader;
    if (!reader.ParseFromFile(path.string(), config))
    {
        throw std::runtime_error("tinyobjloader cannot read " + path.string());
    }
}

std::unique_ptr<LoopPeer> MakeCgalLoop(const std::filesystem::path& path)
{
    return std::make_unique<CgalLoop>(path);
}

std::unique_ptr<LoopPeer> MakeOpenMeshLoop(const std::filesystem::path& path)
{
    return std::make_unique<OpenMeshLoop>(path);
}
}
