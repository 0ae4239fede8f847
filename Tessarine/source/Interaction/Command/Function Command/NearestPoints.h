#pragma once
#include "smVec3d.h"
#include <memory>
#include <span>
#include <vector>

namespace tessarine
{
class DSSolid;

/// The nearest of a set of points, exactly, by a kd-tree over copies of them. Points at equal distances come in the
/// order of the library that keeps the tree.
///
/// Fails   Failure for a set without points or with more than a third of what an int counts, and for positions that are no finite numbers. A query that is not finite
///         is an assertion.
/// Kept    The library's search has one state for the process: one thread alone may ask.
class NearestPoints
{
public:
    explicit NearestPoints(const std::vector<smVec3d>& points);
    /// The vertices of a solid by their places in its list.
    explicit NearestPoints(const DSSolid& solid);
    ~NearestPoints();
    NearestPoints(const NearestPoints&) = delete;
    NearestPoints& operator=(const NearestPoints&) = delete;

    /// The indices of the k nearest points, or of all where there are fewer, nearest first. They hold until the next
    /// query.
    std::span<const int> Find(const smVec3d& query, int k);
    /// Their squared distances.
    std::span<const double> GetSquaredDistances() const { return m_SquaredDistances; }

private:
    struct Tree;

    void Build();

    std::unique_ptr<Tree> m_pTree;
    std::vector<int> m_Indices;
    std::vector<double> m_SquaredDistances;
};

/// Over a cloud; says that the index stands.
NearestPoints BuildCloudIndex(const std::vector<smVec3d>& cloud);
}
