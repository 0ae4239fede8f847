#pragma once
#include "ACTEuler.h"
#include "Capture.h"
#include "LinksHold.h"
#include "Meshes.h"
#include "RecordDump.h"
#include <gmock/gmock.h>
#include <utility>
#include <vector>

namespace tessarine
{
/// A manager and the operators on it. The records of a kind are named by their index.
class ACTEulerTest : public testing::Test
{
protected:
    DSSolid* Load(const IndexedMesh& mesh) { return LoadQuietly(m_Manager, mesh); }

    DSVertex* V(std::uint32_t index) const { return m_Manager.GetVertex(index); }
    DSHalfEdge* H(std::uint32_t index) const { return m_Manager.GetHalfEdge(ElementKind::HalfEdge | index); }
    DSEdge* E(std::uint32_t index) const { return m_Manager.GetEdge(ElementKind::Edge | index); }
    DSLoop* L(std::uint32_t index) const { return m_Manager.GetLoop(ElementKind::Loop | index); }
    DSFace* F(std::uint32_t index) const { return m_Manager.GetFace(ElementKind::Face | index); }
    DSSolid* S(std::uint32_t index) const { return m_Manager.GetSolid(ElementKind::Solid | index); }

    static std::uint32_t IndexOf(const DSElement* element)
    {
        return element != nullptr ? element->GetID() & 0x0FFFFFFF : 0xFFFFFFFF;
    }

    /// The half-edges of a loop from its entry on.
    static std::vector<std::uint32_t> RingOf(const DSLoop* loop)
    {
        std::vector<std::uint32_t> ring;
        const DSHalfEdge* h = loop->GetHalfEdge();
        do
        {
            EXPECT_EQ(h->GetLoop(), loop);
            EXPECT_EQ(h->GetNext()->GetPrev(), h);
            ring.push_back(IndexOf(h));
            h = h->GetNext();
        } while (h != loop->GetHalfEdge());
        return ring;
    }

    /// Their start vertices.
    static std::vector<std::uint32_t> CornersOf(const DSLoop* loop)
    {
        std::vector<std::uint32_t> corners;
        const DSHalfEdge* h = loop->GetHalfEdge();
        do
        {
            corners.push_back(IndexOf(h->GetVertex()));
            h = h->GetNext();
        } while (h != loop->GetHalfEdge());
        return corners;
    }

    template <class TList>
    static std::vector<std::uint32_t> IndicesOf(const TList& list)
    {
        std::vector<std::uint32_t> indices;
        for (const auto* pElement : list)
        {
            indices.push_back(IndexOf(pElement));
        }
        return indices;
    }

    /// The indices of an edge's half-edges; -1 for none.
    static std::pair<int, int> SidesOf(const DSEdge* edge)
    {
        const auto index = [](const DSHalfEdge* h)
        { return h != nullptr ? static_cast<int>(IndexOf(h)) : -1; };
        return {index(edge->GetHalfEdge1()), index(edge->GetHalfEdge2())};
    }

    /// Whether the call fails an assertion of the operators and leaves every record as it was.
    template <class TCall>
    testing::AssertionResult IsRefused(TCall call)
    {
        const AssertionCapture assertions;
        const ConsoleCapture console;
        const std::string before = DumpRecords(m_Manager);
        try
        {
            call();
            return testing::AssertionFailure() << "it was carried out";
        }
        catch (const AssertionFailure& failure)
        {
            if (DumpRecords(m_Manager) != before)
            {
                return testing::AssertionFailure() << "the records have changed";
            }
            return testing::AssertionSuccess() << failure.GetMessage();
        }
    }

    MANBrepElementManager m_Manager;
    ACTEuler m_Euler{&m_Manager};
    std::uint32_t m_nSolid = 0;
    std::uint32_t m_nFace = 0;
    std::uint32_t m_nVertex = 0;
    std::uint32_t m_nNewFace = 0;
};
}
