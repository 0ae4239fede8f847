#include "Meshes.h"
#include "Capture.h"
#include <cmath>
#include <map>
#include <numbers>
#include <utility>

namespace tessarine
{
void IndexedMesh::AddFace(std::initializer_list<std::int32_t> corners)
{
    indices.insert(indices.end(), corners);
    faceSizes.push_back(static_cast<std::int32_t>(corners.size()));
}

IndexedMesh SingleTriangle()
{
    IndexedMesh mesh;
    mesh.positions = {smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(0, 1, 0)};
    mesh.AddFace({1, 2, 3});
    return mesh;
}

namespace
{
void AddCubeCorners(IndexedMesh& mesh)
{
    for (int corner = 0; corner < 8; ++corner)
    {
        mesh.positions.emplace_back(corner & 1, (corner >> 1) & 1, (corner >> 2) & 1);
    }
}

void AddFanCorners(IndexedMesh& mesh, int corners, double stepAngle)
{
    mesh.positions.emplace_back(0, 0, 0);
    for (int i = 0; i < corners; ++i)
    {
        mesh.positions.emplace_back(std::cos(i * stepAngle), std::sin(i * stepAngle), 0);
    }
}

/// Splits each triangle into four, with the new corners on the unit sphere.
IndexedMesh SplitOnSphere(const IndexedMesh& coarse)
{
    IndexedMesh fine;
    fine.positions = coarse.positions;
    std::map<std::pair<int, int>, int> middles;
    const auto findMiddle = [&](int a, int b)
    {
        const auto [entry, isNew] = middles.try_emplace(std::minmax(a, b), 0);
        if (isNew)
        {
            smVec3d middle = fine.positions[a - 1] + fine.positions[b - 1];
            middle.Normalize();
            fine.positions.push_back(middle);
            entry->second = static_cast<int>(fine.positions.size());
        }
        return entry->second;
    };
    for (std::size_t i = 0; i < coarse.indices.size(); i += 3)
    {
        const int a = coarse.indices[i];
        const int b = coarse.indices[i + 1];
        const int c = coarse.indices[i + 2];
        const int ab = findMiddle(a, b);
        const int bc = findMiddle(b, c);
        const int ca = findMiddle(c, a);
        fine.AddFace({a, ab, ca});
        fine.AddFace({ab, b, bc});
        fine.AddFace({ca, bc, c});
        fine.AddFace({ab, bc, ca});
    }
    return fine;
}
}

IndexedMesh Tetrahedron()
{
    IndexedMesh mesh;
    mesh.positions = {smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(0, 1, 0), smVec3d(0, 0, 1)};
    mesh.AddFace({1, 3, 2});
    mesh.AddFace({1, 2, 4});
    mesh.AddFace({2, 3, 4});
    mesh.AddFace({3, 1, 4});
    return mesh;
}

IndexedMesh CentredTetrahedron()
{
    IndexedMesh mesh;
    mesh.positions = {smVec3d(1, 1, 1), smVec3d(1, -1, -1), smVec3d(-1, 1, -1), smVec3d(-1, -1, 1)};
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({1, 4, 2});
    mesh.AddFace({2, 4, 3});
    mesh.AddFace({3, 4, 1});
    return mesh;
}

IndexedMesh QuadCube()
{
    IndexedMesh mesh;
    AddCubeCorners(mesh);
    mesh.AddFace({1, 3, 4, 2});
    mesh.AddFace({5, 6, 8, 7});
    mesh.AddFace({1, 2, 6, 5});
    mesh.AddFace({3, 7, 8, 4});
    mesh.AddFace({1, 5, 7, 3});
    mesh.AddFace({2, 4, 8, 6});
    return mesh;
}

IndexedMesh TriangleCube()
{
    const IndexedMesh quads = QuadCube();
    IndexedMesh mesh;
    AddCubeCorners(mesh);
    for (std::size_t i = 0; i < quads.indices.size(); i += 4)
    {
        mesh.AddFace({quads.indices[i], quads.indices[i + 1], quads.indices[i + 2]});
        mesh.AddFace({quads.indices[i], quads.indices[i + 2], quads.indices[i + 3]});
    }
    return mesh;
}

IndexedMesh OpenFan(int n)
{
    IndexedMesh mesh;
    AddFanCorners(mesh, n + 1, std::numbers::pi / n);
    for (int i = 0; i < n; ++i)
    {
        mesh.AddFace({1, i + 2, i + 3});
    }
    return mesh;
}

IndexedMesh ClosedFan(int n)
{
    IndexedMesh mesh;
    AddFanCorners(mesh, n, 2 * std::numbers::pi / n);
    for (int i = 0; i < n; ++i)
    {
        mesh.AddFace({1, i + 2, (i + 1) % n + 2});
    }
    return mesh;
}

IndexedMesh Grid(int n)
{
    IndexedMesh mesh;
    for (int y = 0; y <= n; ++y)
    {
        for (int x = 0; x <= n; ++x)
        {
            mesh.positions.emplace_back(static_cast<double>(x) / n, static_cast<double>(y) / n, 0);
        }
    }
    for (int y = 0; y < n; ++y)
    {
        for (int x = 0; x < n; ++x)
        {
            const int corner = y * (n + 1) + x + 1;
            mesh.AddFace({corner, corner + 1, corner + n + 2});
            mesh.AddFace({corner, corner + n + 2, corner + n + 1});
        }
    }
    return mesh;
}

IndexedMesh Sphere(int levels)
{
    IndexedMesh mesh;
    mesh.positions = {smVec3d(1, 0, 0),  smVec3d(0, 1, 0),  smVec3d(0, 0, 1),
                      smVec3d(-1, 0, 0), smVec3d(0, -1, 0), smVec3d(0, 0, -1)};
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({2, 4, 3});
    mesh.AddFace({4, 5, 3});
    mesh.AddFace({5, 1, 3});
    mesh.AddFace({2, 1, 6});
    mesh.AddFace({4, 2, 6});
    mesh.AddFace({5, 4, 6});
    mesh.AddFace({1, 5, 6});
    for (int level = 0; level < levels; ++level)
    {
        mesh = SplitOnSphere(mesh);
    }
    return mesh;
}

IndexedMesh Torus(int n, int m)
{
    IndexedMesh mesh;
    for (int i = 0; i < n; ++i)
    {
        for (int j = 0; j < m; ++j)
        {
            const double u = 2 * std::numbers::pi * i / n;
            const double v = 2 * std::numbers::pi * j / m;
            const double radius = 1 + 0.4 * std::cos(v);
            mesh.positions.emplace_back(radius * std::cos(u), radius * std::sin(u), 0.4 * std::sin(v));
        }
    }
    for (int i = 0; i < n; ++i)
    {
        for (int j = 0; j < m; ++j)
        {
            const int a = i * m + j + 1;
            const int b = (i + 1) % n * m + j + 1;
            const int c = (i + 1) % n * m + (j + 1) % m + 1;
            const int d = i * m + (j + 1) % m + 1;
            mesh.AddFace({a, b, c});
            mesh.AddFace({a, c, d});
        }
    }
    return mesh;
}

IndexedMesh QuadTorus(int n, int m)
{
    const IndexedMesh triangles = Torus(n, m);
    IndexedMesh quads;
    quads.positions = triangles.positions;
    for (std::size_t i = 0; i < triangles.indices.size(); i += 6)
    {
        const std::int32_t* two = &triangles.indices[i]; // a b c, a c d
        quads.AddFace({two[0], two[1], two[2], two[5]});
    }
    return quads;
}

IndexedMesh ThreeTrianglesOnOneEdge()
{
    IndexedMesh mesh;
    mesh.positions = {smVec3d(0, 0, 0), smVec3d(0, 0, 1), smVec3d(1, 0, 0), smVec3d(-1, 1, 0),
                      smVec3d(-1, -1, 0)};
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({2, 1, 4});
    mesh.AddFace({1, 2, 5});
    return mesh;
}

IndexedMesh BowTie()
{
    IndexedMesh mesh;
    mesh.positions = {smVec3d(0, 0, 0), smVec3d(1, -1, 0), smVec3d(1, 1, 0), smVec3d(-1, 1, 0),
                      smVec3d(-1, -1, 0)};
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({1, 4, 5});
    return mesh;
}

IndexedMesh DegenerateTriangle()
{
    IndexedMesh mesh;
    mesh.positions = {smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(2, 0, 0)};
    mesh.AddFace({1, 2, 3});
    return mesh;
}

IndexedMesh Prism(int n)
{
    IndexedMesh mesh;
    for (const double z : {-1.0, 1.0})
    {
        for (int i = 0; i < n; ++i)
        {
            const double angle = 2 * std::numbers::pi * i / n;
            mesh.positions.emplace_back(std::cos(angle), std::sin(angle), z);
        }
    }
    for (int i = 0; i < n; ++i)
    {
        mesh.indices.push_back(n - i);
    }
    mesh.faceSizes.push_back(n);
    for (int i = 0; i < n; ++i)
    {
        mesh.indices.push_back(n + 1 + i);
    }
    mesh.faceSizes.push_back(n);
    for (int i = 0; i < n; ++i)
    {
        const int next = (i + 1) % n;
        mesh.AddFace({i + 1, next + 1, n + next + 1, n + i + 1});
    }
    return mesh;
}

IndexedMesh NotchedFaces()
{
    IndexedMesh mesh;
    const auto addCorners = [&](std::initializer_list<std::pair<double, double>> corners)
    {
        for (const auto& [x, y] : corners)
        {
            mesh.positions.emplace_back(x, y, 0);
            mesh.indices.push_back(static_cast<std::int32_t>(mesh.positions.size()));
        }
        mesh.faceSizes.push_back(static_cast<std::int32_t>(corners.size()));
    };
    addCorners({{0, 0}, {1, -1}, {0, 1}, {-1, -1}});                // from its notch
    addCorners({{1, -1}, {3, -1}, {3, 0}, {2, 0}, {2, 1}, {1, 1}}); // from its outer corner
    addCorners({{5, 0.8},
                {4.4, -0.2},
                {3.4, -0.4},
                {4.2, -0.9},
                {4.1, -1.9},
                {5, -1.3},
                {5.9, -1.9},
                {5.8, -0.9},
                {6.6, -0.4},
                {5.6, -0.2}}); // from a point
    return mesh;
}

IndexedMesh StackedSquares(int n)
{
    IndexedMesh mesh;
    for (int i = 0; i < n; ++i)
    {
        mesh.positions.insert(mesh.positions.end(),
                              {smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(1, 1, 0), smVec3d(0, 1, 0)});
        mesh.AddFace({4 * i + 1, 4 * i + 2, 4 * i + 3, 4 * i + 4});
    }
    return mesh;
}

IndexedMesh Placed(IndexedMesh mesh, double scale, const smVec3d& offset)
{
    for (smVec3d& position : mesh.positions)
    {
        position = position * scale + offset;
    }
    return mesh;
}

DSSolid* LoadQuietly(MANBrepElementManager& manager, const IndexedMesh& mesh)
{
    const ConsoleCapture console;
    return manager.LoadSolid(mesh.positions, mesh.indices, mesh.faceSizes, false);
}
}
