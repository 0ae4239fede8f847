#include "SmoothingTerm.h"
#include "DSBrep.h"
#include "Failure.h"
#include "SparseMatrix.h"
#include "VertexWalk.h"
#include <cstdint>
#include <span>
#include <vector>

namespace tessarine
{
namespace
{
/// The vertices around each vertex, in the order of its walk. There are as many as its valence.
class VertexRings
{
public:
    explicit VertexRings(const DSSolid& solid)
    {
        m_Ends.reserve(solid.GetVertexList().size());
        for (const DSVertex* pVertex : solid.GetVertexList())
        {
            Gather(*pVertex);
            m_Ends.push_back(m_Around.size());
        }
    }

    std::span<const int> Of(int vertex) const
    {
        const auto place = static_cast<std::size_t>(vertex);
        const std::size_t begin = place == 0 ? 0 : m_Ends[place - 1];
        return std::span(m_Around).subspan(begin, m_Ends[place] - begin);
    }

    double GetValence(int vertex) const { return static_cast<double>(Of(vertex).size()); }

private:
    void Gather(const DSVertex& vertex)
    {
        if (vertex.GetHalfEdge() == nullptr)
        {
            return;
        }
        VertexWalk walk(vertex.GetHalfEdge());
        for (; !walk.IsAtEnd(); walk.Step())
        {
            m_Around.push_back(static_cast<int>(walk.Get()->GetNext()->GetVertex()->GetID()));
        }
        ASSERT(!walk.EndedAtBoundary());
    }

    std::vector<std::size_t> m_Ends;
    std::vector<int> m_Around;
};

class SmoothingAssembly
{
public:
    SmoothingAssembly(const DSSolid& solid, double fWeight, CSparseMatrix& matrix)
        : m_Rings(solid),
          m_fWeight(fWeight),
          m_fVertices(static_cast<double>(solid.GetVertexList().size())),
          m_Matrix(matrix)
    {
    }

    void AddVertex(int i)
    {
        double fSum = 0.0;
        const double ni = m_Rings.GetValence(i);
        for (const int j : m_Rings.Of(i))
        {
            const double nj = m_Rings.GetValence(j);
            const double fDifference = -2.0 * (1.0 / nj + 1.0 / ni);
            AddAndScale(i, j, fDifference);
            for (const int k : m_Rings.Of(j))
            {
                if (k != i)
                {
                    AddAndScale(i, k, fDifference);
                }
            }
            fSum += 1.0 / (nj * nj);
        }
        m_Matrix.AddValue(i, i, 2.0 * (fSum + 1.0) * m_fWeight / m_fVertices);
    }

private:
    void AddAndScale(int nRow, int nColumn, double fDifference)
    {
        double fBefore = 0.0;
        m_Matrix.GetValue(nRow, nColumn, fBefore);
        m_Matrix.SetValue(nRow, nColumn, (fBefore + fDifference) * m_fWeight / m_fVertices);
    }

    VertexRings m_Rings;
    double m_fWeight;
    double m_fVertices;
    CSparseMatrix& m_Matrix;
};
}

void AddSmoothingTerm(const DSSolid& solid, double fWeight, CSparseMatrix& matrix)
{
    ASSERT(matrix.GetRowCount() == static_cast<int>(solid.GetVertexList().size()));
    int i = 0;
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        ASSERT_VALUE(pVertex->GetID() == static_cast<std::uint32_t>(i)); // told below what to do
        if (pVertex->GetID() != static_cast<std::uint32_t>(i))
        {
            throw Failure(
                "the fit needs vertices whose ids are their places in the model, and an operation before has "
                "made others: export the model, import that file and try again");
        }
        ++i;
    }
    SmoothingAssembly assembly(solid, fWeight, matrix);
    for (int vertex = 0; vertex < i; ++vertex)
    {
        assembly.AddVertex(vertex);
    }
}
}
