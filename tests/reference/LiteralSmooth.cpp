#include "LiteralSmooth.h"
#include "CollectPatch.h"
#include "LimitEvaluation.h"
#include "LiteralFit.h"
#include "LiteralMatrix.h"
#include "MeshWalks.h"
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

namespace tessarine
{
namespace
{
std::string SixDigits(double value)
{
    char text[40];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

/// Whatever stands around a vertex, by turning from each half-edge to the next of its twin.
template <class TVisit>
void TurnAround(const DSVertex& vertex, TVisit visit)
{
    DSHalfEdge* h = vertex.GetHalfEdge();
    do
    {
        visit(h);
        h = h->GetTwin()->GetNext();
    } while (h != vertex.GetHalfEdge());
}

std::vector<int> RingOf(const DSSolid& solid, int vertex)
{
    std::vector<int> ring;
    TurnAround(*solid.GetVertexList()[static_cast<std::size_t>(vertex)], [&ring](const DSHalfEdge* h)
               { ring.push_back(static_cast<int>(h->GetTwin()->GetVertex()->GetID())); });
    return ring;
}

/// The earliest of equal ones: good for clouds in general position.
smVec3d NearestLiterally(const std::vector<smVec3d>& cloud, const smVec3d& p)
{
    std::size_t nearest = 0;
    for (std::size_t i = 1; i < cloud.size(); ++i)
    {
        if ((cloud[i] - p).Dot(cloud[i] - p) < (cloud[nearest] - p).Dot(cloud[nearest] - p))
        {
            nearest = i;
        }
    }
    return cloud[nearest];
}

void SayErrorLiterally(const std::vector<smVec3d>& samples, const std::vector<smVec3d>& targets,
                       std::string& console)
{
    double total = 0.0;
    double largest = 0.0;
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        const double d = (samples[i] - targets[i]).Length();
        total += d * d;
        largest = d > largest ? d : largest;
    }
    console += "***********************\nTotal Error: " + SixDigits(total) +
               "\nMax Error: " + SixDigits(largest) +
               "\nAverage Error: " + SixDigits(std::sqrt(total / static_cast<double>(samples.size()))) +
               "\n***********************\n";
}

std::vector<smVec3d> SolveForPositions(const CSparseMatrix& matrix, std::vector<double> (&sides)[3],
                                       std::string& console)
{
    CSparseMatrix transposed;
    matrix.Transpose(transposed);
    std::vector<smVec3d> positions(static_cast<std::size_t>(matrix.GetRowCount()));
    for (int axis = 0; axis < 3; ++axis)
    {
        std::vector<double> x(sides[axis].size());
        int iter = 0;
        double err = 0.0;
        SolveLiterally(matrix, transposed, sides[axis], x, 3, 1e-7, 200, iter, err);
        char line[100];
        std::snprintf(line, sizeof line, "Iteration Step = %d, Estimated Error = %12.10lf\n", iter, err);
        console += line;
        for (std::size_t i = 0; i < positions.size(); ++i)
        {
            positions[i][axis] = x[i + 1];
        }
    }
    return positions;
}

void AddTo(CSparseMatrix& matrix, int row, int column, double value)
{
    double before = 0.0;
    matrix.GetValue(row, column, before);
    matrix.SetValue(row, column, before + value);
}

/// The told order of additions and scalings.
CSparseMatrix VertexMatrix(const DSSolid& solid)
{
    const int n = static_cast<int>(solid.GetVertexList().size());
    CSparseMatrix matrix(n, n);
    for (int i = 0; i < n; ++i)
    {
        AddTo(matrix, i, i, 2.0);
    }
    const auto scale = [&matrix, n](int row, int column, double d)
    {
        double before = 0.0;
        matrix.GetValue(row, column, before);
        matrix.SetValue(row, column, (before + d) * 0.001 / n);
    };
    for (int i = 0; i < n; ++i)
    {
        double s = 0.0;
        const double ni = static_cast<double>(RingOf(solid, i).size());
        for (const int j : RingOf(solid, i))
        {
            const double nj = static_cast<double>(RingOf(solid, j).size());
            const double d = -2.0 * (1 / nj + 1 / ni);
            scale(i, j, d);
            for (const int k : RingOf(solid, j))
            {
                if (k != i)
                {
                    scale(i, k, d);
                }
            }
            s += 1 / (nj * nj);
        }
        AddTo(matrix, i, i, 2 * (s + 1) * 0.001 / n);
    }
    return matrix;
}
}

LiteralDual BuildDualLiterally(DSSolid& solid, const std::vector<smVec3d>& cloud)
{
    LiteralDual dual;
    std::vector<smVec3d> feet;
    std::vector<int> footCloud;
    std::map<const DSFace*, std::vector<int>> lists;
    int misses = 0;
    for (std::size_t i = 0; i < cloud.size(); ++i)
    {
        const std::optional<Foot> foot = FindFootLiterally(solid, kHierarchicalFeet, cloud[i], dual.console);
        if (!foot)
        {
            ++misses;
            continue;
        }
        lists[foot->face].push_back(static_cast<int>(feet.size()));
        feet.push_back(foot->point);
        footCloud.push_back(static_cast<int>(i));
    }
    dual.console += "Calculate footpoint ok..\nThere are " + std::to_string(misses) +
                    "points cannot find projection point..\n";
    std::map<const DSFace*, int> tags;
    std::map<int, int> numbers;
    for (const DSFace* face : solid.GetFaceList())
    {
        const std::vector<int>& list = lists[face];
        tags[face] = -1;
        if (list.size() > 1)
        {
            int best = list[0];
            for (const int foot : list)
            {
                const smVec3d c = face->CalcCentroid();
                if ((feet[static_cast<std::size_t>(foot)] - c).Length() <
                    (feet[static_cast<std::size_t>(best)] - c).Length())
                {
                    best = foot;
                }
            }
            tags[face] = best;
            dual.cloudIndices.push_back(footCloud[static_cast<std::size_t>(best)]);
            dual.positions.push_back(cloud[static_cast<std::size_t>(dual.cloudIndices.back())]);
            numbers[best] = static_cast<int>(dual.positions.size()) - 1;
        }
    }
    for (const DSVertex* vertex : solid.GetVertexList())
    {
        std::vector<int> face;
        TurnAround(*vertex,
                   [&](const DSHalfEdge* h)
                   {
                       const int tag = tags[h->GetLoop()->GetFace()];
                       if (tag > 0)
                       {
                           face.push_back(numbers[tag]);
                       }
                   });
        if (face.size() >= 3)
        {
            std::reverse(face.begin() + 1, face.end());
            dual.faces.push_back(face);
        }
    }
    return dual;
}

LiteralSmoothFit FitVerticesLiterally(const DSSolid& solid, const std::vector<smVec3d>& cloud)
{
    LiteralSmoothFit fit;
    fit.positions = PositionsOf(solid);
    const std::size_t n = fit.positions.size();
    for (int round = 0; round < 2; ++round)
    {
        std::vector<smVec3d> targets;
        for (const smVec3d& p : fit.positions)
        {
            targets.push_back(NearestLiterally(cloud, p));
        }
        fit.console += "\nPoints Cloud ANN Init is OK\nCalculate footpoint ok..\n";
        SayErrorLiterally(fit.positions, targets, fit.console);
        std::vector<double> sides[3];
        for (int axis = 0; axis < 3; ++axis)
        {
            sides[axis].resize(n + 1);
            fit.console += "Const Matrix init OK....\n";
            for (std::size_t i = 0; i < n; ++i)
            {
                sides[axis][i + 1] = 2 * targets[i][axis];
            }
        }
        fit.positions = SolveForPositions(VertexMatrix(solid), sides, fit.console);
    }
    return fit;
}

LiteralSmoothFit FitLimitSurfaceLiterally(DSSolid& solid, const std::vector<smVec3d>& cloud,
                                          const EigenTable& table)
{
    LiteralSmoothFit fit;
    fit.positions = PositionsOf(solid);
    const int n = static_cast<int>(fit.positions.size());
    for (int round = 0; round < 4; ++round)
    {
        fit.console += "\nPoints Cloud ANN Init is OK\n";
        CSparseMatrix matrix(n, n);
        std::vector<double> sides[3];
        for (std::vector<double>& side : sides)
        {
            side.resize(static_cast<std::size_t>(n) + 1);
        }
        std::vector<smVec3d> samples;
        std::vector<smVec3d> targets;
        for (const DSFace* face : solid.GetFaceList())
        {
            std::vector<DSVertex*> vertices;
            const int valence = CollectPatch(*face, vertices);
            std::vector<smVec3d> c;
            for (const DSVertex* vertex : vertices)
            {
                c.push_back(fit.positions[vertex->GetID()]);
            }
            for (int i = 0; i <= 50; ++i)
            {
                for (int j = 0; i + j <= 50; ++j)
                {
                    const double v = i + j == 0 ? 1e-6 : 0.02 * i;
                    const double w = i + j == 0 ? 1e-6 : 0.02 * j;
                    Matrix weights(valence + 6, 1);
                    samples.push_back(EvalLimitPoint(c, v, w, valence, table, weights));
                    targets.push_back(NearestLiterally(cloud, samples.back()));
                    for (std::size_t a = 0; a < c.size(); ++a)
                    {
                        const int r = static_cast<int>(vertices[a]->GetID());
                        const double wa = weights.GetElement(static_cast<int>(a), 0);
                        AddTo(matrix, r, r, 2 * wa * wa);
                        for (std::size_t b = 0; b < c.size(); ++b)
                        {
                            if (b != a)
                            {
                                AddTo(matrix, r, static_cast<int>(vertices[b]->GetID()),
                                      2 * weights.GetElement(static_cast<int>(b), 0) * wa);
                            }
                        }
                        for (int axis = 0; axis < 3; ++axis)
                        {
                            sides[axis][static_cast<std::size_t>(r) + 1] += 2 * wa * targets.back()[axis];
                        }
                    }
                }
            }
        }
        const auto m = static_cast<double>(samples.size());
        CSparseMatrix mean(n, n);
        for (int row = 0; row < n; ++row)
        {
            for (std::size_t i = 0; i < matrix.GetColumnsOf(row).size(); ++i)
            {
                mean.SetValue(row, matrix.GetColumnsOf(row)[i], matrix.GetValuesOf(row)[i] / m);
            }
        }
        for (std::vector<double>& side : sides)
        {
            for (double& value : side)
            {
                value /= m;
            }
        }
        SayErrorLiterally(samples, targets, fit.console);
        fit.positions = SolveForPositions(mean, sides, fit.console);
    }
    return fit;
}
}
