#include "VertexRun.h"
#include <algorithm>
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

/// One corner by calls.
template <class TCorner>
void Send(const TCorner& corner)
{
    if constexpr (kHasColor<TCorner>)
    {
        glColor3fv(corner.color.data());
    }
    if constexpr (kHasTexCoord<TCorner>)
    {
        glTexCoord2fv(corner.texCoord.data());
    }
    if constexpr (kHasNormal<TCorner>)
    {
        glNormal3fv(corner.normal.data());
    }
    glVertex3fv(corner.position.data());
}

/// Up to here calls take less time than the arrays' preparation: another material on each face makes short runs.
constexpr std::size_t kMostCornersByCalls = 6;
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

template <class TCorner>
void VertexRun<TCorner>::Flush()
{
    if (m_nCount > kMostCornersByCalls)
    {
        glDrawArrays(m_nMode, 0, static_cast<GLsizei>(m_nCount));
    }
    else if (m_nCount != 0)
    {
        glBegin(m_nMode);
        std::for_each_n(m_Corners.begin(), m_nCount, Send<TCorner>);
        glEnd();
    }
    m_nCount = 0;
}

template class VertexRun<PlainCorner>;
template class VertexRun<ColoredCorner>;
template class VertexRun<LitCorner>;
template class VertexRun<TexturedCorner>;
}
