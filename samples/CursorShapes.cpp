#include "CursorShapes.h"
#include <algorithm>
#include <cmath>
#include <functional>

namespace tessarine
{
namespace
{
constexpr int kSize = 32;
constexpr int kSamples = 8; ///< a pixel's side is looked at in so many places
constexpr double kRim = 1.1;
constexpr double kPi = 3.14159265358979323846;

struct Point
{
    double x = 0.0; ///< pixels from the left
    double y = 0.0; ///< from the top
};

Point operator+(const Point& a, const Point& b)
{
    return {a.x + b.x, a.y + b.y};
}
Point operator-(const Point& a, const Point& b)
{
    return {a.x - b.x, a.y - b.y};
}
Point operator*(const Point& a, double t)
{
    return {a.x * t, a.y * t};
}
double Dot(const Point& a, const Point& b)
{
    return a.x * b.x + a.y * b.y;
}
double Length(const Point& a)
{
    return std::sqrt(Dot(a, a));
}

/// The angle in degrees, clockwise from the right.
Point PointOnCircle(const Point& centre, double radius, double angle)
{
    return centre + Point{std::cos(angle * kPi / 180.0), std::sin(angle * kPi / 180.0)} * radius;
}

/// How far a point lies outside a shape, in pixels; negative inside.
using Shape = std::function<double(const Point&)>;

Shape Disc(const Point& centre, double radius)
{
    return [=](const Point& p) { return Length(p - centre) - radius; };
}

Shape Ring(const Point& centre, double radius, double width)
{
    return [=](const Point& p) { return std::abs(Length(p - centre) - radius) - width / 2; };
}

Shape Line(const Point& from, const Point& to, double width)
{
    return [=](const Point& p)
    {
        const Point way = to - from;
        const double t = std::clamp(Dot(p - from, way) / Dot(way, way), 0.0, 1.0);
        return Length(p - (from + way * t)) - width / 2;
    };
}

/// A piece of a ring, between two angles in degrees, clockwise from the right.
Shape Arc(const Point& centre, double radius, double from, double to, double width)
{
    const double middle = (from + to) / 2;
    const Point towards = PointOnCircle({0, 0}, 1, middle);
    const double openness = std::cos((to - from) / 2 * kPi / 180.0);
    const Point first = PointOnCircle(centre, radius, from);
    const Point last = PointOnCircle(centre, radius, to);
    return [=](const Point& p)
    {
        const double distance = Length(p - centre);
        const bool isBeside = Dot(p - centre, towards) >= distance * openness;
        const double toMiddle =
            isBeside ? std::abs(distance - radius) : std::min(Length(p - first), Length(p - last));
        return toMiddle - width / 2;
    };
}

/// A triangle with its corners in clockwise order on the screen. Outside it is a little smaller than the true
/// distance at the corners, which makes their rims pointed.
Shape Triangle(const Point& a, const Point& b, const Point& c)
{
    const auto side = [](const Point& from, const Point& to, const Point& p)
    {
        const Point way = to - from;
        return Dot(p - from, {way.y, -way.x}) / Length(way);
    };
    return [=](const Point& p) { return std::max({side(a, b, p), side(b, c, p), side(c, a, p)}); };
}

/// A head whose point is at `tip`, looking in the direction of the angle (degrees, clockwise from the right).
Shape ArrowHead(const Point& tip, double angle, double length, double halfWidth)
{
    const Point ahead = PointOnCircle({0, 0}, 1, angle);
    const Point aside{-ahead.y, ahead.x};
    const Point foot = tip - ahead * length;
    return Triangle(tip, foot + aside * halfWidth, foot - aside * halfWidth);
}

Shape Together(std::vector<Shape> shapes)
{
    return [shapes = std::move(shapes)](const Point& p)
    {
        double least = 1e9;
        for (const Shape& shape : shapes)
        {
            least = std::min(least, shape(p));
        }
        return least;
    };
}

/// At each place of a pixel white, rim or nothing; the pixel is their mean.
Image Paint(const Shape& shape)
{
    Image image{kSize, kSize, 4, {}};
    image.pixels.resize(std::size_t{kSize} * kSize * 4);
    constexpr int kPlaces = kSamples * kSamples;
    for (int y = 0; y < kSize; ++y)
    {
        for (int x = 0; x < kSize; ++x)
        {
            int white = 0;
            int rim = 0;
            for (int i = 0; i < kPlaces; ++i)
            {
                const int row = i / kSamples;
                const double distance =
                    shape({x + (i % kSamples + 0.5) / kSamples, y + (row + 0.5) / kSamples});
                white += distance <= 0.0 ? 1 : 0;
                rim += distance > 0.0 && distance <= kRim ? 1 : 0;
            }
            const int covered = white + rim;
            std::uint8_t* pixel =
                image.pixels.data() + (static_cast<std::size_t>(kSize - 1 - y) * kSize + x) * 4;
            const int brightness = covered == 0 ? 0 : (255 * white + covered / 2) / covered;
            std::fill_n(pixel, 3, static_cast<std::uint8_t>(brightness));
            pixel[3] = static_cast<std::uint8_t>((255 * covered + kPlaces / 2) / kPlaces);
        }
    }
    return image;
}

/// A ball between two arrows around it: the eye goes around the model.
Shape OrbitShape()
{
    const Point centre{16, 16};
    constexpr double kRadius = 11.2;
    std::vector<Shape> shapes = {Disc(centre, 4.0)};
    for (const double start : {-165.0, 15.0})
    {
        shapes.push_back(Arc(centre, kRadius, start, start + 118, 2.2));
        shapes.push_back(ArrowHead(PointOnCircle(centre, kRadius, start + 154), start + 226, 7.2, 4.4));
    }
    return Together(shapes);
}

/// An eye between two arrow heads: the view goes around the eye.
Shape AroundShape()
{
    return Together({Disc({16, 16}, 2.4), Arc({16, 20.4}, 9.2, -151, -29, 1.8),
                     Arc({16, 11.6}, 9.2, 29, 151, 1.8), ArrowHead({1.5, 16}, 180, 4.6, 4.2),
                     ArrowHead({30.5, 16}, 0, 4.6, 4.2)});
}

/// Four arrows.
Shape MoveShape()
{
    const Point centre{16, 16};
    std::vector<Shape> shapes;
    for (int i = 0; i < 4; ++i)
    {
        const double angle = i * 90.0;
        shapes.push_back(Line(centre, PointOnCircle(centre, 11, angle), 2.0));
        shapes.push_back(ArrowHead(PointOnCircle(centre, 14.4, angle), angle, 5.6, 4.6));
    }
    return Together(shapes);
}

/// A glass with a plus in it.
Shape ZoomShape()
{
    const Point centre{13, 13};
    return Together({Ring(centre, 8.6, 2.4), Line({9.4, 13}, {16.6, 13}, 2.0),
                     Line({13, 9.4}, {13, 16.6}, 2.0), Line({20.4, 20.4}, {27.6, 27.6}, 4.2)});
}

class Bytes
{
public:
    void Add(std::uint32_t value, int count)
    {
        for (int i = 0; i < count; ++i)
        {
            m_strBytes += static_cast<char>(value >> (8 * i) & 0xFFU);
        }
    }
    const std::string& Get() const { return m_strBytes; }

private:
    std::string m_strBytes;
};

void AddHeaders(Bytes& bytes, const Cursor& cursor, std::uint32_t pictureSize)
{
    constexpr std::uint32_t kDirectory = 22;
    const auto width = static_cast<std::uint32_t>(cursor.image.width);
    const auto height = static_cast<std::uint32_t>(cursor.image.height);
    bytes.Add(0, 2);
    bytes.Add(2, 2); // a cursor
    bytes.Add(1, 2); // of one picture
    bytes.Add(width, 1);
    bytes.Add(height, 1);
    bytes.Add(0, 2);
    bytes.Add(static_cast<std::uint32_t>(cursor.hotX), 2);
    bytes.Add(static_cast<std::uint32_t>(cursor.hotY), 2);
    bytes.Add(pictureSize, 4);
    bytes.Add(kDirectory, 4);
    bytes.Add(40, 4);
    bytes.Add(width, 4);
    bytes.Add(2 * height, 4); // colours and mask
    bytes.Add(1, 2);
    bytes.Add(32, 2);
    for (int i = 0; i < 6; ++i)
    {
        bytes.Add(0, 4);
    }
}
}

std::vector<DrawnCursor> DrawCursors()
{
    return {{"Around.CUR", {Paint(AroundShape()), 16, 16}},
            {"Orbit.CUR", {Paint(OrbitShape()), 16, 16}},
            {"Move.CUR", {Paint(MoveShape()), 16, 16}},
            {"Zoom.CUR", {Paint(ZoomShape()), 13, 13}}};
}

std::string EncodeCursor(const Cursor& cursor)
{
    const auto width = static_cast<std::uint32_t>(cursor.image.width);
    const auto height = static_cast<std::uint32_t>(cursor.image.height);
    const std::uint32_t maskRow = (width + 31) / 32 * 4;
    Bytes bytes;
    AddHeaders(bytes, cursor, 40 + height * (4 * width + maskRow));

    const std::vector<std::uint8_t>& pixels = cursor.image.pixels;
    for (std::size_t i = 0; i < pixels.size(); i += 4)
    {
        for (const std::size_t channel : {2, 1, 0, 3}) // blue first
        {
            bytes.Add(pixels[i + channel], 1);
        }
    }
    for (std::uint32_t y = 0; y < height; ++y)
    {
        for (std::uint32_t x = 0; x < maskRow * 8; x += 8)
        {
            std::uint32_t byte = 0;
            for (std::uint32_t bit = x; bit < std::min(x + 8, width); ++bit)
            {
                const bool isClear = pixels[(std::size_t{y} * width + bit) * 4 + 3] == 0;
                byte |= (isClear ? 1U : 0U) << (7 - bit % 8);
            }
            bytes.Add(byte, 1);
        }
    }
    return bytes.Get();
}
}
