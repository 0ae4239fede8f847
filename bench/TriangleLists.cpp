#include "TriangleLists.h"
#include <fstream>
#include <stdexcept>
#include <tiny_obj_loader.h>

namespace tessarine::bench
{
namespace
{
template <class T>
void WriteList(std::ofstream& file, const std::vector<T>& list)
{
    const std::size_t count = list.size();
    file.write(reinterpret_cast<const char*>(&count), sizeof count);
    file.write(reinterpret_cast<const char*>(list.data()), static_cast<std::streamsize>(count * sizeof(T)));
}

template <class T>
void ReadList(std::ifstream& file, std::vector<T>& list)
{
    std::size_t count = 0;
    file.read(reinterpret_cast<char*>(&count), sizeof count);
    list.resize(count);
    file.read(reinterpret_cast<char*>(list.data()), static_cast<std::streamsize>(count * sizeof(T)));
}
}

TriangleLists ReadTriangles(const std::filesystem::path& path)
{
    tinyobj::ObjReader reader;
    if (!reader.ParseFromFile(path.string()))
    {
        throw std::runtime_error("tinyobjloader cannot read " + path.string());
    }
    TriangleLists mesh;
    const auto& vertices = reader.GetAttrib().vertices;
    for (std::size_t i = 0; i + 2 < vertices.size(); i += 3)
    {
        mesh.positions.push_back({vertices[i], vertices[i + 1], vertices[i + 2]});
    }
    for (const auto& shape : reader.GetShapes())
    {
        const auto& indices = shape.mesh.indices;
        for (std::size_t i = 0; i + 2 < indices.size(); i += 3)
        {
            mesh.faces.push_back(
                {indices[i].vertex_index, indices[i + 1].vertex_index, indices[i + 2].vertex_index});
        }
    }
    return mesh;
}

void StoreTriangles(const TriangleLists& mesh, const std::filesystem::path& path)
{
    std::ofstream file(path, std::ios::binary);
    WriteList(file, mesh.positions);
    WriteList(file, mesh.faces);
}

TriangleLists LoadTriangles(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    TriangleLists mesh;
    ReadList(file, mesh.positions);
    ReadList(file, mesh.faces);
    if (!file)
    {
        throw std::runtime_error("cannot read " + path.string());
    }
    return mesh;
}
}
