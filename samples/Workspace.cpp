#include "Workspace.h"
#include "EigenTable.h"
#include "File.h"
#include "IAProjectionCommand.h"
#include "Image.h"
#include "Path.h"
#include "Pebble.h"
#include "ShapeMesh.h"
#include "ShapeSamples.h"
#include "SilhouettePicture.h"
#include "TextFile.h"
#include <algorithm>
#include <optional>
#include <string>

namespace tessarine
{
namespace
{
namespace fs = std::filesystem;

void MoveInto(const UnitFrame& frame, std::vector<smVec3d>& points)
{
    for (smVec3d& point : points)
    {
        point = frame.ToUnit(point);
    }
}

std::string FormatPoint(const smVec3d& p)
{
    return Decimal(p.x) + ' ' + Decimal(p.y) + ' ' + Decimal(p.z) + '\n';
}

/// @param material  one that covers the model, from the library of the same name; empty for none. It is named
///                  for each face anew, as an import gives it to the first face behind a line alone
std::string FormatObj(const ShapeMesh& mesh, const std::string& material)
{
    std::string text = material.empty() ? "" : "mtllib " + material + ".mtl\n";
    for (const smVec3d& point : mesh.points)
    {
        text += "v " + FormatPoint(point);
    }
    for (const smVec3d& normal : mesh.normals)
    {
        text += "vn " + FormatPoint(normal);
    }
    if (!material.empty())
    {
        for (const smVec3d& point : mesh.points)
        {
            text += "vt " + Decimal(0.5 + 0.45 * point.x) + ' ' + Decimal(0.5 + 0.45 * point.y) + '\n';
        }
    }
    for (const auto& triangle : mesh.triangles)
    {
        text += (material.empty() ? "" : "usemtl " + material + '\n') + 'f';
        for (const int index : triangle)
        {
            const std::string number = std::to_string(index + 1);
            text += ' ' + number + '/' + (material.empty() ? "" : number) + '/' + number;
        }
        text += '\n';
    }
    return text;
}

/// Fur: brown streaks from above to below, lighter below.
Image DrawFur()
{
    constexpr int kSide = 256;
    Image image{kSide, kSide, 3, {}};
    std::vector<unsigned> streaks(kSide, 0);
    unsigned state = 1;
    for (int y = 0; y < kSide; ++y)
    {
        for (int x = 0; x < kSide; ++x)
        {
            state = state * 1664525U + 1013904223U;
            unsigned& streak = streaks[static_cast<std::size_t>(x)];
            streak = (3 * streak + (state >> 26U)) / 4;
            const unsigned light = 190U - static_cast<unsigned>(y) / 4 + streak;
            image.pixels.insert(image.pixels.end(),
                                {static_cast<std::uint8_t>(light), static_cast<std::uint8_t>(light * 4 / 5),
                                 static_cast<std::uint8_t>(light * 3 / 5)});
        }
    }
    return image;
}

void WriteFur(const fs::path& folder)
{
    WriteText(folder / "bunny.mtl",
              "newmtl bunny\nKa 0.3 0.3 0.3\nKd 0.9 0.9 0.9\nKs 0.1 0.1 0.1\nmap_Kd bunny.png\n");
    WriteImage(DrawFur(), folder / "bunny.png");
}

void WriteCloud(const fs::path& path, const std::vector<smVec3d>& points)
{
    std::string text = std::to_string(points.size()) + '\n';
    for (const smVec3d& point : points)
    {
        text += FormatPoint(point);
    }
    WriteText(path, text);
}

/// In centimetres, standing on the ground.
void WriteLabelledPoints(const fs::path& path, const std::vector<smVec3d>& points)
{
    constexpr double kHalfHeight = 88.0;
    std::string text = std::to_string(points.size()) + '\n';
    for (std::size_t i = 0; i < points.size(); ++i)
    {
        text += 'p' + std::to_string(i + 1) + ' ' + FormatPoint((points[i] + smVec3d(0, 1, 0)) * kHalfHeight);
    }
    WriteText(path, text);
}

std::string FormatCameras(const std::vector<smMatrix44d>& views, const PicturePlane& plane)
{
    std::string text = std::to_string(views.size()) + '\n' + std::to_string(plane.width) + ' ' +
                       std::to_string(plane.height) + '\n';
    for (const smMatrix44d& view : views)
    {
        for (int i = 0; i < 16; ++i)
        {
            text += Decimal(view.At(i / 4, i % 4)) + (i < 15 ? ' ' : '\n');
        }
    }
    return text;
}

fs::path GetImagePath(const fs::path& folder, std::size_t view)
{
    return folder / (std::to_string(view + 1) + ".bmp");
}

/// As the sampling looks at its points.
std::vector<smMatrix44d> GetViewsAllAround()
{
    std::vector<smMatrix44d> views;
    for (const int elevation : {-50, -20, 10, 40, 70})
    {
        for (int azimuth = 0; azimuth < 360; azimuth += 20)
        {
            views.push_back(IAProjectionCommand::MakeView(elevation, azimuth));
        }
    }
    return views;
}

void MakeFolder(const fs::path& folder)
{
    std::error_code error;
    fs::create_directories(folder, error);
    if (error)
    {
        throw FileError("cannot make the folder " + folder.string() + ": " + error.message() +
                        "; name a folder where you may write, or one that is not there yet");
    }
}

/// The folder of this name in whatever case it is there; made where there is none.
fs::path FindSubfolder(const fs::path& folder, const std::string& name)
{
    fs::path found = folder;
    {
        const CurrentFolderGuard backAgain;
        SetCurrentFolder(folder);
        found /= ResolveForReading(name);
    }
    MakeFolder(found);
    return found;
}

void WriteSilhouettes(const fs::path& folder, const ShapeMesh& mesh, const WorkspaceSize& size)
{
    constexpr double kHalf = 1.2; // of the plane on which the distance field looks
    const PicturePlane plane{size.imageWidth, size.imageHeight, kHalf, kHalf};
    const std::vector<smMatrix44d> views = GetViewsAllAround();
    for (std::size_t i = 0; i < views.size(); ++i)
    {
        WriteImage(DrawSilhouette(mesh, views[i], plane), GetImagePath(folder, i));
    }
    WriteText(folder / "param.dat", FormatCameras(views, plane));
}

/// Where a cut goes, on the plane of its view.
struct MarkerLine
{
    std::array<double, 2> from;
    std::array<double, 2> to;
};

Image InColour(const Image& grey)
{
    Image image{grey.width, grey.height, 3, {}};
    for (const std::uint8_t pixel : grey.pixels)
    {
        image.pixels.insert(image.pixels.end(), 3, pixel);
    }
    return image;
}

/// From ahead, from both sides and from behind; the last view has no line.
void WriteMarkedSilhouettes(const fs::path& folder, const ShapeMesh& mesh, const WorkspaceSize& size)
{
    constexpr int kHalf = 2; // as the sampling has it
    const std::optional<MarkerLine> lines[] = {MarkerLine{{-0.3, 0.62}, {0.3, 0.62}}, // the neck
                                               MarkerLine{{-0.4, 0.0}, {0.4, 0.06}},  // the waist
                                               MarkerLine{{0.3, 0.1}, {0.36, 0.6}},   // an arm
                                               std::nullopt};
    const PicturePlane plane{size.imageWidth, size.imageHeight, kHalf, kHalf};
    std::vector<smMatrix44d> views;
    for (const std::optional<MarkerLine>& line : lines)
    {
        views.push_back(IAProjectionCommand::MakeView(0, 90 * static_cast<int>(views.size())));
        Image image = InColour(DrawSilhouette(mesh, views.back(), plane));
        if (line)
        {
            DrawMarkerLine(image, plane, line->from, line->to);
        }
        WriteImage(image, GetImagePath(folder, views.size() - 1));
    }
    WriteText(folder / "param.dat", FormatCameras(views, plane));
    WriteText(folder / "unitize.dat", "0.000000 0.000000 0.000000 1.000000 \n" + std::to_string(kHalf) + ' ' +
                                          std::to_string(kHalf) + " \n");
}

/// A model and points on it, both in the unit cube of the model.
struct Pair
{
    ShapeMesh mesh;
    std::vector<smVec3d> cloud;
};

Pair MakePair(const ShapeSample& sample, const WorkspaceSize& size)
{
    Pair pair;
    pair.mesh = MakeShapeMesh(sample.shape, sample.cell * size.coarseness);
    pair.cloud = ScatterPoints(sample.shape, pair.mesh, sample.cloudSize);
    const UnitFrame frame = FindUnitFrame(pair.mesh.points);
    MoveInto(frame, pair.mesh.points);
    MoveInto(frame, pair.cloud);
    return pair;
}
}

void WriteWorkspace(const fs::path& folder, const WorkspaceSize& size)
{
    MakeFolder(folder);
    const fs::path data = FindSubfolder(folder, "data");
    FindSubfolder(folder, "data1");
    constexpr int kMostValence = 50;
    WriteEigenTable(data / "lpdata50NT.dat", kMostValence);
    constexpr int kPebbleCells = 16;
    WritePebble(folder, kPebbleCells);
    for (const ShapeSample& sample : GetFitSamples())
    {
        const Pair pair = MakePair(sample, size);
        const bool hasFur = sample.name == "bunny";
        WriteText(folder / (sample.name + ".obj"), FormatObj(pair.mesh, hasFur ? sample.name : ""));
        WriteCloud(data / (sample.name + ".txta"), pair.cloud);
        if (hasFur)
        {
            WriteFur(folder);
            WriteSilhouettes(FindSubfolder(data, sample.name), pair.mesh, size);
        }
    }
    const Pair man = MakePair(GetManSample(), size);
    WriteText(folder / "man.obj", FormatObj(man.mesh, ""));
    WriteLabelledPoints(data / "man.data", man.cloud);
    WriteMarkedSilhouettes(FindSubfolder(data, "man"), man.mesh, size);
}
}
