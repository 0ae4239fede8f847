#include "LiteralFit.h"
#include "DSBrep.h"
#include "LiteralMatrix.h"
#include <ANN/ANN.h>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

namespace tessarine
{
namespace
{
/// A tree of the vertices, for one query.
std::vector<int> FindVerticesLiterally(const DSSolid& solid, const smVec3d& point, int k)
{
    const int n = static_cast<int>(solid.GetVertexList().size());
    ANNpointArray rows = annAllocPts(n, 3);
    for (int i = 0; i < n; ++i)
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            rows[i][axis] = solid.GetVertexList()[static_cast<std::size_t>(i)]->GetPosition()[axis];
        }
    }
    std::vector<int> indices(static_cast<std::size_t>(std::min(k, n)));
    std::vector<double> distances(indices.size());
    double query[3] = {point.x, point.y, point.z};
    {
        ANNkd_tree tree(rows, n, 3, 1, ANN_KD_SUGGEST);
        tree.annkSearch(query, static_cast<int>(indices.size()), indices.data(), distances.data(), 0.0);
    }
    annDeallocPts(rows);
    return indices;
}

std::vector<DSVertex*> CornersOf(const DSFace& face)
{
    std::vector<DSVertex*> corners;
    DSHalfEdge* h = face.GetLoopList()[0]->GetHalfEdge();
    do
    {
        corners.push_back(h->GetVertex());
        h = h->GetNext();
    } while (h != face.GetLoopList()[0]->GetHalfEdge());
    return corners;
}

/// The test of area sums, with its outputs.
bool TestLiterally(const smVec3d& p, const smVec3d& t0, const smVec3d& t1, const smVec3d& t2,
                   double tolerance, smVec3d& barycentric, double& area)
{
    area = (t1 - t0).Cross(t2 - t0).Length();
    const double a0 = (t1 - p).Cross(t2 - p).Length();
    const double a1 = (t2 - p).Cross(t0 - p).Length();
    const double a2 = (t0 - p).Cross(t1 - p).Length();
    barycentric = smVec3d(a0 / area, a1 / area, a2 / area);
    return std::fabs(a0 + a1 + a2 - area) < tolerance;
}

bool CutsAFaceLiterally(const DSFace& face, const smVec3d& p, const smVec3d& foot, std::string& console)
{
    std::vector<DSVertex*> known{face.GetLoopList()[0]->GetHalfEdge()->GetVertex()};
    std::vector<DSFace*> faces;
    std::size_t next = 0;
    for (int ring = 0; ring < 2; ++ring)
    {
        for (const std::size_t end = known.size(); next < end; ++next)
        {
            DSHalfEdge* h = known[next]->GetHalfEdge();
            do
            {
                if (std::find(faces.begin(), faces.end(), h->GetLoop()->GetFace()) == faces.end())
                {
                    faces.push_back(h->GetLoop()->GetFace());
                }
                DSVertex* end2 = h->GetNext()->GetVertex();
                if (std::find(known.begin(), known.end(), end2) == known.end())
                {
                    known.push_back(end2);
                }
                h = h->GetTwin()->GetNext();
            } while (h != known[next]->GetHalfEdge());
        }
    }
    for (DSFace* other : faces)
    {
        if (other == &face)
        {
            continue;
        }
        const DSHalfEdge* h = other->GetLoopList()[0]->GetHalfEdge();
        const smVec3d v0 = h->GetVertex()->GetPosition();
        const smVec3d v1 = h->GetNext()->GetVertex()->GetPosition();
        const smVec3d v2 = h->GetPrev()->GetVertex()->GetPosition();
        const smVec3d n = other->CalcNormal();
        const double t = (v0 - foot).Dot(n) / (p - foot).Dot(n);
        const smVec3d x = foot + t * (p - foot);
        smVec3d barycentric;
        double area = 0.0;
        if (t >= 0 && t <= 1 && std::fabs(t) >= 0.00001 &&
            TestLiterally(x, v0, v1, v2, 0.00001, barycentric, area))
        {
            console += "Intersect the face!!!\n";
            return true;
        }
    }
    return false;
}

std::vector<DSFace*> CandidatesOf(const DSSolid& solid, const smVec3d& point, int k)
{
    std::vector<DSFace*> candidates;
    for (const int index : FindVerticesLiterally(solid, point, k))
    {
        DSHalfEdge* const start = solid.GetVertexList()[static_cast<std::size_t>(index)]->GetHalfEdge();
        DSHalfEdge* h = start;
        do
        {
            DSFace* face = h->GetLoop()->GetFace();
            if (std::find(candidates.begin(), candidates.end(), face) == candidates.end())
            {
                candidates.push_back(face);
            }
            h = h->GetTwin()->GetNext();
        } while (h != start);
    }
    return candidates;
}
}

std::optional<Foot> FindFootLiterally(DSSolid& solid, const FootVariant& variant, const smVec3d& point,
                                      std::string& console)
{
    const std::vector<DSFace*> candidates = CandidatesOf(solid, point, variant.neighbours);
    console += "Adjacent Face size: " + std::to_string(candidates.size()) + "\n";
    std::optional<Foot> found;
    double best = variant.choice == FootChoice::Deepest ? 100.0 : 1e7;
    for (DSFace* face : candidates)
    {
        const smVec3d c = face->CalcCentroid();
        const smVec3d n = face->CalcNormal();
        const smVec3d foot = (point - c) - ((point - c).Dot(n)) * n + c;
        const std::vector<DSVertex*> v = CornersOf(*face);
        smVec3d barycentric;
        double area = 0.0;
        bool passes = false;
        if (v.size() == 3)
        {
            passes = TestLiterally(foot, v[0]->GetPosition(), v[1]->GetPosition(), v[2]->GetPosition(),
                                   variant.tolerance, barycentric, area);
        }
        else
        {
            for (std::size_t j = 0; j < v.size(); ++j)
            {
                passes |= TestLiterally(foot, v[j]->GetPosition(), v[(j + 1) % v.size()]->GetPosition(), c,
                                        variant.tolerance, barycentric, area);
            }
        }
        if (!passes || (variant.refusesCuts && CutsAFaceLiterally(*face, point, foot, console)))
        {
            continue;
        }
        const double distance = (point - foot).Length();
        if (variant.choice == FootChoice::First)
        {
            return Foot{face, foot, distance, barycentric};
        }
        const double measure = variant.choice == FootChoice::Deepest ? (point - c).Dot(n) : area / distance;
        if (measure < best)
        {
            best = measure;
            found = Foot{face, foot, distance, barycentric};
        }
    }
    return found;
}

namespace
{
bool HasTaggedFace(const DSVertex& vertex)
{
    DSHalfEdge* h = vertex.GetHalfEdge();
    do
    {
        if (h->GetLoop()->GetFace()->GetTag() > 0)
        {
            return true;
        }
        h = h->GetTwin()->GetNext();
    } while (h != vertex.GetHalfEdge());
    return false;
}

void AddLiterallyTo(CSparseMatrix& matrix, int row, int column, double value)
{
    double before = 0.0;
    matrix.GetValue(row, column, before);
    matrix.SetValue(row, column, before + value);
}
}

LiteralEnergyFit FitByEnergyLiterally(DSSolid& solid, const std::vector<smVec3d>& cloud)
{
    LiteralEnergyFit fit;
    fit.console = "点云大小: " + std::to_string(cloud.size()) + "\n";
    std::vector<smVec3d> points;
    std::vector<smVec3d> weights;
    std::vector<DSFace*> faces;
    for (DSFace* face : solid.GetFaceList())
    {
        face->GetTag() = -1;
    }
    int misses = 0;
    for (const smVec3d& p : cloud)
    {
        const std::optional<Foot> foot = FindFootLiterally(solid, kEnergyFeet, p, fit.console);
        fit.projected.push_back(foot ? foot->point : p);
        if (!foot)
        {
            ++misses;
            continue;
        }
        points.push_back(p);
        weights.push_back(foot->barycentric);
        faces.push_back(foot->face);
        foot->face->GetTag() = 1;
    }
    fit.console += "There are " + std::to_string(misses) + "points cannot find projection point..\n";
    fit.console += "Calculate project point ok..\n";
    std::map<std::uint32_t, int> rows;
    int available = 0;
    int unavailable = 0;
    for (const DSVertex* vertex : solid.GetVertexList())
    {
        const bool has = HasTaggedFace(*vertex);
        rows[vertex->GetID()] = has ? available : -1;
        available += has ? 1 : 0;
        unavailable += has ? 0 : 1;
    }
    fit.console += "The number of vertex: " + std::to_string(solid.GetVertexList().size()) +
                   "\nThe number of availible vertex: " + std::to_string(available) +
                   "\nThe number of inavailible vertex: " + std::to_string(unavailable) +
                   "\nInit CGM ok...\n";
    CSparseMatrix matrix(available, available);
    std::vector<double> rightSide[3];
    for (std::vector<double>& side : rightSide)
    {
        side.resize(static_cast<std::size_t>(available) + 1);
    }
    for (std::size_t i = 0; i < points.size(); ++i)
    {
        const std::vector<DSVertex*> a = CornersOf(*faces[i]);
        for (int j = 0; j < 3; ++j)
        {
            const int r = rows[a[static_cast<std::size_t>(j)]->GetID()];
            AddLiterallyTo(matrix, r, r, weights[i][j] * weights[i][j]);
            for (int k = 0; k < 3; ++k)
            {
                if (k != j)
                {
                    AddLiterallyTo(matrix, r, rows[a[static_cast<std::size_t>(k)]->GetID()],
                                   weights[i][k] * weights[i][j]);
                }
            }
            for (int axis = 0; axis < 3; ++axis)
            {
                rightSide[axis][static_cast<std::size_t>(r) + 1] += points[i][axis] * weights[i][j];
            }
        }
    }
    fit.console += "Set CGM ok...\n";
    for (std::size_t place = 1; place <= static_cast<std::size_t>(available); ++place)
    {
        if (rightSide[0][place] == 0.0 && rightSide[1][place] == 0.0 && rightSide[2][place] == 0.0)
        {
            fit.console += "error...\n";
        }
    }
    CSparseMatrix transposed;
    matrix.Transpose(transposed);
    std::vector<double> x[3];
    for (int axis = 0; axis < 3; ++axis)
    {
        x[axis].resize(static_cast<std::size_t>(available) + 1);
        int iter = 0;
        double err = 0.0;
        SolveLiterally(matrix, transposed, rightSide[axis], x[axis], 3, 1e-7, 200, iter, err);
        char line[100];
        std::snprintf(line, sizeof line, "Iteration Step = %d, Estimated Error = %12.10lf\n", iter, err);
        fit.console += line;
    }
    for (const DSVertex* vertex : solid.GetVertexList())
    {
        const int r = rows[vertex->GetID()];
        const auto place = static_cast<std::size_t>(r) + 1;
        fit.positions.push_back(r < 0 ? vertex->GetPosition()
                                      : smVec3d(x[0][place], x[1][place], x[2][place]));
    }
    return fit;
}
}
