#include "LiteralAdaptive.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include <algorithm>
#include <map>
#include <string>

namespace tessarine
{
namespace
{
DSHalfEdge* HalfEdgeOf(const DSFace* face, int i)
{
    DSHalfEdge* he = face->GetLoopList()[0]->GetHalfEdge();
    for (; i > 0; --i)
    {
        he = he->GetNext();
    }
    return he;
}

smVec3d CornerOf(const DSFace* face, int i)
{
    return HalfEdgeOf(face, i)->GetVertex()->GetPosition();
}

int MarkLargeFaces(const DSSolid* solid, float maxArea)
{
    const int n = static_cast<int>(solid->GetVertexList().size());
    int newVertices = 0;
    for (const DSFace* face : solid->GetFaceList())
    {
        const smVec3d u = CornerOf(face, 1) - CornerOf(face, 0);
        const smVec3d v = CornerOf(face, 2) - CornerOf(face, 1);
        const double a = u.Cross(v).Length();
        if (maxArea < a)
        {
            DSHalfEdge* start = face->GetLoopList()[0]->GetHalfEdge();
            DSHalfEdge* he = start;
            do
            {
                DSEdge* edge = he->GetEdge();
                if (edge->GetSplit() == false)
                {
                    edge->GetSplit() = true;
                    edge->GetSplitVertex() = n + newVertices;
                    newVertices = newVertices + 1;
                }
                he = he->GetNext();
            } while (he != start);
        }
    }
    return newVertices;
}

/// The triangles of each pattern, as the table has them: p0 to p2 for the corners, m0 to m2 for the middles.
const std::map<std::string, std::string>& PatternTable()
{
    static const std::map<std::string, std::string> table = {{"TTT", "p0 m0 m2 m0 p1 m1 m1 p2 m2 m0 m1 m2"},
                                                             {"TTF", "m0 p1 m1 p0 m0 m1 p0 m1 p2"},
                                                             {"TFT", "p0 m0 m2 m0 p1 m2 p1 p2 m2"},
                                                             {"TFF", "p0 m0 p2 m0 p1 p2"},
                                                             {"FTT", "m1 p2 m2 p0 m1 m2 p0 p1 m1"},
                                                             {"FTF", "m1 p2 p0 p0 p1 m1"},
                                                             {"FFT", "p0 p1 m2 p1 p2 m2"},
                                                             {"FFF", "p0 p1 p2"}};
    return table;
}

int PlaceOf(const DSSolid* solid, const DSVertex* vertex)
{
    const auto& list = solid->GetVertexList();
    return static_cast<int>(std::distance(list.begin(), std::find(list.begin(), list.end(), vertex)));
}

void SplitByTable(const DSSolid* solid, const DSFace* face, IndexList& fv, IndexList& fn)
{
    int p[3] = {};
    int m[3] = {};
    std::string pattern;
    for (int i = 0; i < 3; ++i)
    {
        const DSHalfEdge* he = HalfEdgeOf(face, i);
        p[i] = PlaceOf(solid, he->GetVertex()) + 1;
        m[i] = he->GetEdge()->GetSplitVertex() + 1;
        pattern += he->GetEdge()->GetSplit() ? 'T' : 'F';
    }
    const std::string& row = PatternTable().at(pattern);
    for (std::size_t i = 0; i < row.size(); i += 3)
    {
        const int digit = row[i + 1] - '0';
        fv.push_back(row[i] == 'p' ? p[digit] : m[digit]);
    }
    for (std::size_t i = 0; i < (row.size() + 1) / 9; ++i)
    {
        fn.push_back(3);
    }
}

smVec3d PositionOfOldVertex(const DSVertex* vertex)
{
    const smVec3d p = vertex->GetPosition();
    if (vertex->GetHalfEdge() == nullptr)
    {
        return p;
    }
    int k = 0;
    smVec3d s(0, 0, 0);
    bool anySplit = false;
    const DSHalfEdge* he = vertex->GetHalfEdge();
    do
    {
        k = k + 1;
        s += he->GetNext()->GetVertex()->GetPosition();
        if (he->GetEdge()->GetSplit())
        {
            anySplit = true;
        }
        he = he->GetTwin()->GetNext();
    } while (he != vertex->GetHalfEdge());
    if (!anySplit)
    {
        return p;
    }
    if (k <= 3)
    {
        return (1.0 - 3.0 * k / 16.0) * p + 3.0 * s / 16.0;
    }
    return 5.0 * p / 8.0 + 3.0 * s / (8.0 * k);
}

smVec3d PositionOfEdge(const DSEdge* edge)
{
    const DSHalfEdge* h1 = edge->GetHalfEdge1();
    const DSHalfEdge* h2 = edge->GetHalfEdge2();
    const smVec3d a = h1->GetVertex()->GetPosition();
    const smVec3d b = h1->GetNext()->GetVertex()->GetPosition();
    if (h2 == nullptr)
    {
        return (a + b) / 2.0;
    }
    const smVec3d c = h1->GetPrev()->GetVertex()->GetPosition();
    const smVec3d d = h2->GetPrev()->GetVertex()->GetPosition();
    return (3.0 * (a + b) + (c + d)) / 8.0;
}
}

void SubdivideAdaptivelyLiterally(MANBrepElementManager& manager, MANSceneManager& scene, float maxArea)
{
    auto* first = static_cast<MANSceneLeaf*>(scene.GetRootGroup()->GetChildren().front());
    DSSolid* solid = first->GetSolid();
    const int newVertices = MarkLargeFaces(solid, maxArea);

    IndexList fv;
    IndexList fn;
    for (const DSFace* face : solid->GetFaceList())
    {
        SplitByTable(solid, face, fv, fn);
    }

    const std::size_t n = solid->GetVertexList().size();
    PositionList vList(n + static_cast<std::size_t>(newVertices));
    for (std::size_t i = 0; i < n; ++i)
    {
        vList[i] = PositionOfOldVertex(solid->GetVertexList()[i]);
    }
    for (const DSEdge* edge : solid->GetEdgeList())
    {
        if (edge->GetSplit())
        {
            vList[static_cast<std::size_t>(edge->GetSplitVertex())] = PositionOfEdge(edge);
        }
    }

    scene.Clear();
    manager.Clear();
    DSSolid* refined = manager.BuildSolid(vList, fv, fn, false);
    refined->CalcNormals();
    refined->CheckTopology();
    MANSceneLeaf* leaf = scene.NewLeaf();
    leaf->SetSolid(refined);
    scene.GetRootGroup()->AddChild(leaf);
    leaf->SetParent(scene.GetRootGroup());
}
}
