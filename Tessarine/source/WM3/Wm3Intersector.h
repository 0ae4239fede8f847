#pragma once
#include "smVec3d.h"
#include "smVec3f.h"

/// Queries whether two figures meet, in single and in double precision.
namespace tessarine
{
/// What the queries of one float width work with.
template <class TReal>
struct QueryNumbers;

template <>
struct QueryNumbers<float>
{
    using Vector = smVec3f;
    static constexpr float kParallel = 1e-6F; ///< a cosine times twice an area within this is none
};

template <>
struct QueryNumbers<double>
{
    using Vector = smVec3d;
    static constexpr double kParallel = 1e-8;
};

/// A query of two figures, which it refers to and does not own. A class overrides what it offers; what it does
/// not offer is an assertion.
template <class TReal>
class Intersector
{
public:
    using Vector = typename QueryNumbers<TReal>::Vector;

    virtual ~Intersector() = default;
    Intersector(const Intersector&) = delete;
    Intersector& operator=(const Intersector&) = delete;

    /// Whether the figures meet within the time, each moving at its velocity.
    virtual bool Test(TReal tmax, const Vector& velocity0, const Vector& velocity1);
    /// Whether the figures meet as they stand.
    virtual bool Test();
    /// The same, with where they meet.
    virtual bool Find(TReal tmax, const Vector& velocity0, const Vector& velocity1);
    virtual bool Find();

protected:
    Intersector() = default;
};

/// From centre - extent * direction to centre + extent * direction; the direction is a unit vector.
template <class TReal>
struct QuerySegment
{
    typename QueryNumbers<TReal>::Vector centre;
    typename QueryNumbers<TReal>::Vector direction;
    TReal extent = 0;
};

template <class TReal>
struct QueryTriangle
{
    typename QueryNumbers<TReal>::Vector points[3];
};

/// A segment against a triangle. Ends and rims belong to them; a segment parallel to the triangle meets it
/// nowhere, not even in its plane, nor does any segment a triangle without area.
///
/// Needs   Both figures outlive the query. The moving forms are not offered.
template <class TReal>
class SegmentTriangleQuery : public Intersector<TReal>
{
public:
    using Vector = typename Intersector<TReal>::Vector;
    using Intersector<TReal>::Test;
    using Intersector<TReal>::Find;

    SegmentTriangleQuery(const QuerySegment<TReal>& segment, const QueryTriangle<TReal>& triangle)
        : m_pSegment(&segment), m_pTriangle(&triangle)
    {
    }

    bool Test() override;
    /// On success the results below stand; otherwise they stay.
    bool Find() override;

    /// Where they meet: along the segment from its centre, from -extent to extent.
    TReal GetParam() const { return m_fParam; }
    /// The weights of the triangle's three points there; their sum is 1.
    TReal GetBary0() const { return m_fBary0; }
    TReal GetBary1() const { return m_fBary1; }
    TReal GetBary2() const { return m_fBary2; }

private:
    struct Meeting;
    bool Meet(Meeting& meeting) const;

    const QuerySegment<TReal>* m_pSegment;
    const QueryTriangle<TReal>* m_pTriangle;
    TReal m_fParam = 0;
    TReal m_fBary0 = 0;
    TReal m_fBary1 = 0;
    TReal m_fBary2 = 0;
};

extern template class Intersector<float>;
extern template class Intersector<double>;
extern template class SegmentTriangleQuery<float>;
extern template class SegmentTriangleQuery<double>;
}
