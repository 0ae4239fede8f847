#include "FaultWorkspace.h"
#include "EigenTable.h"
#include "Meshes.h"
#include "SilhouetteFiles.h"
#include <chrono>
#include <iterator>

namespace tessarine
{
namespace
{
/// The time of every file that nobody has written since.
const std::filesystem::file_time_type kAsMade =
    std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);

std::string FormatPoints(const PositionList& points, const std::string& lead)
{
    std::string text;
    for (const smVec3d& p : points)
    {
        text += lead + std::to_string(p.x) + ' ' + std::to_string(p.y) + ' ' + std::to_string(p.z) + '\n';
    }
    return text;
}

std::string FormatMesh(const IndexedMesh& mesh)
{
    std::string text = FormatPoints(mesh.positions, "v ");
    for (std::size_t i = 0; i < mesh.indices.size(); i += 3)
    {
        text += "f " + std::to_string(mesh.indices[i]) + ' ' + std::to_string(mesh.indices[i + 1]) + ' ' +
                std::to_string(mesh.indices[i + 2]) + '\n';
    }
    return text;
}

/// The corners of the tetrahedron, and nine points on a face, some of which fall on another.
PositionList PointsOverTetrahedron()
{
    PositionList points{{1, 1, 1}, {1, -1, -1}, {-1, 1, -1}, {-1, -1, 1}};
    for (int i = 0; i < 9; ++i)
    {
        const double u = -0.1 + 0.1 * (i % 3) + 0.003 * i; // x + y - z = 1 on the face
        const double v = -0.1 + 0.1 * static_cast<double>(i / 3);
        points.emplace_back(1.0 / 3 + u, 1.0 / 3 + v, -1.0 / 3 + u + v);
    }
    return points;
}

std::string FormatCloud(const PositionList& points)
{
    return std::to_string(points.size()) + '\n' + FormatPoints(points, "");
}
}

std::map<std::string, std::string> ReadAllFiles()
{
    constexpr std::uintmax_t kMostBytes = 200000;
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator("."))
    {
        if (!entry.is_regular_file())
        {
            continue;
        }
        std::string& content = files[entry.path().string()];
        content = std::to_string(entry.file_size()) + " bytes\n";
        if (entry.last_write_time() != kAsMade && entry.file_size() <= kMostBytes)
        {
            std::ifstream stream(entry.path(), std::ios::binary);
            content.append(std::istreambuf_iterator<char>(stream), {});
        }
    }
    return files;
}

FaultWorkspace::FaultWorkspace()
{
    for (const char* name : {"data", "data1", "out"})
    {
        std::filesystem::create_directory(GetPath() / name);
    }
    WriteModels();
    WriteClouds();
    WriteSilhouetteFiles(GetPath());
    WriteSmallData();
    for (const auto& [name, content] : ReadAllFiles())
    {
        std::filesystem::last_write_time(name, kAsMade);
    }
}

void FaultWorkspace::WriteModels() const
{
    Write("model.obj", "mtllib model.mtl\nv 1 1 1\nv 1 -1 -1\nv -1 1 -1\nv -1 -1 1\nvt 0 0\nvt 1 0\nvt 0 1\n"
                       "usemtl red\nf 1/1 2/2 3/3\nf 1/1 4/2 2/3\nf 1/1 3/2 4/3\nf 2/1 4/2 3/3\n");
    Write("model.mtl", "newmtl red\nKd 1 0 0\nmap_Kd red.png\nnewmtl blue\nKd 0 0 1\n");
    WriteImage(DrawDisc(8, 3), *this / "red.png");
    Write("torus.obj", FormatMesh(Torus(50, 20)));
}

void FaultWorkspace::WriteClouds() const
{
    Write("data/box.txta", FormatCloud(PointsOverTetrahedron()));
    Write("data/dragon.txta", "2\n1 1 -1\n-1 -1 1\n");
    Write("data/bunny.txta", "7\n1 1 1\n1 -1 -1\n-1 1 -1\n-1 -1 1\n.5 -.4 .5\n.5 .5 -.4\n-.4 .5 .5\n");
    Write("data/horse.txta", FormatCloud(Sphere(3).positions));
}

void FaultWorkspace::WriteSmallData() const
{
    Write("data/man.data", "2\na 0 0 0\nb 1 1 1\n");
    Write("a.mtx", "2\t2\n2\n0\t2\n1\t1\n1\n1\t4\n");
    Write("b.vec", "2\n5\n8\n");
    WriteImage(DrawDisc(8, 3), *this / "disc.bmp");
    WriteEigenTable(*this / "data/lpdata50NT.dat", 8);
}
}
