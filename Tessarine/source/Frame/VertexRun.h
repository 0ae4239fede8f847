#pragma once
#include "smVec2f.h"
#include "smVec3d.h"
#include <GL/gl.h>
#include <array>
#include <cstddef>

namespace tessarine
{
/// The corner of a point or a line.
struct PlainCorner
{
    std::array<float, 3> position;
};

/// The same with a colour of its own.
struct ColoredCorner
{
    std::array<float, 3> color;
    std::array<float, 3> position;
};

/// The corner of a lit surface.
struct LitCorner
{
    std::array<float, 3> normal;
    std::array<float, 3> position;
};

struct TexturedCorner
{
    std::array<float, 2> texCoord;
    std::array<float, 3> normal;
    std::array<float, 3> position;
};

/// GL draws in single precision, and rounds a double as this does.
inline std::array<float, 3> ToSingle(const smVec3d& v)
{
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

inline std::array<float, 2> ToSingle(const smVec2f& v)
{
    return {v.x, v.y};
}

/// One run of points, lines or triangles: a piece of memory is filled with corners and drawn whenever it is
/// full. It stays small enough for the processor's cache, and a frame of any size needs no other memory.
///
/// Needs   A current context, from the construction to the end. A change of GL's state between two corners
///         of a run takes a Flush before it.
template <class TCorner>
class VertexRun
{
public:
    /// @param mode GL_POINTS, GL_LINES or GL_TRIANGLES
    explicit VertexRun(GLenum mode);
    ~VertexRun();
    VertexRun(const VertexRun&) = delete;
    VertexRun& operator=(const VertexRun&) = delete;

    /// Draws what was added so far.
    void Flush();

    void AddPoint(const TCorner& corner)
    {
        MakeRoom(1);
        m_Corners[m_nCount++] = corner;
    }
    void AddLine(const TCorner& a, const TCorner& b)
    {
        MakeRoom(2);
        m_Corners[m_nCount++] = a;
        m_Corners[m_nCount++] = b;
    }
    void AddTriangle(const TCorner& a, const TCorner& b, const TCorner& c)
    {
        MakeRoom(3);
        m_Corners[m_nCount++] = a;
        m_Corners[m_nCount++] = b;
        m_Corners[m_nCount++] = c;
    }

private:
    static constexpr std::size_t kCapacity = std::size_t{3} * 1024;

    void MakeRoom(std::size_t count)
    {
        if (m_nCount + count > kCapacity)
        {
            Flush();
        }
    }

    GLenum m_nMode;
    std::size_t m_nCount = 0;
    std::array<TCorner, kCapacity> m_Corners; // filled up to m_nCount
};

extern template class VertexRun<PlainCorner>;
extern template class VertexRun<ColoredCorner>;
extern template class VertexRun<LitCorner>;
extern template class VertexRun<TexturedCorner>;
}
