#pragma once
#include <array>
#include <filesystem>
#include <vector>

namespace tessarine::bench
{
/// A triangle mesh in the plainest form, to hand from one library to another.
struct TriangleLists
{
    std::vector<std::array<double, 3>> positions;
    std::vector<std::array<int, 3>> faces;
};

/// The positions and triangles of an OBJ file.
TriangleLists ReadTriangles(const std::filesystem::path& path);

/// A file for the next process; what it holds is known to these two functions only.
void StoreTriangles(const TriangleLists& mesh, const std::filesystem::path& path);
TriangleLists LoadTriangles(const std::filesystem::path& path);
}
