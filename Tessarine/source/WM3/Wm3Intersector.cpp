#include "Wm3Intersector.h"
#include "Assert.h"

namespace tessarine
{
template <class TReal>
bool Intersector<TReal>::Test(TReal /*tmax*/, const Vector& /*velocity0*/, const Vector& /*velocity1*/)
{
    ASSERT(false);
    return false;
}

template <class TReal>
bool Intersector<TReal>::Test()
{
    ASSERT(false);
    return false;
}

template <class TReal>
bool Intersector<TReal>::Find(TReal /*tmax*/, const Vector& /*velocity0*/, const Vector& /*velocity1*/)
{
    ASSERT(false);
    return false;
}

template <class TReal>
bool Intersector<TReal>::Find()
{
    ASSERT(false);
    return false;
}

/// Parameter and weights of the second and third point, each times the scale.
template <class TReal>
struct SegmentTriangleQuery<TReal>::Meeting
{
    TReal scale;
    TReal param;
    TReal weight1;
    TReal weight2;
};

/// Solves Q + t D = b1 E1 + b2 E2 by Cramer's rule without dividing.
template <class TReal>
bool SegmentTriangleQuery<TReal>::Meet(Meeting& meeting) const
{
    const Vector& direction = m_pSegment->direction;
    const Vector fromFirst = m_pSegment->centre - m_pTriangle->points[0];
    const Vector edge1 = m_pTriangle->points[1] - m_pTriangle->points[0];
    const Vector edge2 = m_pTriangle->points[2] - m_pTriangle->points[0];
    const Vector normal = edge1.Cross(edge2);

    TReal sign = 0;
    meeting.scale = direction.Dot(normal);
    if (meeting.scale > QueryNumbers<TReal>::kParallel)
    {
        sign = 1;
    }
    else if (meeting.scale < -QueryNumbers<TReal>::kParallel)
    {
        sign = -1;
        meeting.scale = -meeting.scale;
    }
    else
    {
        return false;
    }

    meeting.weight1 = sign * direction.Dot(fromFirst.Cross(edge2));
    if (meeting.weight1 < 0)
    {
        return false;
    }
    meeting.weight2 = sign * direction.Dot(edge1.Cross(fromFirst));
    if (meeting.weight2 < 0 || meeting.weight1 + meeting.weight2 > meeting.scale)
    {
        return false;
    }
    meeting.param = -sign * fromFirst.Dot(normal);
    const TReal reach = m_pSegment->extent * meeting.scale;
    return -reach <= meeting.param && meeting.param <= reach;
}

template <class TReal>
bool SegmentTriangleQuery<TReal>::Test()
{
    Meeting meeting;
    return Meet(meeting);
}

template <class TReal>
bool SegmentTriangleQuery<TReal>::Find()
{
    Meeting meeting;
    if (!Meet(meeting))
    {
        return false;
    }
    const TReal inverse = 1 / meeting.scale;
    m_fParam = meeting.param * inverse;
    m_fBary1 = meeting.weight1 * inverse;
    m_fBary2 = meeting.weight2 * inverse;
    m_fBary0 = 1 - m_fBary1 - m_fBary2;
    return true;
}

template class Intersector<float>;
template class Intersector<double>;
template class SegmentTriangleQuery<float>;
template class SegmentTriangleQuery<double>;
}
