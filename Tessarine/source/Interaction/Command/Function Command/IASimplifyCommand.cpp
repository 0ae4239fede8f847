#include "IASimplifyCommand.h"
#include "Assert.h"
#include "Console.h"
#include "CycleGuard.h"
#include "ErrorLine.h"
#include "Failure.h"
#include "FreeList.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "PairContraction.h"
#include "VertexPlaces.h"
#include <cmath>
#include <string>

namespace tessarine
{
namespace
{
bool IsFinite(const smVec3f& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

smVec3f ToSinglePrecision(const smVec3d& v)
{
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

std::size_t ToIndex(std::int32_t i)
{
    return static_cast<std::size_t>(i);
}

constexpr std::int32_t kUnused = -1;
}

void IASimplifyCommand::Execute()
{
    ASSERT(m_pElementManager != nullptr);
    ASSERT(m_pSceneManager != nullptr);
    DemandRatio();
    const DSSolid* pSolid = m_pSceneManager->GetCurrentSolid();
    if (pSolid == nullptr)
    {
        throw Failure("simplification needs a model: import one first");
    }
    ReadSolid(*pSolid);
    ContractPairs();
    ReleaseInput();
    ShowSimplifiedSolid();
}

void IASimplifyCommand::DemandRatio() const
{
    if (!(m_fRatio >= 0.0F && m_fRatio <= 1.0F))
    {
        throw Failure("the share of the faces that simplification removes must be "
                      "a number from 0 to 1");
    }
}

void IASimplifyCommand::ReadSolid(const DSSolid& solid)
{
    ReadVertices(solid);
    ReadFaces(solid);
    const std::size_t corners = 3 * static_cast<std::size_t>(m_nFaces);
    if (m_FaceVertices.size() > corners)
    {
        PrintErrorLine(
            "simplification is for triangles, and of the model's faces with more corners each three corners "
            "behind one another are taken for one: split them in the program that made it, and import "
            "again");
    }
    if (m_FaceVertices.size() < corners)
    {
        throw Failure("the model has faces with fewer than three corners, which "
                      "cannot be simplified: remove "
                      "them from the file and import again");
    }
}

void IASimplifyCommand::ReadVertices(const DSSolid& solid)
{
    m_nVertices = static_cast<std::int32_t>(solid.GetVertexList().size());
    m_Vertices.clear();
    m_Vertices.reserve(solid.GetVertexList().size());
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        ASSERT(pVertex != nullptr);
        m_Vertices.push_back(ToSinglePrecision(pVertex->GetPosition()));
        if (!IsFinite(m_Vertices.back()))
        {
            throw Failure("vertex " + std::to_string(m_Vertices.size()) +
                          " stands at a position that is not a finite number in "
                          "single precision, which cannot be "
                          "simplified: mend it in the file and import again");
        }
    }
}

void IASimplifyCommand::ReadFaces(const DSSolid& solid)
{
    const VertexPlaces places(solid);
    const std::size_t faces = solid.GetFaceList().size();
    m_nFaces = static_cast<std::int32_t>(faces);
    m_pFaceNormals = std::make_unique<smVec3f[]>(faces);
    m_FaceVertices.clear();
    m_FaceVertices.reserve(3 * faces);
    smVec3f* pNormal = m_pFaceNormals.get();
    for (const DSFace* pFace : solid.GetFaceList())
    {
        ASSERT(pFace != nullptr && !pFace->GetLoopList().empty());
        const DSHalfEdge* const pFirst = pFace->GetLoopList()[0]->GetHalfEdge();
        const DSHalfEdge* h = pFirst;
        CycleGuard guard;
        do
        {
            guard.Visit(h);
            ASSERT(h->GetVertex() != nullptr);
            m_FaceVertices.push_back(places.GetPlace(*h->GetVertex()));
            h = h->GetNext();
        } while (h != pFirst);
        *pNormal++ = ToSinglePrecision(pFace->GetNormal());
    }
}

void IASimplifyCommand::ContractPairs()
{
    PairContraction work(
        {m_Vertices, m_FaceVertices, {m_pFaceNormals.get(), static_cast<std::size_t>(m_nFaces)}});
    work.LinkVertices();
    work.SumVertexQuadrics();
    work.QueueEdgePairs();
    work.ContractCheapestFirst(static_cast<std::int32_t>(static_cast<float>(m_nFaces) * m_fRatio));
    NumberSurvivors(work);
    if (sTriangles == 0)
    {
        PrintErrorLine("simplification has left no face");
    }
}

/// A face survives whose corners have stayed three.
void IASimplifyCommand::NumberSurvivors(const PairContraction& work)
{
    std::vector<std::int32_t> numbers(m_Vertices.size(), kUnused);
    const auto forEachSurvivor = [&](auto&& visit)
    {
        for (std::size_t i = 0; i < 3 * static_cast<std::size_t>(m_nFaces); i += 3)
        {
            const std::int32_t a = work.GetRoot(m_FaceVertices[i]);
            const std::int32_t b = work.GetRoot(m_FaceVertices[i + 1]);
            const std::int32_t c = work.GetRoot(m_FaceVertices[i + 2]);
            if (a != b && b != c && a != c)
            {
                visit(a, b, c);
            }
        }
    };
    sTriangles = 0;
    forEachSurvivor(
        [&](std::int32_t a, std::int32_t b, std::int32_t c)
        {
            numbers[ToIndex(a)] = numbers[ToIndex(b)] = numbers[ToIndex(c)] = 0;
            ++sTriangles;
        });
    NumberRoots(work, numbers);
    fv.clear();
    fv.reserve(3 * static_cast<std::size_t>(sTriangles));
    forEachSurvivor(
        [&](std::int32_t a, std::int32_t b, std::int32_t c) {
            fv.insert(fv.end(), {numbers[ToIndex(a)] + 1, numbers[ToIndex(b)] + 1, numbers[ToIndex(c)] + 1});
        });
}

/// In the order of the roots.
void IASimplifyCommand::NumberRoots(const PairContraction& work, std::vector<std::int32_t>& numbers)
{
    sVertexes = 0;
    vList.clear();
    for (std::size_t v = 0; v < numbers.size(); ++v)
    {
        if (numbers[v] == kUnused)
        {
            continue;
        }
        const smVec3f& position = work.GetPosition(static_cast<std::int32_t>(v));
        if (!IsFinite(position))
        {
            throw Failure("simplification would move a vertex to a position that is "
                          "not a finite number: scale the "
                          "model to smaller coordinates and try again");
        }
        numbers[v] = sVertexes++;
        vList.emplace_back(position);
    }
}

/// The history keeps the command, and of its run only the result.
void IASimplifyCommand::ReleaseInput()
{
    FreeList(m_Vertices);
    FreeList(m_FaceVertices);
    m_pFaceNormals.reset();
}

void IASimplifyCommand::ShowSimplifiedSolid()
{
    const std::vector<std::int32_t> fn(static_cast<std::size_t>(sTriangles), 3);
    DebugConsole() << "sTriangles: " << sTriangles << '\n';
    DebugConsole() << "sVertexes: " << sVertexes << '\n';
    DebugConsole() << "fn.Size(): " << fn.size() << '\n';
    DSSolid* pSolid = m_pElementManager->BuildSolid(vList, fv, fn, false);
    FreeList(vList);
    FreeList(fv);
    pSolid->CalcNormals();

    m_pSceneManager->AppendLeaf(pSolid);
    m_pSceneManager->GetRootGroup()->GetChildren().front()->SetVisible(false);
    m_pSceneManager->GetCurrentSolid()->SetVisible(false);
}
}
