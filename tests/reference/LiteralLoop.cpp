#include "LiteralLoop.h"
#include "ACTEuler.h"
#include "Assert.h"
#include "Console.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"

namespace tessarine
{
namespace
{
bool IsOpen(DSVertex* v, int& n)
{
    n = 0;
    DSHalfEdge* he = v->GetHalfEdge();
    ASSERT(he != nullptr);
    do
    {
        if (he->GetTwin() == nullptr)
        {
            return true;
        }
        n = n + 1;
        he = he->GetTwin()->GetNext();
    } while (he != v->GetHalfEdge());
    return false;
}

smVec3d ClosedPosition(DSVertex* v, int n)
{
    smVec3d s(0, 0, 0);
    DSHalfEdge* he = v->GetHalfEdge();
    do
    {
        s += he->GetNext()->GetVertex()->GetPosition();
        he = he->GetTwin()->GetNext();
    } while (he != v->GetHalfEdge());
    const smVec3d p = v->GetPosition();
    if (n <= 3)
    {
        return (1.0 - 3.0 * n / 16.0) * p + 3.0 * s / 16.0;
    }
    return 5.0 * p / 8.0 + 3.0 * s / (8.0 * n);
}

smVec3d OpenPosition(DSVertex* v)
{
    DSHalfEdge* he = v->GetHalfEdge();
    smVec3d a;
    for (;;)
    {
        DSHalfEdge* mate = he->GetTwin();
        if (mate == nullptr)
        {
            a = he->GetNext()->GetVertex()->GetPosition();
            break;
        }
        he = mate->GetNext();
    }
    smVec3d b;
    for (;;)
    {
        DSHalfEdge* mate = he->GetPrev()->GetTwin();
        if (mate == nullptr)
        {
            b = he->GetPrev()->GetVertex()->GetPosition();
            break;
        }
        he = mate;
    }
    DebugConsole() << "boudary!" << '\n';
    return 3.0 * v->GetPosition() / 4.0 + (a + b) / 8.0;
}

void SplitOneEdge(MANBrepElementManager& manager, ACTEuler& euler, DSEdge* edge)
{
    DSHalfEdge* h1 = edge->GetHalfEdge1();
    DSHalfEdge* h2 = edge->GetHalfEdge2();
    ASSERT(h1 != nullptr);
    DSVertex* first = h1->GetVertex();
    DSVertex* second = h1->GetNext()->GetVertex();
    const smVec3d a = first->GetPosition();
    const smVec3d b = second->GetPosition();
    smVec3d position;
    if (h2 != nullptr)
    {
        const smVec3d c = h2->GetPrev()->GetVertex()->GetPosition();
        const smVec3d d = h1->GetPrev()->GetVertex()->GetPosition();
        position = (3.0 * (a + b) + (c + d)) / 8.0;
    }
    else
    {
        position = (a + b) / 2.0;
        DebugConsole() << "boudary!" << '\n';
    }
    DSEdge* found = manager.FindEdge(first->GetID(), second->GetID());
    DSFace* face = h1->GetLoop()->GetFace();
    std::uint32_t newVertex = 0;
    if (found != nullptr && found->GetHalfEdge1()->GetLoop()->GetFace() == face)
    {
        euler.LSEMV(found->GetHalfEdge1(), found->GetHalfEdge2(), newVertex, position);
    }
    else
    {
        euler.LSEMV(h1, h2, newVertex, position);
    }
}

void CutOneLoop(ACTEuler& euler, DSSolid* solid, DSLoop* loop)
{
    DSHalfEdge* f = loop->GetHalfEdge();
    std::vector<DSHalfEdge*> list;
    DSHalfEdge* he = f;
    do
    {
        he = he->GetNext()->GetNext();
        list.push_back(he);
    } while (he != loop->GetHalfEdge());

    he = f;
    std::size_t k = 0;
    do
    {
        std::uint32_t newFace = 0;
        euler.LMEF(solid, he->GetNext(), he->GetPrev(), newFace);
        he = list[k];
        k = k + 1;
    } while (he != f);
}

DSSolid* KeepSnapshot(MANBrepElementManager& manager, MANSceneManager& scene, DSSolid* solid)
{
    DSSolid* copy = manager.CreateSolid();
    MANSceneLeaf* leaf = scene.NewLeaf();
    manager.CopySolid(solid, copy);
    scene.GetRootGroup()->AddChild(leaf);
    leaf->SetParent(scene.GetRootGroup());
    leaf->SetSolid(copy);
    copy->SetVisible(false);
    return copy;
}
}

void SubdivideLiterally(MANBrepElementManager& manager, MANSceneManager& scene)
{
    DSSolid* solid = static_cast<MANSceneLeaf*>(scene.GetRootGroup()->GetChildren().at(0))->GetSolid();
    KeepSnapshot(manager, scene, solid);
    ACTEuler euler(&manager);

    std::vector<smVec3d> newPositions;
    for (std::size_t i = 0; i < solid->GetVertexList().size(); ++i)
    {
        DSVertex* v = solid->GetVertexList()[i];
        int n = 0;
        if (v->GetHalfEdge() == nullptr)
        {
            newPositions.push_back(v->GetPosition());
            continue;
        }
        newPositions.push_back(IsOpen(v, n) ? OpenPosition(v) : ClosedPosition(v, n));
    }
    const std::size_t edges = solid->GetEdgeList().size();
    for (std::size_t i = 0; i < edges; ++i)
    {
        SplitOneEdge(manager, euler, solid->GetEdgeList()[i]);
    }
    for (std::size_t i = 0; i < newPositions.size(); ++i)
    {
        solid->GetVertexList()[i]->GetPosition() = newPositions[i];
    }
    const std::size_t faces = solid->GetFaceList().size();
    for (std::size_t i = 0; i < faces; ++i)
    {
        DSFace* face = solid->GetFaceList()[i];
        for (std::size_t k = 0; k < face->GetLoopList().size(); ++k)
        {
            CutOneLoop(euler, solid, face->GetLoopList()[k]);
        }
    }
    solid->CalcNormals();
}
}
