#pragma once
#include <filesystem>
#include <memory>

/// Well-known libraries doing the same work, each behind a few functions so that only Peers.cpp sees them.
namespace tessarine::bench
{
/// CGAL: reads and builds a Surface_mesh with face and vertex normals.
void ReadWithCgal(const std::filesystem::path& path);

/// OpenMesh: the same with a TriMesh.
void ReadWithOpenMesh(const std::filesystem::path& path);

/// tinyobjloader: parses into its arrays.
void ParseWithTinyObj(const std::filesystem::path& path);

/// A mesh in memory, for one Loop step at a time.
class LoopPeer
{
public:
    virtual ~LoopPeer() = default;
    /// Sets the mesh back to what was read.
    virtual void Reset() = 0;
    virtual void Subdivide() = 0;
};
std::unique_ptr<LoopPeer> MakeCgalLoop(const std::filesystem::path& path);
std::unique_ptr<LoopPeer> MakeOpenMeshLoop(const std::filesystem::path& path);
}
