#include "PairTargets.h"
#include "Vectors.h"
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace tessarine
{
namespace
{
PairEnd EndAt(const smVec3f& position)
{
    PairEnd end;
    end.position = position;
    return end;
}

/// A vertex on three planes upright to the axes.
PairEnd CornerAt(const smVec3f& position)
{
    PairEnd end = EndAt(position);
    end.quadric.AddPlane({1, 0, 0}, -position.x);
    end.quadric.AddPlane({0, 1, 0}, -position.y);
    end.quadric.AddPlane({0, 0, 1}, -position.z);
    return end;
}

PairTarget TargetOf(const PairEnd& a, const PairEnd& b)
{
    const PairEnd* const ends[2][kPairsAtATime] = {{&a, &a, &a, &a}, {&b, &b, &b, &b}};
    PairTarget targets[kPairsAtATime];
    FindPairTargets(ends, targets);
    return targets[0];
}

TEST(PairTargets, StandWhereThePlanesMeet)
{
    const PairTarget target = TargetOf(CornerAt({0.5F, 0.25F, -1}), EndAt({3, 3, 3}));
    EXPECT_EQ(target.position, smVec3f(0.5F, 0.25F, -1));
    EXPECT_EQ(target.cost, 0.0F);
}

TEST(PairTargets, StandInTheMiddleOfTwoCorners)
{
    // The squared distance to each of two planes one apart is smallest half-way: 1/4 each.
    const PairTarget target = TargetOf(CornerAt({0, 0, 0}), CornerAt({1, 0, 0}));
    EXPECT_EQ(target.position, smVec3f(0.5F, 0, 0));
    EXPECT_EQ(target.cost, 0.5F);
}

TEST(PairTargets, StandAtTheFirstVertexWhereAllCandidatesCostTheSame)
{
    PairEnd a = EndAt({0.25F, 0, 0});
    PairEnd b = EndAt({1, 0, 0});
    a.quadric.AddPlane({0, 0, 1}, 0);
    b.quadric.AddPlane({0, 0, 1}, 0);
    EXPECT_EQ(TargetOf(a, b).position, smVec3f(0.25F, 0, 0));
    EXPECT_EQ(TargetOf(b, a).position, smVec3f(1, 0, 0));
    EXPECT_EQ(TargetOf(a, b).cost, 0.0F);
}

TEST(PairTargets, StandAtTheCheapestCandidateWherePlanesAreParallel)
{
    PairEnd a = EndAt({0, 0, 1});
    PairEnd b = EndAt({1, 0, 0});
    a.quadric.AddPlane({0, 0, 1}, 0); // on which the second vertex lies
    EXPECT_EQ(TargetOf(a, b).position, smVec3f(1, 0, 0));
    b.quadric.AddPlane({0, 0, 1}, -1); // and on this one the first: 1, 1, and 1/4 + 1/4 in the middle
    EXPECT_EQ(TargetOf(a, b).position, smVec3f(0.5F, 0, 0.5F));
    EXPECT_EQ(TargetOf(a, b).cost, 0.5F);
}

/// The determinant of the planes' normals: 0.01 is enough, and is the square of a third component of 0.1.
TEST(PairTargets, SolveFromADeterminantOfAHundredthOn)
{
    const auto targetWith = [](float determinant)
    {
        PairEnd a = EndAt({5, 5, 5});
        a.quadric.m00 = a.quadric.m11 = 1.0F;
        a.quadric.m22 = determinant;
        return TargetOf(a, a).position; // twice the quadric: eight times the determinant
    };
    const float hundredth = 0.01F / 8.0F;
    EXPECT_EQ(targetWith(hundredth), smVec3f(0, 0, 0));
    EXPECT_EQ(targetWith(std::nextafter(hundredth, 0.0F)), smVec3f(5, 5, 5));
}

TEST(PairTargets, FallBackToCandidatesWhereAPivotIsLost)
{
    PairEnd a = EndAt({1, 2, 3});
    a.quadric.m00 = 1e6F;
    a.quadric.m11 = 1e6F;
    a.quadric.m22 = 1e-8F; // the determinant is 1e4, but this pivot is lost beside 1
    EXPECT_EQ(TargetOf(a, EndAt({1, 2, 3})).position, smVec3f(1, 2, 3));
}

TEST(PairTargets, StandAtTheFirstVertexWhereNothingIsANumber)
{
    PairEnd a = EndAt({1, 2, 3});
    a.quadric.m00 = std::numeric_limits<float>::quiet_NaN();
    const PairTarget target = TargetOf(a, EndAt({4, 5, 6}));
    EXPECT_EQ(target.position, smVec3f(1, 2, 3));
    EXPECT_NE(target.cost, target.cost);
}

TEST(PairTargets, AreAloneWhatTheyAreSideBySide)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<float> number(-1, 1);
    std::vector<PairEnd> pool;
    for (int i = 0; i < 40; ++i)
    {
        pool.push_back(EndAt({number(random), number(random), number(random)}));
        for (int plane = 0; plane < i % 5; ++plane) // with fewer than three there is nothing to solve
        {
            smVec3f normal(number(random), number(random), number(random));
            normal.Normalize();
            pool.back().quadric.AddPlane(normal, -normal.Dot(pool.back().position));
        }
    }
    for (int round = 0; round < 500; ++round)
    {
        const PairEnd* ends[2][kPairsAtATime];
        for (auto& side : ends)
        {
            for (auto& end : side)
            {
                end = &pool[random() % pool.size()];
            }
        }
        PairTarget targets[kPairsAtATime];
        FindPairTargets(ends, targets);
        for (int i = 0; i < kPairsAtATime; ++i)
        {
            const PairTarget alone = TargetOf(*ends[0][i], *ends[1][i]);
            EXPECT_EQ(targets[i].position, alone.position);
            EXPECT_EQ(targets[i].cost, alone.cost);
        }
    }
}
}
}
