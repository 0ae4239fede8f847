#include "EdgeRun.h"
#include "DSBrep.h"

namespace tessarine
{
// Filling the arrays with zeros would cost as much as filling them with corners.
EdgeRun::EdgeRun() // NOLINT(*-member-init)
{
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glVertexPointer(3, GL_FLOAT, sizeof(ColoredCorner), m_Corners.front().position.data());
    glColorPointer(3, GL_FLOAT, sizeof(ColoredCorner), m_Corners.front().color.data());
}

EdgeRun::~EdgeRun()
{
    Flush();
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_COLOR_ARRAY);
}

void EdgeRun::AddLine(const DSVertex& a, const DSVertex& b, const std::array<float, 3>& color)
{
    if (m_nCornerCount + 2 > kCornerCapacity || m_nEndCount + 2 > kEndCapacity)
    {
        Flush();
    }
    m_Ends[m_nEndCount++] = FindCorner({&a, &color});
    m_Ends[m_nEndCount++] = FindCorner({&b, &color});
}

std::uint16_t EdgeRun::FindCorner(const Source& source)
{
    constexpr std::uintptr_t kGrain = 16; // no two vertices are nearer
    std::uint16_t& place = m_Places[reinterpret_cast<std::uintptr_t>(source.pVertex) / kGrain % kPlaceCount];
    if (place >= m_nCornerCount || m_Sources[place] != source)
    {
        place = static_cast<std::uint16_t>(m_nCornerCount++);
        m_Sources[place] = source;
        m_Corners[place] = {*source.pColor, ToSingle(source.pVertex->GetPosition())};
    }
    return place;
}

void EdgeRun::Flush()
{
    if (m_nEndCount != 0)
    {
        glDrawElements(GL_LINES, static_cast<GLsizei>(m_nEndCount), GL_UNSIGNED_SHORT, m_Ends.data());
    }
    m_nCornerCount = 0;
    m_nEndCount = 0;
}
}
