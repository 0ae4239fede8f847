#include "FaceRuns.h"
#include <algorithm>
#include <limits>

namespace tessarine
{
namespace
{
/// Long enough that the boxes cost nothing against the faces, short enough that few faces lie in a box which the
/// ray meets.
constexpr int kFacesInARun = 128;
constexpr int kMostCornersInABox = 1000;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// A box that grows. A coordinate that is no number leaves it as it is: no ray goes through such a face.
class CornerBox
{
public:
    /// What has more than one loop or a great many corners gets no box.
    void Add(const DSFace* face)
    {
        if (face == nullptr || !AddCorners(*face))
        {
            m_bBounded = false;
        }
    }

    smVec3d GetCentre() const { return (m_Low + m_High) * 0.5; }
    smVec3d GetHalfExtent() const
    {
        return m_bBounded ? (m_High - m_Low) * 0.5 : smVec3d(kInfinity, kInfinity, kInfinity);
    }

private:
    bool AddCorners(const DSFace& face)
    {
        const LoopList& loops = face.GetLoopList();
        if (loops.size() != 1 || loops[0] == nullptr)
        {
            return false;
        }
        const DSHalfEdge* const pStart = loops[0]->GetHalfEdge();
        const DSHalfEdge* pHalfEdge = pStart;
        for (int corners = 0; corners < kMostCornersInABox; ++corners)
        {
            if (pHalfEdge == nullptr || pHalfEdge->GetVertex() == nullptr)
            {
                return false;
            }
            AddPoint(pHalfEdge->GetVertex()->GetPosition());
            pHalfEdge = pHalfEdge->GetNext();
            if (pHalfEdge == pStart)
            {
                return true;
            }
        }
        return false;
    }

    void AddPoint(const smVec3d& p)
    {
        m_Low = smVec3d(std::min(m_Low.x, p.x), std::min(m_Low.y, p.y), std::min(m_Low.z, p.z));
        m_High = smVec3d(std::max(m_High.x, p.x), std::max(m_High.y, p.y), std::max(m_High.z, p.z));
    }

    smVec3d m_Low{kInfinity, kInfinity, kInfinity};
    smVec3d m_High{-kInfinity, -kInfinity, -kInfinity};
    bool m_bBounded = true;
};

std::vector<FaceRun> MakeRuns(const ElementList<DSFace>& faces)
{
    std::vector<FaceRun> runs;
    runs.reserve(faces.size() / kFacesInARun + 1);
    for (auto face = faces.begin(); face != faces.end();)
    {
        FaceRun run{face, face, {}, {}};
        CornerBox box;
        for (int i = 0; i < kFacesInARun && face != faces.end(); ++i, ++face)
        {
            box.Add(*face);
        }
        run.end = face;
        run.centre = box.GetCentre();
        run.halfExtent = box.GetHalfExtent();
        runs.push_back(run);
    }
    return runs;
}
}

const std::vector<FaceRun>& FaceRuns::Get(const DSSolid& solid)
{
    const auto found = m_Runs.find(&solid);
    return found != m_Runs.end() ? found->second
                                 : m_Runs.emplace(&solid, MakeRuns(solid.GetFaceList())).first->second;
}
}
