#include "LimitSurfaceFit.h"
#include "CollectPatch.h"
#include "DSBrep.h"
#include "EigenTable.h"
#include "Failure.h"
#include "LeastSquaresSystem.h"
#include "LimitEvaluation.h"
#include "NearestPoints.h"
#include "VertexPlaces.h"
#include "VertexWalk.h"
#include <algorithm>
#include <map>
#include <span>

namespace tessarine
{
namespace
{
constexpr int kGridSteps = 50;
constexpr double kGridStep = 0.02;
constexpr double kBesideTheCorner = 1e-6;
constexpr int kRegularCorner = 6;

std::vector<LimitSample> MakeGrid(const EigenData& data)
{
    std::vector<LimitSample> grid;
    for (int i = 0; i <= kGridSteps; ++i)
    {
        for (int j = 0; i + j <= kGridSteps; ++j)
        {
            const bool isCorner = i == 0 && j == 0;
            grid.emplace_back(data, isCorner ? kBesideTheCorner : kGridStep * i,
                              isCorner ? kBesideTheCorner : kGridStep * j);
        }
    }
    return grid;
}

/// The system's entries between the control vertices of one patch, taken out of it and put back behind its samples.
/// A vertex that stands several times among them has one row here as well, so that every sum has the order that it
/// has in the system.
class PatchTerms
{
public:
    PatchTerms(LeastSquaresSystem& system, std::vector<int> rows) : m_System(system), m_Rows(std::move(rows))
    {
        CreateEntries();
        for (const int row : m_Rows)
        {
            const auto known = std::find(m_OwnRows.begin(), m_OwnRows.end(), row);
            m_Places.push_back(static_cast<std::size_t>(known - m_OwnRows.begin()));
            if (known == m_OwnRows.end())
            {
                m_OwnRows.push_back(row);
            }
        }
        for (const int row : m_OwnRows)
        {
            for (const int column : m_OwnRows)
            {
                m_System.GetMatrix().GetValue(row, column, m_Values.emplace_back());
            }
        }
    }

    /// The square of the distance between the sample with these shares and a point.
    void Add(std::span<const double> weights, const smVec3d& target)
    {
        const std::size_t n = weights.size();
        for (std::size_t a = 0; a < n; ++a)
        {
            double* line = &m_Values[m_Places[a] * m_OwnRows.size()];
            line[m_Places[a]] += 2.0 * weights[a] * weights[a];
            for (std::size_t b = 0; b < n; ++b)
            {
                if (b != a)
                {
                    line[m_Places[b]] += 2.0 * weights[b] * weights[a];
                }
            }
            m_System.AddToRightSide(m_Rows[a], 2.0 * weights[a] * target);
        }
    }

    void PutBack()
    {
        const double* value = m_Values.data();
        for (const int row : m_OwnRows)
        {
            for (const int column : m_OwnRows)
            {
                m_System.GetMatrix().SetValue(row, column, *value++);
            }
        }
    }

private:
    /// In the order in which a sample would.
    void CreateEntries()
    {
        for (std::size_t a = 0; a < m_Rows.size(); ++a)
        {
            m_System.GetMatrix().AddValue(m_Rows[a], m_Rows[a], 0.0);
            for (std::size_t b = 0; b < m_Rows.size(); ++b)
            {
                if (b != a)
                {
                    m_System.GetMatrix().AddValue(m_Rows[a], m_Rows[b], 0.0);
                }
            }
        }
    }

    LeastSquaresSystem& m_System;
    std::vector<int> m_Rows;           ///< of each control vertex
    std::vector<std::size_t> m_Places; ///< of each control vertex, in the next
    std::vector<int> m_OwnRows;        ///< each once
    std::vector<double> m_Values;      ///< row by row
};

class LimitAssembly
{
public:
    LimitAssembly(const DSSolid& solid, const EigenTable& table, NearestPoints& nearest,
                  const std::vector<smVec3d>& cloud, LeastSquaresSystem& system)
        : m_Table(table), m_Nearest(nearest), m_Cloud(cloud), m_System(system), m_VertexPlaces(solid)
    {
    }

    void AddFace(const DSFace& face)
    {
        std::vector<DSVertex*> vertices;
        const EigenData& data = m_Table.Get(CollectPatch(face, vertices));
        std::vector<smVec3d> positions;
        std::vector<int> rows;
        for (const DSVertex* pVertex : vertices)
        {
            positions.push_back(pVertex->GetPosition());
            rows.push_back(m_VertexPlaces.GetPlace(*pVertex));
        }
        const LimitPatch patch(data, positions);
        PatchTerms terms(m_System, std::move(rows));
        for (const LimitSample& sample : GetGrid(data))
        {
            const smVec3d point = patch.EvalEigenPatch(sample);
            const smVec3d& target = m_Cloud[static_cast<std::size_t>(m_Nearest.Find(point, 1).front())];
            m_Samples.points.push_back(point);
            m_Samples.targets.push_back(target);
            terms.Add(sample.GetWeights(), target);
        }
        terms.PutBack();
    }

    LimitSamples TakeSamples() { return std::move(m_Samples); }

private:
    const std::vector<LimitSample>& GetGrid(const EigenData& data)
    {
        std::vector<LimitSample>& grid = m_Grids[data.GetValence()];
        if (grid.empty())
        {
            grid = MakeGrid(data);
        }
        return grid;
    }

    const EigenTable& m_Table;
    NearestPoints& m_Nearest;
    const std::vector<smVec3d>& m_Cloud;
    LeastSquaresSystem& m_System;
    VertexPlaces m_VertexPlaces;
    std::map<int, std::vector<LimitSample>> m_Grids; ///< by valence
    LimitSamples m_Samples;
};

int CountAround(DSHalfEdge* h)
{
    int count = 0;
    for (VertexWalk walk(h); !walk.IsAtEnd(); walk.Step())
    {
        ++count;
    }
    return count;
}
}

void DemandLimitPatches(const DSSolid& solid, const EigenTable& table)
{
    for (const DSFace* pFace : solid.GetFaceList())
    {
        DSHalfEdge* h = pFace->GetLoopList()[0]->GetHalfEdge();
        if (h->GetNext()->GetNext()->GetNext() != h)
        {
            throw Failure(
                "a limit surface is that of triangles only, and a face has another number of corners: "
                "split such faces in the file and import again");
        }
        int irregular = 0;
        for (int corner = 0; corner < 3; ++corner, h = h->GetNext())
        {
            const int valence = CountAround(h);
            if (valence < EigenTable::kLeastValence)
            {
                throw Failure(
                    "a vertex of the model lies on two faces only, where a limit surface needs three: "
                    "mend it in the file and import again");
            }
            table.Get(valence);
            irregular += valence != kRegularCorner ? 1 : 0;
        }
        if (irregular > 1)
        {
            throw Failure(
                "a face has two corners that are not on six faces each, and the limit surface can be "
                "evaluated with one only: subdivide the model once (\"Loop 细分\"), and try again");
        }
    }
}

LimitSamples AssembleLimitSystem(const DSSolid& solid, const EigenTable& table, NearestPoints& nearest,
                                 const std::vector<smVec3d>& cloud, LeastSquaresSystem& system)
{
    ASSERT(system.GetSize() == static_cast<int>(solid.GetVertexList().size()));
    LimitAssembly assembly(solid, table, nearest, cloud, system);
    for (const DSFace* pFace : solid.GetFaceList())
    {
        assembly.AddFace(*pFace);
    }
    LimitSamples samples = assembly.TakeSamples();
    system.DivideBy(static_cast<double>(samples.points.size()));
    return samples;
}
}
