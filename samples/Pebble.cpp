#include "Pebble.h"
#include "TextFile.h"
#include <array>
#include <cmath>
#include <map>
#include <string>
#include <vector>

namespace tessarine
{
namespace
{
using Point = std::array<double, 3>;
using Cell = std::array<int, 3>;

/// A point of the cube's surface by its three counts from 0 to n, blown up to a flattened, dented stone.
Point PlaceOnStone(const Cell& cell, int n)
{
    Point p;
    double length = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        p[axis] = 2.0 * cell[axis] / n - 1.0;
        length += p[axis] * p[axis];
    }
    length = std::sqrt(length);
    const double dent = 1.0 + 0.08 * std::sin(3.0 * p[0] + 1.0) * std::cos(2.0 * p[1]) + 0.05 * p[2] * p[0];
    return {1.3 * dent * p[0] / length, 0.7 * dent * p[1] / length, dent * p[2] / length};
}

/// The stone's vertices and quads, side by side of the cube, every quad turned outward.
class Stone
{
public:
    explicit Stone(int n) : m_nCells(n)
    {
        for (std::size_t axis = 0; axis < 3; ++axis)
        {
            AddSide(axis, 0);
            AddSide(axis, n);
        }
    }

    const std::vector<Point>& GetPoints() const { return m_Points; }
    const std::vector<std::array<int, 4>>& GetQuads() const { return m_Quads; }

private:
    void AddSide(std::size_t axis, int level)
    {
        const std::size_t u = (axis + 1) % 3;
        const std::size_t v = (axis + 2) % 3;
        for (int j = 0; j < m_nCells; ++j)
        {
            for (int i = 0; i < m_nCells; ++i)
            {
                const auto corner = [&](int di, int dj)
                {
                    Cell cell{};
                    cell[axis] = level;
                    cell[u] = i + di;
                    cell[v] = j + dj;
                    return NumberOf(cell);
                };
                const int a = corner(0, 0), b = corner(1, 0), c = corner(1, 1), d = corner(0, 1);
                m_Quads.push_back(level == 0 ? std::array<int, 4>{a, d, c, b}
                                             : std::array<int, 4>{a, b, c, d});
            }
        }
    }

    int NumberOf(const Cell& cell)
    {
        const auto [entry, isNew] = m_Numbers.try_emplace(cell, static_cast<int>(m_Points.size()) + 1);
        if (isNew)
        {
            m_Points.push_back(PlaceOnStone(cell, m_nCells));
        }
        return entry->second;
    }

    int m_nCells;
    std::map<Cell, int> m_Numbers;
    std::vector<Point> m_Points;
    std::vector<std::array<int, 4>> m_Quads;
};

std::string FormatModel(const Stone& stone)
{
    std::string text = "# A pebble.\nmtllib pebble.mtl\n";
    for (const Point& p : stone.GetPoints())
    {
        text += "v " + Decimal(p[0]) + ' ' + Decimal(p[1]) + ' ' + Decimal(p[2]) + '\n';
    }
    for (const Point& p : stone.GetPoints())
    {
        text += "vt " + Decimal(0.5 + p[0] / 3.0) + ' ' + Decimal(0.5 + p[2] / 3.0) + '\n';
    }
    const auto corner = [](int number)
    { return std::to_string(number) + '/' + std::to_string(number) + ' '; };
    const auto& quads = stone.GetQuads();
    for (std::size_t i = 0; i < quads.size(); ++i)
    {
        if (i == 0 || i == quads.size() / 2)
        {
            text += i == 0 ? "usemtl stone\n" : "usemtl moss\n";
        }
        const auto& q = quads[i];
        text += "f " + corner(q[0]) + corner(q[1]) + corner(q[2]) + '\n';
        text += "f " + corner(q[0]) + corner(q[2]) + corner(q[3]) + '\n';
    }
    return text;
}

/// Grey speckles, by a small linear congruential generator.
std::string FormatTexture(int side)
{
    std::string bytes = "P6\n" + std::to_string(side) + ' ' + std::to_string(side) + "\n255\n";
    unsigned state = 1;
    for (int i = 0; i < side * side; ++i)
    {
        state = state * 1664525U + 1013904223U;
        const unsigned grey = 140U + (state >> 26U);
        bytes.append({static_cast<char>(grey), static_cast<char>(grey - 6U), static_cast<char>(grey - 14U)});
    }
    return bytes;
}
}

void WritePebble(const std::filesystem::path& folder, int n)
{
    std::filesystem::create_directories(folder);
    WriteText(folder / "pebble.obj", FormatModel(Stone(n)));
    WriteText(folder / "pebble.mtl",
              "newmtl stone\nKa 0.3 0.3 0.3\nKd 0.8 0.8 0.8\nKs 0.2 0.2 0.2\nmap_Kd pebble.ppm\n"
              "newmtl moss\nKa 0.1 0.2 0.1\nKd 0.3 0.6 0.2\nKs 0.0 0.0 0.0\n");
    WriteText(folder / "pebble.ppm", FormatTexture(64));
}
}
