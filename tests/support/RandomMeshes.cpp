#include "RandomMeshes.h"
#include <algorithm>
#include <random>

namespace tessarine
{
IndexedMesh Bipyramid(int n)
{
    IndexedMesh mesh = ClosedFan(n);
    mesh.positions[0] = smVec3d(0, 0, 1);
    mesh.positions.emplace_back(0, 0, -1);
    for (int i = 0; i < n; ++i)
    {
        mesh.AddFace({n + 2, (i + 1) % n + 2, i + 2});
    }
    return mesh;
}

IndexedMesh JoinInFirstCorner(IndexedMesh mesh, const IndexedMesh& other)
{
    const auto offset = static_cast<std::int32_t>(mesh.positions.size()) - 1;
    mesh.positions.insert(mesh.positions.end(), other.positions.begin() + 1, other.positions.end());
    for (const std::int32_t index : other.indices)
    {
        mesh.indices.push_back(index == 1 ? 1 : index + offset);
    }
    mesh.faceSizes.insert(mesh.faceSizes.end(), other.faceSizes.begin(), other.faceSizes.end());
    return mesh;
}

IndexedMesh Beside(IndexedMesh mesh, const IndexedMesh& other)
{
    const auto offset = static_cast<std::int32_t>(mesh.positions.size());
    mesh.positions.insert(mesh.positions.end(), other.positions.begin(), other.positions.end());
    for (const std::int32_t index : other.indices)
    {
        mesh.indices.push_back(index + offset);
    }
    mesh.faceSizes.insert(mesh.faceSizes.end(), other.faceSizes.begin(), other.faceSizes.end());
    return mesh;
}

IndexedMesh Shaken(IndexedMesh mesh, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> shake(-0.1, 0.1);
    for (smVec3d& position : mesh.positions)
    {
        position += smVec3d(shake(random), shake(random), shake(random));
    }
    return mesh;
}

IndexedMesh Pinched(IndexedMesh mesh, int count, unsigned seed)
{
    std::mt19937 random(seed);
    for (int i = 0; i < count; ++i)
    {
        const std::size_t corner = random() % (mesh.indices.size() / 3) * 3;
        mesh.positions[static_cast<std::size_t>(mesh.indices[corner] - 1)] =
            mesh.positions[static_cast<std::size_t>(mesh.indices[corner + 1] - 1)];
    }
    return mesh;
}

namespace
{
std::vector<std::int32_t> FaceOf(const IndexedMesh& mesh, std::size_t face, std::size_t offset)
{
    const auto begin = mesh.indices.begin() + static_cast<std::ptrdiff_t>(offset);
    return {begin, begin + mesh.faceSizes[face]};
}
}

IndexedMesh Spoilt(const IndexedMesh& mesh, unsigned seed)
{
    std::mt19937 random(seed);
    IndexedMesh spoilt;
    spoilt.positions = mesh.positions;
    std::size_t offset = 0;
    for (std::size_t i = 0; i < mesh.faceSizes.size(); ++i)
    {
        std::vector<std::int32_t> corners = FaceOf(mesh, i, offset);
        offset += corners.size();
        const unsigned fate = random() % 24;
        if (fate == 0)
        {
            std::reverse(corners.begin(), corners.end());
        }
        const int copies = fate == 1 ? 0 : (fate == 2 ? 2 : 1);
        for (int copy = 0; copy < copies; ++copy)
        {
            spoilt.indices.insert(spoilt.indices.end(), corners.begin(), corners.end());
            spoilt.faceSizes.push_back(static_cast<std::int32_t>(corners.size()));
        }
    }
    return spoilt;
}

IndexedMesh Soup(int vertices, int faces, unsigned seed)
{
    std::mt19937 random(seed);
    IndexedMesh mesh;
    mesh.positions.resize(static_cast<std::size_t>(vertices));
    for (int i = 0; i < faces; ++i)
    {
        const auto corners = static_cast<std::int32_t>(2 + random() % 4);
        for (int k = 0; k < corners; ++k)
        {
            mesh.indices.push_back(static_cast<std::int32_t>(1 + random() % static_cast<unsigned>(vertices)));
        }
        mesh.faceSizes.push_back(corners);
    }
    return Shaken(mesh, seed);
}

IndexedMesh TriangleSoup(int vertices, int faces, unsigned seed)
{
    std::mt19937 random(seed);
    IndexedMesh mesh;
    mesh.positions.resize(static_cast<std::size_t>(vertices));
    while (mesh.CountFaces() < static_cast<std::size_t>(faces))
    {
        const auto draw = [&]
        { return static_cast<std::int32_t>(1 + random() % static_cast<unsigned>(vertices)); };
        const std::int32_t a = draw();
        const std::int32_t b = draw();
        const std::int32_t c = draw();
        if (a != b && b != c && a != c)
        {
            mesh.AddFace({a, b, c});
        }
    }
    return Shaken(mesh, seed);
}

std::vector<smVec3d> SphereCloud(std::size_t count, unsigned seed)
{
    std::vector<smVec3d> points{{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}};
    std::mt19937 random(seed);
    const auto draw = [&random] { return static_cast<double>(random()) / 2147483648.0 - 1.0; };
    while (points.size() < count)
    {
        const smVec3d p(draw(), draw(), draw());
        if (p.Length() < 1.0 && p.Length() > 0.1)
        {
            points.push_back(p / p.Length());
        }
    }
    return points;
}
}
