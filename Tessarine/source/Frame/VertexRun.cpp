#include "VertexRun.h"
#include <span>
#include <type_traits>

namespace tessarine
{
namespace
{
template <class TCorner>
constexpr bool kHasColor = std::is_same_v<TCorner, ColoredCorner>;
template <class TCorner>
constexpr bool kHasNormal = std::is_same_v<TCorner, LitCorner> || std::is_same_v<TCorner, TexturedCorner>;
template <class TCorner>
constexpr bool kHasTexCoord = std::is_same_v<TCorner, TexturedCorner>;

/// Turns the arrays of this kind of corner on or off.
template <class TCorner>
void SetArrays(bool enabled)
{
    const auto set = enabled ? &glEnableClientState : &glDisableClientState;
    set(GL_VERTEX_ARRAY);
    if constexpr (kHasColor<TCorner>)
    {
        set(GL_COLOR_ARRAY);
    }
    if constexpr (kHasNormal<TCorner>)
    {
        set(GL_NORMAL_ARRAY);
    }
    if constexpr (kHasTexCoord<TCorner>)
    {
        set(GL_TEXTURE_COORD_ARRAY);
    }
}

template <class TCorner>
void PointAt(const TCorner* corners)
{
    constexpr GLsizei kStride = sizeof(TCorner);
    glVertexPointer(3, GL_FLOAT, kStride, corners->position.data());
    if constexpr (kHasColor<TCorner>)
    {
        glColorPointer(3, GL_FLOAT, kStride, corners->color.data());
    }
    if constexpr (kHasNormal<TCorner>)
    {
        glNormalPointer(GL_FLOAT, kStride, corners->normal.data());
    }
    if constexpr (kHasTexCoord<TCorner>)
    {
        glTexCoordPointer(2, GL_FLOAT, kStride, corners->texCoord.data());
    }
}

template <class TCorner>
void SendOneByOne(GLenum mode, std::span<const TCorner> corners)
{
    glBegin(mode);
    for (const TCorner& corner : corners)
    {
        if constexpr (kHasColor<TCorner>)
        {
            glColor3fv(corner.color.data());
        }
        if constexpr (kHasNormal<TCorner>)
        {
            glNormal3fv(corner.normal.data());
        }
        if constexpr (kHasTexCoord<TCorner>)
        {
            glTexCoord2fv(corner.texCoord.data());
        }
        glVertex3fv(corner.position.data());
    }
    glEnd();
}
}

// Filling the corners with zeros would cost as much as filling them with corners.
template <class TCorner>
VertexRun<TCorner>::VertexRun(GLenum mode) : m_nMode(mode) // NOLINT(*-member-init)
{
    SetArrays<TCorner>(true);
    PointAt(m_Corners.data());
}

template <class TCorner>
VertexRun<TCorner>::~VertexRun()
{
    Flush();
    SetArrays<TCorner>(false);
}

/// An array costs a driver more at its start, and less for each corner.
template <class TCorner>
void VertexRun<TCorner>::Flush()
{
    constexpr std::size_t kWorthAnArray = 7; // corners: two triangles are not
    if (m_nCount >= kWorthAnArray)
    {
        glDrawArrays(m_nMode, 0, static_cast<GLsizei>(m_nCount));
    }
    else if (m_nCount != 0)
    {
        SendOneByOne(m_nMode, std::span<const TCorner>(m_Corners.data(), m_nCount));
    }
    m_nCount = 0;
}

template class VertexRun<PlainCorner>;
template class VertexRun<ColoredCorner>;
template class VertexRun<LitCorner>;
template class VertexRun<TexturedCorner>;
}
