#include "Wm3Intersector.h"
#include "Reports.h"
#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <random>

namespace tessarine
{
namespace
{
using testing::ElementsAreArray;

template <class TReal>
class SegmentTriangle : public testing::Test
{
protected:
    using Vector = typename QueryNumbers<TReal>::Vector;
    using Query = SegmentTriangleQuery<TReal>;

    static Vector At(double x, double y, double z)
    {
        return {static_cast<TReal>(x), static_cast<TReal>(y), static_cast<TReal>(z)};
    }

    /// (0,0,0), (1,0,0), (0,1,0).
    static QueryTriangle<TReal> CornerOfThePlane() { return {{At(0, 0, 0), At(1, 0, 0), At(0, 1, 0)}}; }

    /// Upright through (x, y), with its centre at a height.
    static QuerySegment<TReal> Upright(double x, double y, double height, double extent)
    {
        return {At(x, y, height), At(0, 0, 1), static_cast<TReal>(extent)};
    }

    static bool Meets(const QuerySegment<TReal>& segment,
                      const QueryTriangle<TReal>& triangle = CornerOfThePlane())
    {
        Query query(segment, triangle);
        const bool meets = query.Test();
        EXPECT_EQ(query.Find(), meets);
        return meets;
    }
};

using Widths = testing::Types<float, double>;
TYPED_TEST_SUITE(SegmentTriangle, Widths);

TYPED_TEST(SegmentTriangle, MeetInsideTheTriangle)
{
    EXPECT_TRUE(this->Meets(this->Upright(0.25, 0.25, 0, 1)));
    EXPECT_FALSE(this->Meets(this->Upright(0.75, 0.75, 0, 1)));  // beyond the long side
    EXPECT_FALSE(this->Meets(this->Upright(-0.25, 0.25, 0, 1))); // b1 is negative
    EXPECT_FALSE(this->Meets(this->Upright(0.25, -0.25, 0, 1))); // b2 is negative
}

TYPED_TEST(SegmentTriangle, MeetFromBothSides)
{
    auto segment = this->Upright(0.25, 0.25, 0.5, 1);
    segment.direction = this->At(0, 0, -1);
    EXPECT_TRUE(this->Meets(segment));
    segment.centre = this->At(0.75, 0.75, 0.5);
    EXPECT_FALSE(this->Meets(segment));
}

TYPED_TEST(SegmentTriangle, MeetWhereTheSegmentEndsOnThePlane)
{
    EXPECT_TRUE(this->Meets(this->Upright(0.25, 0.25, 1, 1)));
    EXPECT_TRUE(this->Meets(this->Upright(0.25, 0.25, -1, 1)));
    EXPECT_FALSE(this->Meets(this->Upright(0.25, 0.25, 1.0625, 1)));
    EXPECT_FALSE(this->Meets(this->Upright(0.25, 0.25, -1.0625, 1)));
}

TYPED_TEST(SegmentTriangle, MeetInEachVertexAndOnEachSide)
{
    EXPECT_TRUE(this->Meets(this->Upright(0, 0, 0, 1))); // b1 and b2 are 0
    EXPECT_TRUE(this->Meets(this->Upright(1, 0, 0, 1)));
    EXPECT_TRUE(this->Meets(this->Upright(0, 1, 0, 1)));
    EXPECT_TRUE(this->Meets(this->Upright(0.5, 0, 0, 1)));
    EXPECT_TRUE(this->Meets(this->Upright(0, 0.5, 0, 1)));
    EXPECT_TRUE(this->Meets(this->Upright(0.5, 0.5, 0, 1)));
}

TYPED_TEST(SegmentTriangle, DoNotMeetInTheSamePlane)
{
    auto segment = this->Upright(0.25, 0.25, 0, 1);
    segment.direction = this->At(1, 0, 0);
    EXPECT_FALSE(this->Meets(segment));
}

TYPED_TEST(SegmentTriangle, DoNotMeetWithoutArea)
{
    EXPECT_FALSE(this->Meets(this->Upright(0.5, 0, 0, 1),
                             {{this->At(0, 0, 0), this->At(0.5, 0, 0), this->At(1, 0, 0)}}));
}

TYPED_TEST(SegmentTriangle, DoNotMeetWhereTheDirectionIsParallelWithinTheTolerance)
{
    // DdN is the height of the direction: the triangle's cross product is (0, 0, 1).
    const TypeParam tolerance = QueryNumbers<TypeParam>::kParallel;
    const auto meetsAt = [this](TypeParam height)
    {
        auto segment = this->Upright(0.25, 0.25, 0, 1);
        segment.direction = this->At(1, 0, 0);
        segment.direction.z = height;
        return this->Meets(segment);
    };
    EXPECT_FALSE(meetsAt(tolerance)); // the tests are strict
    EXPECT_FALSE(meetsAt(-tolerance));
    EXPECT_TRUE(meetsAt(std::nextafter(tolerance, TypeParam(1))));
    EXPECT_TRUE(meetsAt(-std::nextafter(tolerance, TypeParam(1))));
}

TYPED_TEST(SegmentTriangle, DoNotMeetWhereANumberIsNone)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(this->Meets(this->Upright(nan, 0.25, 0, 1)));
    EXPECT_FALSE(this->Meets(this->Upright(0.25, 0.25, nan, 1)));
    EXPECT_FALSE(this->Meets(this->Upright(0.25, 0.25, 0, nan)));
}

TYPED_TEST(SegmentTriangle, TellWhereTheyMeet)
{
    const auto segment = this->Upright(0.25, 0.5, 0.75, 1);
    const auto triangle = this->CornerOfThePlane();
    SegmentTriangleQuery<TypeParam> query(segment, triangle);
    EXPECT_TRUE(query.Find());
    EXPECT_EQ(query.GetParam(), TypeParam(-0.75)); // the centre stands 0.75 above
    EXPECT_EQ(query.GetBary1(), TypeParam(0.25));
    EXPECT_EQ(query.GetBary2(), TypeParam(0.5));
    EXPECT_EQ(query.GetBary0(), TypeParam(0.25));
}

TYPED_TEST(SegmentTriangle, TellTheSameFromTheOtherSide)
{
    auto segment = this->Upright(0.25, 0.5, 0.75, 1);
    segment.direction = this->At(0, 0, -1);
    const auto triangle = this->CornerOfThePlane();
    SegmentTriangleQuery<TypeParam> query(segment, triangle);
    EXPECT_TRUE(query.Find());
    EXPECT_EQ(query.GetParam(), TypeParam(0.75));
    EXPECT_EQ(query.GetBary1(), TypeParam(0.25));
    EXPECT_EQ(query.GetBary2(), TypeParam(0.5));
}

TYPED_TEST(SegmentTriangle, KeepWhatWasFoundWhenTheyMeetNoMore)
{
    auto segment = this->Upright(0.25, 0.5, 0.75, 1);
    const auto triangle = this->CornerOfThePlane();
    SegmentTriangleQuery<TypeParam> query(segment, triangle);
    EXPECT_TRUE(query.Find());
    segment.centre.z = 3;
    EXPECT_FALSE(query.Find());
    EXPECT_FALSE(query.Test());
    EXPECT_EQ(query.GetParam(), TypeParam(-0.75));
}

/// The point along the segment is the point of the weights.
TYPED_TEST(SegmentTriangle, MeetInTheSamePointOfBoth)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<double> coordinate(-1, 1);
    const auto next = [&] { return this->At(coordinate(random), coordinate(random), coordinate(random)); };
    int meetings = 0;
    for (int i = 0; i < 2000; ++i)
    {
        const QueryTriangle<TypeParam> triangle{{next(), next(), next()}};
        QuerySegment<TypeParam> segment{next(), next(), TypeParam(1)};
        segment.direction.Normalize();
        SegmentTriangleQuery<TypeParam> query(segment, triangle);
        if (!query.Find())
        {
            continue;
        }
        ++meetings;
        const auto along = segment.centre + segment.direction * query.GetParam();
        const auto weighted = triangle.points[0] * query.GetBary0() + triangle.points[1] * query.GetBary1() +
                              triangle.points[2] * query.GetBary2();
        EXPECT_LT((along - weighted).Length(), sizeof(TypeParam) == 4 ? 1e-3 : 1e-9);
        EXPECT_LE(std::abs(query.GetParam()), TypeParam(1.0001));
    }
    EXPECT_GT(meetings, 100);
}

TYPED_TEST(SegmentTriangle, AssertInTheFormsThatAreNotOffered)
{
    const auto segment = this->Upright(0.25, 0.25, 0, 1);
    const auto triangle = this->CornerOfThePlane();
    SegmentTriangleQuery<TypeParam> query(segment, triangle);
    const AssertionCapture assertions;
    EXPECT_THROW(query.Test(1, this->At(0, 0, 0), this->At(1, 0, 0)), AssertionFailure);
    EXPECT_THROW(query.Find(1, this->At(0, 0, 0), this->At(1, 0, 0)), AssertionFailure);
    EXPECT_THAT(assertions.GetExpressions(), ElementsAreArray(WhereReported({"false", "false"})));
}

TYPED_TEST(SegmentTriangle, AssertInTheBaseWhateverIsAsked)
{
    class Nothing : public Intersector<TypeParam>
    {
    };
    Nothing query;
    const AssertionCapture assertions;
    EXPECT_THROW(query.Test(), AssertionFailure);
    EXPECT_THROW(query.Find(), AssertionFailure);
    EXPECT_THAT(assertions.GetExpressions(), ElementsAreArray(WhereReported({"false", "false"})));
}
}
}
