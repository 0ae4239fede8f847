#include "Models.h"
#include "File.h"
#include <cmath>
#include <cstdio>
#include <functional>
#include <random>
#include <unistd.h>

namespace tessarine::bench
{
namespace
{
constexpr double kTwoPi = 6.283185307179586;

/// How far the vertices of a torus stand out of its tube.
using Relief = std::function<double()>;

std::string VertexLine(int i, int j, int rings, int sides, const Relief& relief)
{
    const double u = kTwoPi * i / rings;
    const double v = kTwoPi * j / sides;
    const double tube = 0.4 + 0.03 * std::sin(7.0 * u) * std::cos(5.0 * v) + relief();
    char line[96];
    std::snprintf(line, sizeof line, "v %.6f %.6f %.6f\n", (1.0 + tube * std::cos(v)) * std::cos(u),
                  tube * std::sin(v), (1.0 + tube * std::cos(v)) * std::sin(u));
    return line;
}

std::string FaceLine(int a, int b, int c)
{
    return "f " + std::to_string(a) + ' ' + std::to_string(b) + ' ' + std::to_string(c) + '\n';
}

std::filesystem::path WriteTorus(const std::filesystem::path& path, int faces, const Relief& relief)
{
    const int rings = static_cast<int>(std::lround(std::sqrt(faces)));
    const int sides = faces / 2 / rings;
    const auto number = [&](int i, int j) { return (i % rings) * sides + j % sides + 1; };
    ReplacingFile file(path);
    for (int i = 0; i < rings; ++i)
    {
        for (int j = 0; j < sides; ++j)
        {
            file.Write(VertexLine(i, j, rings, sides, relief));
        }
    }
    for (int i = 0; i < rings; ++i)
    {
        for (int j = 0; j < sides; ++j)
        {
            file.Write(FaceLine(number(i, j), number(i, j + 1), number(i + 1, j + 1)));
            file.Write(FaceLine(number(i, j), number(i + 1, j + 1), number(i + 1, j)));
        }
    }
    file.Commit();
    ReadFile(path);
    return path;
}
}

TemporaryFolder::TemporaryFolder()
    : m_Path(std::filesystem::temp_directory_path() / ("tessarine-bench-" + std::to_string(getpid())))
{
    std::filesystem::create_directories(m_Path);
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_Path, ignored);
}

std::filesystem::path WriteClosedModel(const std::filesystem::path& folder, int faces)
{
    return WriteTorus(folder / ("torus-" + std::to_string(faces) + ".obj"), faces, [] { return 0.0; });
}

std::filesystem::path WriteScannedModel(const std::filesystem::path& folder, int faces)
{
    constexpr double kArea = kTwoPi * kTwoPi * 0.4; // of the torus without bumps
    return WriteNoisyModel(folder, faces, 0.1 * std::sqrt(2.0 * kArea / faces));
}

std::filesystem::path WriteNoisyModel(const std::filesystem::path& folder, int faces, double deviation)
{
    std::mt19937 random(1);
    std::normal_distribution<double> noise(0.0, deviation);
    return WriteTorus(folder / ("scan-" + std::to_string(faces) + ".obj"), faces,
                      [&] { return noise(random); });
}
}
