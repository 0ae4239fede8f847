#include "LiteralSimplify.h"
#include "CExcp.h"
#include "Console.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace tessarine
{
namespace
{
using IntList = std::vector<int>;

bool Contains(const IntList& list, int value)
{
    return std::find(list.begin(), list.end(), value) != list.end();
}

void AddUnique(IntList& list, int value)
{
    if (!Contains(list, value))
    {
        list.push_back(value);
    }
}

void RemoveFirst(IntList& list, int value)
{
    if (const auto found = std::find(list.begin(), list.end(), value); found != list.end())
    {
        list.erase(found);
    }
}

struct Matrix
{
    float m[4][4] = {};
};

Matrix operator+(const Matrix& a, const Matrix& b)
{
    Matrix sum;
    for (int i = 0; i < 4; ++i)
    {
        for (int j = 0; j < 4; ++j)
        {
            sum.m[i][j] = a.m[i][j] + b.m[i][j];
        }
    }
    return sum;
}

Matrix OuterProduct(const smVec3f& n, float d)
{
    const float v[4] = {n.x, n.y, n.z, d};
    Matrix product;
    for (int i = 0; i < 4; ++i)
    {
        for (int j = 0; j < 4; ++j)
        {
            product.m[i][j] = v[i] * v[j];
        }
    }
    return product;
}

smVec3f Unit(smVec3f v)
{
    const float length = v.Length();
    v.Normalize(); // reports
    if (!(length > smVec3f_zero))
    {
        throw CExcpDivideZero();
    }
    return v;
}

float Determinant(const Matrix& s)
{
    const auto& m = s.m;
    return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
           m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
           m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

float Evaluate(const Matrix& s, const smVec3f& p)
{
    const auto& m = s.m;
    return m[3][3] + 2 * m[2][3] * p.z + m[2][2] * p.z * p.z + 2 * m[1][3] * p.y + 2 * m[1][2] * p.y * p.z +
           m[1][1] * p.y * p.y + 2 * m[0][3] * p.x + 2 * m[0][2] * p.x * p.z + 2 * m[0][1] * p.x * p.y +
           m[0][0] * p.x * p.x;
}

/// Gauss-Jordan with complete pivoting; b holds the solution.
bool Solve(Matrix& matrix, float (&b)[4])
{
    auto& a = matrix.m;
    int column[4] = {};
    for (int i = 0; i < 4; ++i)
    {
        int pivotRow = i;
        int pivotColumn = i;
        float largest = 0.0F;
        for (int row = i; row < 4; ++row)
        {
            for (int col = i; col < 4; ++col)
            {
                if (a[row][col] != 0.0F && std::abs(a[row][col]) > largest)
                {
                    largest = std::abs(a[row][col]);
                    pivotRow = row;
                    pivotColumn = col;
                }
            }
        }
        const float pivot = a[pivotRow][pivotColumn];
        if (pivot + 1.0F == 1.0F)
        {
            return false;
        }
        for (int col = 0; col < 4; ++col)
        {
            std::swap(a[pivotRow][col], a[i][col]);
        }
        std::swap(b[pivotRow], b[i]);
        for (int row = 0; row < 4; ++row)
        {
            std::swap(a[row][pivotColumn], a[row][i]);
        }
        column[i] = pivotColumn;
        for (int col = 0; col < 4; ++col)
        {
            a[i][col] = a[i][col] / pivot;
        }
        b[i] = b[i] / pivot;
        for (int row = 0; row < 4; ++row)
        {
            const float factor = a[row][i];
            if (row == i || factor == 0.0F)
            {
                continue;
            }
            for (int col = 0; col < 4; ++col)
            {
                a[row][col] = a[row][col] - factor * a[i][col];
            }
            b[row] = b[row] - factor * b[i];
        }
    }
    for (int i = 3; i >= 0; --i)
    {
        std::swap(b[i], b[column[i]]);
    }
    return true;
}

struct Pair
{
    int heapPosition = -47;
    int vertexA = 0;
    int vertexB = 0;
    float cost = 0.0F;
    smVec3f position;

    bool Touches(int vertex) const { return vertexA == vertex || vertexB == vertex; }
    int GetFarEnd(int vertex) const { return vertexA == vertex ? vertexB : vertexA; }
};

/// A maximum heap of pairs that know their places.
class Heap
{
public:
    explicit Heap(std::vector<Pair>& pairs) : m_Pairs(pairs) {}

    void Insert(int pair, float key)
    {
        m_Nodes.push_back({key, pair});
        m_Pairs[Index(pair)].heapPosition = GetSize() - 1;
        SiftUp(GetSize() - 1);
    }

    /// -1 when it is empty.
    int Extract()
    {
        return m_Nodes.empty() ? -1 : TakeOut(0, [this](float) { SiftDown(0); });
    }

    void Remove(int position)
    {
        if (position < 0 || position >= GetSize())
        {
            DebugConsole() << "WARNING: Attempt to delete invalid heap node.\n";
            return;
        }
        TakeOut(position,
                [this, position](float removed)
                {
                    if (position == GetSize())
                    {
                        return;
                    }
                    m_Nodes[Index(position)].key < removed ? SiftDown(position) : SiftUp(position);
                });
    }

    void Update(int pair, float key)
    {
        const int position = m_Pairs[Index(pair)].heapPosition;
        if (position == -47)
        {
            DebugConsole() << "WARNING: Attempting to update object not in heap!\n";
            return;
        }
        const float before = std::exchange(m_Nodes[Index(position)].key, key);
        key < before ? SiftDown(position) : SiftUp(position);
    }

private:
    struct Node
    {
        float key;
        int pair;
    };

    static std::size_t Index(int i) { return static_cast<std::size_t>(i); }
    int GetSize() const { return static_cast<int>(m_Nodes.size()); }

    template <class TMend>
    int TakeOut(int position, TMend mend)
    {
        Swap(position, GetSize() - 1);
        const Node removed = m_Nodes.back();
        m_Nodes.pop_back();
        m_Pairs[Index(removed.pair)].heapPosition = -47;
        mend(removed.key);
        return removed.pair;
    }

    void Swap(int i, int j)
    {
        std::swap(m_Nodes[Index(i)], m_Nodes[Index(j)]);
        m_Pairs[Index(m_Nodes[Index(i)].pair)].heapPosition = i;
        m_Pairs[Index(m_Nodes[Index(j)].pair)].heapPosition = j;
    }

    void SiftUp(int i)
    {
        while (i > 0 && m_Nodes[Index((i - 1) / 2)].key < m_Nodes[Index(i)].key)
        {
            Swap(i, (i - 1) / 2);
            i = (i - 1) / 2;
        }
    }

    void SiftDown(int i)
    {
        while (i < GetSize())
        {
            int m = i;
            for (const int child : {2 * i + 1, 2 * i + 2})
            {
                if (child < GetSize() && m_Nodes[Index(child)].key > m_Nodes[Index(m)].key)
                {
                    m = child;
                }
            }
            if (m == i)
            {
                return;
            }
            Swap(i, m);
            i = m;
        }
    }

    std::vector<Pair>& m_Pairs;
    std::vector<Node> m_Nodes;
};

class LiteralSimplify
{
public:
    void Read(const DSSolid& solid)
    {
        std::vector<const DSVertex*> vertices;
        for (const DSVertex* vertex : solid.GetVertexList())
        {
            vertices.push_back(vertex);
            const smVec3d& p = vertex->GetPosition();
            m_Vertices.emplace_back(static_cast<float>(p.x), static_cast<float>(p.y),
                                    static_cast<float>(p.z));
        }
        for (const DSFace* face : solid.GetFaceList())
        {
            const DSHalfEdge* first = face->GetLoopList()[0]->GetHalfEdge();
            const DSHalfEdge* h = first;
            do
            {
                const auto found = std::find(vertices.begin(), vertices.end(), h->GetVertex());
                m_FaceVertices.push_back(static_cast<int>(found - vertices.begin()));
                h = h->GetNext();
            } while (h != first);
            const smVec3d& n = face->GetNormal();
            m_FaceNormals.emplace_back(static_cast<float>(n.x), static_cast<float>(n.y),
                                       static_cast<float>(n.z));
        }
    }

    void BuildTopology()
    {
        m_VertexFaces.resize(m_Vertices.size());
        m_VertexEdges.resize(m_Vertices.size());
        std::vector<IntList> neighbours(m_Vertices.size());
        for (int f = 0; f < CountFaces(); ++f)
        {
            for (int i = 0; i < 3; ++i)
            {
                const int a = GetCorner(f, i);
                AddUnique(neighbours[Index(a)], GetCorner(f, i + 2));
                const int b = GetCorner(f, i + 1);
                AddUnique(neighbours[Index(a)], b);
                m_VertexFaces[Index(a)].push_back(f);
                AddUnique(m_VertexEdges[Index(std::min(a, b))], std::max(a, b));
            }
        }
        for (std::size_t v = 0; v < m_Vertices.size(); ++v)
        {
            m_BoundaryFlag.push_back(m_VertexFaces[v].size() != neighbours[v].size() ? 1 : 0);
        }
    }

    void SumQuadrics()
    {
        for (int v = 0; v < static_cast<int>(m_Vertices.size()); ++v)
        {
            Matrix sum;
            for (const int f : m_VertexFaces[Index(v)])
            {
                const smVec3f& n = m_FaceNormals[Index(f)];
                sum = sum + OuterProduct(n, -n.Dot(m_Vertices[Index(GetCorner(f, 0))]));
                const int i = GetCorner(f, 0) == v ? 0 : (GetCorner(f, 1) == v ? 1 : 2);
                for (const int other : {GetCorner(f, i + 2), GetCorner(f, i + 1)})
                {
                    if (m_BoundaryFlag[Index(v)] != 0 && m_BoundaryFlag[Index(other)] != 0)
                    {
                        const smVec3f e = Unit(m_Vertices[Index(std::min(v, other))] -
                                               m_Vertices[Index(std::max(v, other))]);
                        const smVec3f m = Unit(e.Cross(n));
                        sum = sum + OuterProduct(m, -m.Dot(m_Vertices[Index(v)]));
                    }
                }
            }
            m_Quadrics.push_back(sum);
        }
    }

    void QueuePairs()
    {
        m_EdgeLists.resize(m_Vertices.size());
        for (int v = 0; v < static_cast<int>(m_Vertices.size()); ++v)
        {
            for (const int u : m_VertexEdges[Index(v)])
            {
                const int pair = static_cast<int>(m_Pairs.size());
                m_Pairs.emplace_back();
                m_Pairs.back().vertexA = v;
                m_Pairs.back().vertexB = u;
                FindTarget(m_Pairs.back(), v, u);
                m_Heap.Insert(pair, m_Pairs.back().cost);
                m_EdgeLists[Index(v)].push_back(pair);
                m_EdgeLists[Index(u)].push_back(pair);
            }
        }
    }

    void Contract(float ratio)
    {
        for (std::size_t v = 0; v < m_Vertices.size(); ++v)
        {
            m_Parent.push_back(static_cast<int>(v));
        }
        const int target = static_cast<int>(static_cast<float>(CountFaces()) * ratio);
        int removed = 0;
        for (int pair = m_Heap.Extract(); pair != -1; pair = m_Heap.Extract())
        {
            const int u = m_Pairs[Index(pair)].vertexA;
            const int v = m_Pairs[Index(pair)].vertexB;
            const bool isRim = m_BoundaryFlag[Index(u)] != 0 && m_BoundaryFlag[Index(v)] != 0;
            removed += isRim ? 1 : 2;
            m_BoundaryFlag[Index(u)] = m_BoundaryFlag[Index(u)] == 0 && m_BoundaryFlag[Index(v)] == 0 ? 0 : 1;
            m_Vertices[Index(u)] = m_Vertices[Index(v)] = m_Pairs[Index(pair)].position;
            m_Parent[Index(v)] = u;
            RemoveFirst(m_EdgeLists[Index(u)], pair);
            for (const int r : IntList(m_EdgeLists[Index(v)]))
            {
                if (!m_Pairs[Index(r)].Touches(u))
                {
                    HandOver(r, v, u);
                }
            }
            m_Quadrics[Index(u)] = m_Quadrics[Index(u)] + m_Quadrics[Index(v)];
            for (const int r : IntList(m_EdgeLists[Index(u)]))
            {
                FindTarget(m_Pairs[Index(r)], u, m_Pairs[Index(r)].GetFarEnd(u));
                m_Heap.Update(r, m_Pairs[Index(r)].cost);
            }
            if (removed >= target)
            {
                break;
            }
        }
    }

    void WriteBack(MANBrepElementManager& elements, MANSceneManager& scene)
    {
        std::vector<bool> used(m_Vertices.size(), false);
        for (int& parent : m_Parent)
        {
            while (m_Parent[Index(parent)] != parent)
            {
                parent = m_Parent[Index(parent)];
            }
        }
        int triangles = 0;
        for (int f = 0; f < CountFaces(); ++f)
        {
            if (Survives(f))
            {
                ++triangles;
                for (int i = 0; i < 3; ++i)
                {
                    used[Index(GetRoot(f, i))] = true;
                }
            }
        }
        PositionList positions;
        IntList numbers(m_Vertices.size());
        for (std::size_t v = 0; v < m_Vertices.size(); ++v)
        {
            if (used[v])
            {
                numbers[v] = static_cast<int>(positions.size());
                positions.emplace_back(m_Vertices[v]);
            }
        }
        IndexList indices;
        for (int f = 0; f < CountFaces(); ++f)
        {
            for (int i = 0; i < 3 && Survives(f); ++i)
            {
                indices.push_back(numbers[Index(GetRoot(f, i))] + 1);
            }
        }
        const IndexList sizes(static_cast<std::size_t>(triangles), 3);
        DebugConsole() << "sTriangles: " << triangles << '\n';
        DebugConsole() << "sVertexes: " << positions.size() << '\n';
        DebugConsole() << "fn.Size(): " << sizes.size() << '\n';
        Show(elements.BuildSolid(positions, indices, sizes, false), scene);
    }

private:
    static std::size_t Index(int i) { return static_cast<std::size_t>(i); }
    int CountFaces() const { return static_cast<int>(m_FaceNormals.size()); }
    int GetCorner(int f, int i) const { return m_FaceVertices[Index(3 * f + i % 3)]; }
    int GetRoot(int f, int i) const { return m_Parent[Index(GetCorner(f, i))]; }
    bool Survives(int f) const
    {
        return GetRoot(f, 0) != GetRoot(f, 1) && GetRoot(f, 1) != GetRoot(f, 2) &&
               GetRoot(f, 0) != GetRoot(f, 2);
    }

    void FindTarget(Pair& pair, int a, int b)
    {
        const Matrix s = m_Quadrics[Index(a)] + m_Quadrics[Index(b)];
        if (std::abs(Determinant(s)) >= 0.01F)
        {
            Matrix system = s;
            for (int col = 0; col < 4; ++col)
            {
                system.m[3][col] = col == 3 ? 1.0F : 0.0F;
            }
            float solution[4] = {0.0F, 0.0F, 0.0F, 1.0F};
            if (Solve(system, solution))
            {
                pair.position = {solution[0], solution[1], solution[2]};
                pair.cost = -Evaluate(s, pair.position);
                return;
            }
        }
        const smVec3f& pa = m_Vertices[Index(a)];
        const smVec3f& pb = m_Vertices[Index(b)];
        pair.position = pa;
        float cheapest = Evaluate(s, pa);
        for (const smVec3f& candidate : {pb, (pa + pb) / 2.0F})
        {
            if (Evaluate(s, candidate) < cheapest)
            {
                cheapest = Evaluate(s, candidate);
                pair.position = candidate;
            }
        }
        pair.cost = -cheapest;
    }

    /// Gives a pair of v to u, or drops it where u has one with the same far end.
    void HandOver(int pair, int v, int u)
    {
        Pair& r = m_Pairs[Index(pair)];
        r.vertexA = r.vertexA == v ? u : r.vertexA;
        r.vertexB = r.vertexB == v ? u : r.vertexB;
        const int w = r.GetFarEnd(u);
        const IntList& own = m_EdgeLists[Index(u)];
        if (std::any_of(own.begin(), own.end(), [&](int other) { return m_Pairs[Index(other)].Touches(w); }))
        {
            m_Heap.Remove(r.heapPosition);
            RemoveFirst(m_EdgeLists[Index(w)], pair);
            return;
        }
        m_EdgeLists[Index(u)].push_back(pair);
    }

    static void Show(DSSolid* solid, MANSceneManager& scene)
    {
        solid->CalcNormals();
        MANSceneGroup* root = scene.GetRootGroup();
        MANSceneLeaf* leaf = scene.NewLeaf();
        leaf->SetSolid(solid);
        leaf->SetParent(root);
        root->AddChild(leaf);
        auto* first = static_cast<MANSceneLeaf*>(root->GetChildren()[0]);
        first->SetVisible(false);
        first->GetSolid()->SetVisible(false);
    }

    std::vector<smVec3f> m_Vertices;
    IntList m_FaceVertices;
    std::vector<smVec3f> m_FaceNormals;
    std::vector<IntList> m_VertexFaces;
    std::vector<IntList> m_VertexEdges;
    IntList m_BoundaryFlag;
    std::vector<Matrix> m_Quadrics;
    std::vector<Pair> m_Pairs;
    Heap m_Heap{m_Pairs};
    std::vector<IntList> m_EdgeLists;
    IntList m_Parent;
};
}

void SimplifyLiterally(MANBrepElementManager& elements, MANSceneManager& scene, float ratio)
{
    LiteralSimplify run;
    const auto* leaf = static_cast<MANSceneLeaf*>(scene.GetRootGroup()->GetChildren()[0]);
    run.Read(*leaf->GetSolid());
    run.BuildTopology();
    run.SumQuadrics();
    run.QueuePairs();
    run.Contract(ratio);
    run.WriteBack(elements, scene);
}
}
