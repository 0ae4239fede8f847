// The reconstruction from 90 silhouettes of 800 x 600 pixels: its field against the literal form, its surface against a
// library's, the welding and the octree, the memory of all, and how near the surface comes to the body.
#include "CloudOctree.h"
#include "Console.h"
#include "Distance2D.h"
#include "FieldPeers.h"
#include "HullCarver.h"
#include "IAProjectionCommand.h"
#include "LiteralField.h"
#include "MarchingCubes.h"
#include "Memory.h"
#include "PointWelder.h"
#include "ShapeSamples.h"
#include "SilhouettePicture.h"
#include "Timing.h"
#include <array>
#include <cmath>
#include <cstring>
#include <malloc.h>
#include <random>

using namespace tessarine;
using namespace tessarine::bench;

namespace
{
constexpr PicturePlane kPlane{800, 600, 1.2, 1.2};
constexpr double kMegabyte = 1 << 20;

/// A view of the body, its silhouette and the 2D field of that.
struct SampleView
{
    smMatrix44d view;
    Image silhouette;
    std::vector<std::uint8_t> image; ///< the same in three components
};

SampleView MakeSampleView(const ShapeMesh& mesh, int elevation, int azimuth)
{
    SampleView sample{IAProjectionCommand::MakeView(elevation, azimuth), {}, {}};
    sample.silhouette = DrawSilhouette(mesh, sample.view, kPlane);
    for (const std::uint8_t pixel : sample.silhouette.pixels)
    {
        sample.image.insert(sample.image.end(), 3, pixel);
    }
    return sample;
}

/// The body of the sample workspace, in the cube that its silhouettes show.
struct Body
{
    Body()
        : sample(FindSample()),
          mesh(MakeShapeMesh(sample.shape, sample.cell)),
          frame(FindUnitFrame(mesh.points))
    {
        for (smVec3d& point : mesh.points)
        {
            point = frame.ToUnit(point);
        }
        for (const int elevation : {-50, -20, 10, 40, 70})
        {
            for (int azimuth = 0; azimuth < 360; azimuth += 20)
            {
                views.push_back(MakeSampleView(mesh, elevation, azimuth));
            }
        }
    }

    static ShapeSample FindSample()
    {
        const std::vector<ShapeSample> samples = GetFitSamples();
        return *std::find_if(samples.begin(), samples.end(),
                             [](const ShapeSample& each) { return each.name == "bunny"; });
    }

    /// From a point to the body's surface, above zero outside.
    double GetDistance(const smVec3d& point) const
    {
        const smVec3d place = point * frame.half + frame.centre;
        const double distance = (MoveToSurface(sample.shape, place) - place).Length() / frame.half;
        return sample.shape(place) < 0.0 ? -distance : distance;
    }

    ShapeSample sample;
    ShapeMesh mesh;
    UnitFrame frame;
    std::vector<SampleView> views;
};

/// Builds each view's 2D field, as a run does, and passes it on.
/// @return the seconds of what it is passed to
template <class TAddView>
double AddViews(const Body& body, TAddView addView)
{
    std::vector<std::int32_t> layers(body.views.front().image.size() / 3);
    double seconds = 0.0;
    for (const SampleView& each : body.views)
    {
        BuildDistance2D(kPlane.width, kPlane.height, each.image.data(), layers.data());
        const double begin = ProcessorSeconds();
        addView(each.view, layers);
        seconds += ProcessorSeconds() - begin;
    }
    return seconds;
}

double Carve(const Body& body, DistanceField& field)
{
    HullCarver carver(field);
    return AddViews(body,
                    [&carver](const smMatrix44d& view, const std::vector<std::int32_t>& layers) {
                        carver.AddView(view, SilhouetteDistance(kPlane.width, kPlane.height, layers.data()));
                    });
}

std::vector<MCTriangle> MakeSurface(const DistanceField& field)
{
    std::vector<MCTriangle> triangles;
    GenerateMesh(field, 0.0F, triangles);
    return triangles;
}

ShapeMesh Weld(const std::vector<MCTriangle>& triangles)
{
    PointWelder welder;
    ShapeMesh mesh;
    for (const MCTriangle& triangle : triangles)
    {
        const int first = welder.Weld(triangle.p[0]);
        const int second = welder.Weld(triangle.p[1]);
        mesh.triangles.push_back({first, welder.Weld(triangle.p[2]), second}); // turned outward
    }
    mesh.points = welder.GetPoints();
    return mesh;
}

bool JudgeField(const Body& body, DistanceField& field)
{
    LiteralField literal;
    std::vector<double> seconds;
    for (int round = 0; round < 5; ++round)
    {
        field = DistanceField();
        seconds.push_back(Carve(body, field));
    }
    const double median = Median(seconds);
    const double literalSeconds =
        AddViews(body, [&literal](const smMatrix44d& view, const std::vector<std::int32_t>& layers)
                 { literal.AddView(view, kPlane.width, kPlane.height, layers); });
    std::printf("3D update of 90 views: %.3f s, literally %.2f s\n", median, literalSeconds);
    const std::vector<float>& values = field.GetValues();
    const bool isSame =
        std::memcmp(values.data(), literal.GetValues().data(), sizeof(float) * values.size()) == 0;
    std::printf("%s\n",
                isSame ? "every bit is that of the literal form" : "the literal form gives something else");
    const bool isFast = Judge("3D update of 90 views, seconds", median, 1.5);
    return Judge("times faster than the literal form", literalSeconds / median, 20.0, false) && isFast &&
           isSame;
}

bool JudgeSurface(const DistanceField& field)
{
    PeerSurface peer(field.GetValues());
    std::size_t triangles = 0;
    std::size_t peers = 0;
    const std::vector<double> seconds = Race({{"surface", {}, [&] { triangles = MakeSurface(field).size(); }},
                                              {"peer", {}, [&] { peers = peer.Run(); }}},
                                             21);
    std::printf("surface %.2f ms of %zu triangles; the library %.2f ms of %zu\n", 1e3 * seconds[0], triangles,
                1e3 * seconds[1], peers);
    return Judge("marching cubes, share of the library's time", seconds[0] / seconds[1], 1.0);
}

/// Triangles side by side on a square of `side` by `side` squares: each inner point comes six times.
std::vector<MCTriangle> MakeSheet(int side)
{
    std::vector<MCTriangle> triangles;
    const auto point = [](int x, int y)
    { return smVec3f(static_cast<float>(x) * 0.01F, static_cast<float>(y) * 0.01F, 1.0F); };
    for (int y = 0; y < side; ++y)
    {
        for (int x = 0; x < side; ++x)
        {
            triangles.push_back({{point(x, y), point(x + 1, y), point(x + 1, y + 1)}});
            triangles.push_back({{point(x, y), point(x + 1, y + 1), point(x, y + 1)}});
        }
    }
    return triangles;
}

bool JudgeWelding()
{
    const std::vector<MCTriangle> small = MakeSheet(175);
    const std::vector<MCTriangle> large = MakeSheet(700);
    const std::vector<double> seconds =
        Race({{"small", {}, [&] { Weld(small); }}, {"large", {}, [&] { Weld(large); }}}, 7);
    std::printf("welding %zu triangles %.1f ms, %zu triangles %.1f ms\n", small.size(), 1e3 * seconds[0],
                large.size(), 1e3 * seconds[1]);
    // The larger lists leave the caches; a search would take 256 times as long.
    return Judge("welding 16 times as many, times as long", seconds[1] / seconds[0], 40.0);
}

bool JudgeOctree(const DistanceField& field)
{
    std::mt19937 random(1);
    std::normal_distribution<double> coordinate;
    std::vector<smVec3d> points;
    for (int i = 0; i < 500000; ++i)
    {
        smVec3d point(coordinate(random), coordinate(random), coordinate(random));
        point.Normalize();
        points.push_back(point);
    }
    double sum = 0.0;
    const std::vector<double> seconds = Race({{"octree",
                                               {},
                                               [&]
                                               {
                                                   CloudOctree tree;
                                                   tree.Build(points, kBodyOctree);
                                                   for (const smVec3d& point : points)
                                                   {
                                                       sum += double{field.GetValueAt(point)};
                                                   }
                                               }}},
                                             3);
    return Judge("octree and samples of 500k points, seconds", seconds[0], 2.0) && std::isfinite(sum);
}

double GetHeldMegabytes()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd) / kMegabyte;
}

/// Everything that a run has at any time, at once.
bool JudgeMemory(const Body& body)
{
    const std::vector<smVec3d> cloud = ScatterPoints(body.sample.shape, body.mesh, body.sample.cloudSize);
    const double before = GetHeldMegabytes();
    DistanceField field;
    const HullCarver carver(field);
    const std::vector<std::int32_t> layers(body.views.front().image.size() / 3);
    Carve(body, field);
    const std::vector<MCTriangle> triangles = MakeSurface(field);
    const ShapeMesh mesh = Weld(triangles);
    CloudOctree tree;
    tree.Build(cloud, kBodyOctree);
    return Judge("memory of a run, MB", GetHeldMegabytes() - before, 64.0);
}

/// Whether a pixel that is set lies within so many pixels of this one, along either axis.
bool IsNearSet(const Image& image, int x, int y, int reach)
{
    for (int v = std::max(0, y - reach); v <= std::min(image.height - 1, y + reach); ++v)
    {
        for (int u = std::max(0, x - reach); u <= std::min(image.width - 1, x + reach); ++u)
        {
            if (image.pixels[static_cast<std::size_t>(v) * static_cast<std::size_t>(image.width) +
                             static_cast<std::size_t>(u)] != 0)
            {
                return true;
            }
        }
    }
    return false;
}

void TellNearness(const Body& body, const ShapeMesh& hull)
{
    double sum = 0.0;
    double farthestOut = 0.0;
    double farthestIn = 0.0;
    for (const smVec3d& point : hull.points)
    {
        const double distance = body.GetDistance(point);
        sum += std::abs(distance);
        farthestOut = std::max(farthestOut, distance);
        farthestIn = std::min(farthestIn, distance);
    }
    std::printf("surface to body: mean %.4f, outward to %.4f, inward to %.4f of a half side of its cube\n",
                sum / static_cast<double>(hull.points.size()), farthestOut, farthestIn);
}

/// How far a pixel is from the nearest one that is set, along either axis.
int GetReach(const Image& image, int x, int y)
{
    int reach = 0;
    while (!IsNearSet(image, x, y, reach))
    {
        ++reach;
    }
    return reach;
}

/// The outline's pixels belong to the body, and the surface goes through their middle: so a pixel is what it may leave
/// free anywhere, and half a cell of the grid where a grid point lies on an outline.
bool JudgeCover(const Body& body, const ShapeMesh& hull)
{
    constexpr int kHalfCell = 6; // of 0.04 * 800 / 2.4 pixels
    std::size_t given = 0;
    std::size_t added = 0;
    std::array<std::size_t, 2 * kHalfCell>
        atReach{}; // of the given pixels; the last holds all that are farther
    for (const SampleView& each : body.views)
    {
        const Image seen = DrawSilhouette(hull, each.view, kPlane);
        for (std::size_t i = 0; i < seen.pixels.size(); ++i)
        {
            if (each.silhouette.pixels[i] == 0)
            {
                added += seen.pixels[i] != 0 ? 1 : 0;
                continue;
            }
            ++given;
            const int reach =
                GetReach(seen, static_cast<int>(i) % seen.width, static_cast<int>(i) / seen.width);
            ++atReach[std::min<std::size_t>(static_cast<std::size_t>(reach), atReach.size() - 1)];
        }
    }
    const auto percent = [given](std::size_t count)
    { return 100.0 * static_cast<double>(count) / static_cast<double>(given); };
    std::printf(
        "silhouettes: the surface covers %.2f %% of the given pixels, %.2f %% to within a pixel, %.2f %% to "
        "within two, and adds %.2f %%\n",
        percent(atReach[0]), percent(atReach[0] + atReach[1]), percent(atReach[0] + atReach[1] + atReach[2]),
        percent(added));
    std::size_t farthest = atReach.size() - 1;
    while (atReach[farthest] == 0)
    {
        --farthest;
    }
    const bool isNear = Judge("given pixels farther than one pixel from the surface, percent",
                              100.0 - percent(atReach[0] + atReach[1]), 0.5);
    return Judge("the farthest of them, pixels (half a cell)", static_cast<double>(farthest), kHalfCell) &&
           isNear;
}
}

int main()
{
    KeepFreedMemory(); // as the programs do
    DebugConsole().SetHeard(false);
    const Body body;
    DistanceField field;
    bool holds = JudgeField(body, field);
    holds = JudgeSurface(field) && holds;
    holds = JudgeWelding() && holds;
    holds = JudgeOctree(field) && holds;
    holds = JudgeMemory(body) && holds;
    const ShapeMesh hull = Weld(MakeSurface(field));
    TellNearness(body, hull);
    holds = JudgeCover(body, hull) && holds;
    return holds ? 0 : 1;
}
