#include "SimultaneousLoop.h"
#include <algorithm>
#include <map>
#include <set>

namespace tessarine
{
namespace
{
using Corners = std::array<std::size_t, 3>;

/// A piece of a mesh; the triangles that the question is about come first. Rings are whole around their vertices only.
struct Piece
{
    std::vector<smVec3d> points;
    std::vector<Corners> triangles;
    std::size_t asked = 0; ///< triangles
};

/// For each vertex, the one that follows in its ring on each of its neighbours.
using Rings = std::vector<std::map<std::size_t, std::size_t>>;

Piece MakePiece(const IndexedMesh& mesh)
{
    Piece piece;
    piece.points.assign(mesh.positions.begin(), mesh.positions.end());
    for (std::size_t i = 0; i < mesh.indices.size(); i += 3)
    {
        Corners corners{};
        for (std::size_t c = 0; c < 3; ++c)
        {
            corners[c] = static_cast<std::size_t>(mesh.indices[i + c] - 1);
        }
        piece.triangles.push_back(corners);
    }
    piece.asked = piece.triangles.size();
    return piece;
}

Rings FindRings(const Piece& piece)
{
    Rings rings(piece.points.size());
    for (const Corners& t : piece.triangles)
    {
        for (std::size_t c = 0; c < 3; ++c)
        {
            rings[t[c]][t[(c + 1) % 3]] = t[(c + 2) % 3];
        }
    }
    return rings;
}

/// The vertices around one, in their order; fewer than there are where the ring is not whole.
std::vector<std::size_t> WalkRing(const std::map<std::size_t, std::size_t>& ring)
{
    std::vector<std::size_t> walk;
    for (std::size_t at = ring.begin()->first; ring.contains(at) && walk.size() < ring.size();
         at = ring.at(at))
    {
        walk.push_back(at);
    }
    return walk;
}

smVec3d MoveVertex(const Piece& piece, std::size_t vertex, const std::map<std::size_t, std::size_t>& ring)
{
    smVec3d sum;
    for (const auto& [neighbour, next] : ring)
    {
        sum += piece.points[neighbour];
    }
    const auto n = static_cast<double>(ring.size());
    return ring.size() <= 3 ? (1.0 - 3.0 * n / 16.0) * piece.points[vertex] + 3.0 / 16.0 * sum
                            : 5.0 / 8.0 * piece.points[vertex] + 3.0 / (8.0 * n) * sum;
}

/// Points on the rim of a piece are put anywhere.
Piece Subdivide(const Piece& piece)
{
    const Rings rings = FindRings(piece);
    Piece finer;
    for (std::size_t v = 0; v < piece.points.size(); ++v)
    {
        finer.points.push_back(MoveVertex(piece, v, rings[v]));
    }
    std::map<std::array<std::size_t, 2>, std::size_t> middles;
    const auto split = [&](std::size_t a, std::size_t b)
    {
        const std::array<std::size_t, 2> edge{std::min(a, b), std::max(a, b)};
        const auto [place, isNew] = middles.try_emplace(edge, finer.points.size());
        if (isNew)
        {
            const auto left = rings[a].find(b);
            const auto right = rings[b].find(a);
            const bool isWhole = left != rings[a].end() && right != rings[b].end();
            const smVec3d across =
                isWhole ? piece.points[left->second] + piece.points[right->second] : smVec3d();
            finer.points.push_back(3.0 / 8.0 * (piece.points[a] + piece.points[b]) + 1.0 / 8.0 * across);
        }
        return place->second;
    };
    for (const Corners& t : piece.triangles)
    {
        const Corners m{split(t[0], t[1]), split(t[1], t[2]), split(t[2], t[0])};
        finer.triangles.insert(finer.triangles.end(),
                               {{t[0], m[0], m[2]}, {m[0], t[1], m[1]}, {m[2], m[1], t[2]}, m});
    }
    finer.asked = 4 * piece.asked;
    return finer;
}

/// The triangles that are asked for, and those that touch them.
Piece CutOut(const Piece& piece)
{
    std::set<std::size_t> wanted;
    for (std::size_t i = 0; i < piece.asked; ++i)
    {
        wanted.insert(piece.triangles[i].begin(), piece.triangles[i].end());
    }
    Piece cut;
    cut.points = piece.points;
    cut.asked = piece.asked;
    for (std::size_t i = 0; i < piece.triangles.size(); ++i)
    {
        const Corners& t = piece.triangles[i];
        if (i < piece.asked ||
            std::any_of(t.begin(), t.end(), [&](std::size_t v) { return wanted.contains(v); }))
        {
            cut.triangles.push_back(t);
        }
    }
    return cut;
}

/// Where a vertex of valence 6 ends, by steps on its ring alone.
smVec3d FindLimit(const Piece& piece, std::size_t vertex, const std::vector<std::size_t>& ring)
{
    constexpr int kSteps = 60;
    smVec3d centre = piece.points[vertex];
    std::vector<smVec3d> around;
    for (const std::size_t neighbour : ring)
    {
        around.push_back(piece.points[neighbour]);
    }
    const std::size_t n = around.size();
    for (int step = 0; step < kSteps; ++step)
    {
        const std::vector<smVec3d> old = around;
        smVec3d sum;
        for (std::size_t i = 0; i < n; ++i)
        {
            around[i] = 3.0 / 8.0 * (centre + old[i]) + 1.0 / 8.0 * (old[(i + n - 1) % n] + old[(i + 1) % n]);
            sum += old[i];
        }
        centre = 5.0 / 8.0 * centre + 1.0 / 16.0 * sum;
    }
    return centre;
}
}

IndexedMesh SubdivideSimultaneously(const IndexedMesh& mesh)
{
    const Piece finer = Subdivide(MakePiece(mesh));
    IndexedMesh result;
    result.positions.insert(result.positions.end(), finer.points.begin(), finer.points.end());
    for (const Corners& t : finer.triangles)
    {
        result.AddFace({static_cast<std::int32_t>(t[0] + 1), static_cast<std::int32_t>(t[1] + 1),
                        static_cast<std::int32_t>(t[2] + 1)});
    }
    return result;
}

std::vector<LimitVertex> FindLimitVertices(const IndexedMesh& mesh, std::size_t face, int steps)
{
    Piece piece = MakePiece(mesh);
    std::swap(piece.triangles[0], piece.triangles[face]);
    piece.asked = 1;
    const Corners corners = piece.triangles[0];
    std::map<std::size_t, std::array<double, 2>> places{
        {corners[0], {0.0, 0.0}}, {corners[1], {1.0, 0.0}}, {corners[2], {0.0, 1.0}}};
    for (int step = 0; step < steps; ++step)
    {
        const Piece finer = Subdivide(CutOut(piece));
        for (std::size_t i = 0; i < piece.asked; ++i)
        {
            const Corners& t = piece.triangles[i];
            const Corners& m = finer.triangles[4 * i + 3];
            for (std::size_t c = 0; c < 3; ++c)
            {
                const auto& from = places.at(t[c]);
                const auto& to = places.at(t[(c + 1) % 3]);
                places[m[c]] = {(from[0] + to[0]) / 2.0, (from[1] + to[1]) / 2.0};
            }
        }
        piece = finer;
    }
    const Rings rings = FindRings(piece);
    std::vector<LimitVertex> vertices;
    for (const auto& [vertex, place] : places)
    {
        if (vertex != corners[0])
        {
            vertices.push_back({place[0], place[1], FindLimit(piece, vertex, WalkRing(rings[vertex]))});
        }
    }
    return vertices;
}
}
