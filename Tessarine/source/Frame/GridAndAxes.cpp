#include "GridAndAxes.h"
#include <GL/gl.h>
#include <array>

namespace tessarine
{
namespace
{
using Point = std::array<float, 3>;

// ---- the grid ----

constexpr int kGridLines = 64;
constexpr float kGridEnd = 15.75F;
constexpr float kGridStep = 0.5F;

void SetGridColor(int line)
{
    const float grey = (line + 1) % 10 == 0 ? 0.0F : 0.3F;
    glColor3f(grey, grey, grey);
}

// ---- the axes ----

constexpr float kAxisLength = 5.0F;
constexpr float kHeadBase = 4.9F;
constexpr float kHeadRadius = 0.04F;
constexpr float kHeadDiagonal = 0.028F;
constexpr int kHeadCorners = 8;

/// The ring around the base of an arrow head, in the two axes across.
constexpr std::array<std::array<float, 2>, kHeadCorners> kHeadRing{{{kHeadRadius, 0.0F},
                                                                    {kHeadDiagonal, kHeadDiagonal},
                                                                    {0.0F, kHeadRadius},
                                                                    {-kHeadDiagonal, kHeadDiagonal},
                                                                    {-kHeadRadius, 0.0F},
                                                                    {-kHeadDiagonal, -kHeadDiagonal},
                                                                    {0.0F, -kHeadRadius},
                                                                    {kHeadDiagonal, -kHeadDiagonal}}};

/// A point by its place along an axis and its offsets along the next two.
Point MakePoint(std::size_t axis, float along, float second, float third)
{
    Point point{};
    point[axis] = along;
    point[(axis + 1) % 3] = second;
    point[(axis + 2) % 3] = third;
    return point;
}

void SetAxisColor(std::size_t axis)
{
    Point color{};
    color[axis] = 1.0F;
    glColor3fv(color.data());
}

void AddLine(const Point& from, const Point& to)
{
    glVertex3fv(from.data());
    glVertex3fv(to.data());
}

/// Kept    The rim is drawn twice.
void AddArrowHead(std::size_t axis)
{
    const Point base = MakePoint(axis, kHeadBase, 0.0F, 0.0F);
    const Point tip = MakePoint(axis, kAxisLength, 0.0F, 0.0F);
    for (std::size_t corner = 0; corner < kHeadCorners; ++corner)
    {
        const auto& from = kHeadRing[corner];
        const auto& to = kHeadRing[(corner + 1) % kHeadCorners];
        const Point a = MakePoint(axis, kHeadBase, from[0], from[1]);
        const Point b = MakePoint(axis, kHeadBase, to[0], to[1]);
        AddLine(a, b);
        AddLine(a, b);
        AddLine(base, tip);
    }
}
}

void DrawGrid()
{
    glDisable(GL_LIGHTING);
    glLineWidth(1.0F);
    glBegin(GL_LINES);
    for (int line = 0; line < kGridLines; ++line)
    {
        const float place = static_cast<float>(line) * kGridStep - kGridEnd;
        SetGridColor(line);
        AddLine({-kGridEnd, 0.0F, place}, {kGridEnd, 0.0F, place});
    }
    for (int line = 0; line < kGridLines; ++line)
    {
        const float place = static_cast<float>(line) * kGridStep - kGridEnd;
        SetGridColor(line);
        AddLine({place, 0.0F, -kGridEnd}, {place, 0.0F, kGridEnd});
    }
    glEnd();
    glEnable(GL_LIGHTING);
}

void DrawAxes()
{
    glDisable(GL_LIGHTING);
    glBegin(GL_LINES);
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        SetAxisColor(axis);
        AddLine({0.0F, 0.0F, 0.0F}, MakePoint(axis, kAxisLength, 0.0F, 0.0F));
    }
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        SetAxisColor(axis);
        AddArrowHead(axis);
    }
    glEnd();
    glEnable(GL_LIGHTING);
}
}
