#include "NearestPoints.h"
#include "Assert.h"
#include "Console.h"
#include "DSBrep.h"
#include "Failure.h"
#include "SpaceOrder.h"
#include <ANN/ANN.h>
#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

namespace tessarine
{
namespace
{
constexpr int kDimensions = 3;
constexpr int kBucketSize = 1;
constexpr std::size_t kMostPoints = std::numeric_limits<int>::max() / kDimensions; ///< to the library

bool IsFinitePoint(const smVec3d& p)
{
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

void DemandFinite(std::size_t index, const smVec3d& p)
{
    if (!IsFinitePoint(p))
    {
        throw Failure("point " + std::to_string(index) +
                      " of the model or the cloud is at no finite position: mend it in the file");
    }
}

void DemandCount(std::size_t nPoints)
{
    if (nPoints == 0)
    {
        throw Failure("there is no point to be found near others: the model or the cloud is empty");
    }
    if (nPoints > kMostPoints)
    {
        throw Failure("the model or the cloud has " + std::to_string(nPoints) + " points, and at most " +
                      std::to_string(kMostPoints) + " can be searched: leave some out");
    }
}

/// The library forgets what it holds where memory ends in its midst, so that is found out before.
void DemandMemory(std::size_t nPoints)
{
    // A leaf, a node and a place of the tree, a point and the pointer to it, each as memory is given out.
    constexpr std::size_t kBytesOfAPoint = 32 + 64 + 4 + 24 + 8;
    constexpr std::size_t kBytesAround = std::size_t{1} << 20U;
    const std::size_t bytes = nPoints * kBytesOfAPoint + kBytesAround;
    ::operator delete(::operator new(bytes));
}
}

struct NearestPoints::Tree
{
    explicit Tree(std::size_t nPoints) : count(static_cast<int>(nPoints))
    {
        DemandCount(nPoints);
        DemandMemory(nPoints);
        points = annAllocPts(count, kDimensions);
        rows = points[0];
    }
    ~Tree()
    {
        search.reset();
        points[0] = rows; // as the library knows them
        annDeallocPts(points);
    }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    void SetPoint(std::size_t index, const smVec3d& p)
    {
        DemandFinite(index, p);
        points[index][0] = p.x;
        points[index][1] = p.y;
        points[index][2] = p.z;
    }

    /// Lays the points' coordinates out in the order of space: what a search looks at lies side by side then. Before any
    /// point is set.
    void OrderRows(const std::vector<smVec3d>& all)
    {
        for (std::size_t i = 0; i < all.size(); ++i)
        {
            DemandFinite(i, all[i]); // has no place in space
        }
        ANNpoint row = rows;
        for (const std::size_t index : OrderInSpace(all, [](std::size_t) { return true; }))
        {
            points[index] = row;
            row += kDimensions;
        }
    }

    int count;
    ANNpointArray points = nullptr;
    ANNpoint rows = nullptr; ///< the memory of all points
    std::unique_ptr<ANNkd_tree> search;
};

NearestPoints::NearestPoints(const std::vector<smVec3d>& points)
    : m_pTree(std::make_unique<Tree>(points.size()))
{
    m_pTree->OrderRows(points);
    for (std::size_t i = 0; i < points.size(); ++i)
    {
        m_pTree->SetPoint(i, points[i]);
    }
    Build();
}

NearestPoints::NearestPoints(const DSSolid& solid)
    : m_pTree(std::make_unique<Tree>(solid.GetVertexList().size()))
{
    std::size_t place = 0;
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        ASSERT(pVertex != nullptr);
        m_pTree->SetPoint(place++, pVertex->GetPosition());
    }
    Build();
}

NearestPoints::~NearestPoints() = default;

void NearestPoints::Build()
{
    m_pTree->search = std::make_unique<ANNkd_tree>(m_pTree->points, m_pTree->count, kDimensions, kBucketSize,
                                                   ANN_KD_SUGGEST);
}

std::span<const int> NearestPoints::Find(const smVec3d& query, int k)
{
    constexpr double kExactly = 0.0;
    ASSERT(k > 0 && IsFinitePoint(query));
    const int found = std::min(k, m_pTree->count);
    m_Indices.resize(static_cast<std::size_t>(found));
    m_SquaredDistances.resize(static_cast<std::size_t>(found));
    double coordinates[kDimensions] = {query.x, query.y, query.z};
    m_pTree->search->annkSearch(coordinates, found, m_Indices.data(), m_SquaredDistances.data(), kExactly);
    return m_Indices;
}

NearestPoints BuildCloudIndex(const std::vector<smVec3d>& cloud)
{
    DebugConsole() << "\nPoints Cloud ANN Init is OK\n";
    return NearestPoints(cloud);
}
}
