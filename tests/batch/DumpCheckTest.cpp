#include "DumpCheck.h"
#include "BatchDocument.h"
#include "Dump.h"
#include "IASubLOOPCommand.h"
#include "MANSceneManager.h"
#include "Meshes.h"
#include "Open3DView.h"
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sstream>

using namespace tessarine;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{
enum class Step
{
    None,
    Loop
};

std::string DumpOf(const IndexedMesh& mesh, Step step = Step::None)
{
    MANBrepElementManager elements;
    MANSceneManager scene;
    Open3DView view;
    MANSceneLeaf* pLeaf = scene.NewLeaf();
    pLeaf->SetSolid(LoadQuietly(elements, mesh));
    scene.GetRootGroup()->AddChild(pLeaf);
    if (step == Step::Loop)
    {
        IASubLOOPCommand command;
        command.SetElementManager(&elements);
        command.SetSceneManager(&scene);
        command.Execute();
    }

    std::string text;
    WriteDump({elements, scene, view, 0}, [&text](std::string_view piece) { text += piece; });
    return text;
}

DumpFindings FindingsIn(const std::string& text)
{
    std::istringstream stream(text);
    return CheckDump(stream);
}

/// The breach in the dump of a tetrahedron after `damage(dump)`.
template <class TDamage>
std::string BreachAfter(TDamage damage)
{
    nlohmann::json dump = nlohmann::json::parse(DumpOf(Tetrahedron()));
    damage(dump);
    return FindingsIn(dump.dump()).breach;
}
}

TEST(DumpCheck, FindsNothingWrongWithWhatTheBuilderMakes)
{
    for (const IndexedMesh& mesh :
         {SingleTriangle(), Tetrahedron(), QuadCube(), OpenFan(5), ClosedFan(5), Grid(4), Sphere(2),
          Torus(5, 4), ThreeTrianglesOnOneEdge(), BowTie(), DegenerateTriangle(), IndexedMesh()})
    {
        EXPECT_THAT(FindingsIn(DumpOf(mesh)).breach, IsEmpty());
    }
}

TEST(DumpCheck, CountsWhatTheDumpHolds)
{
    const DumpFindings findings = FindingsIn(DumpOf(QuadCube()));

    EXPECT_EQ(findings.solids, 1U);
    EXPECT_EQ(findings.vertices, 8U);
    EXPECT_EQ(findings.edges, 12U);
    EXPECT_EQ(findings.faces, 6U);
    EXPECT_EQ(findings.halfEdges, 24U);
    EXPECT_EQ(findings.displacedHalfEdges, 0U);
    EXPECT_EQ(findings.clashingEdges, 0U);
}

TEST(DumpCheck, TellsOfHalfEdgesThatAThirdFaceDisplaced)
{
    const DumpFindings findings = FindingsIn(DumpOf(ThreeTrianglesOnOneEdge()));

    EXPECT_EQ(findings.displacedHalfEdges, 1U); // that of the second face
    EXPECT_EQ(findings.clashingEdges, 1U);      // the first and the third face run the same way
}

TEST(DumpCheck, TakesADisplacedHalfEdgeWholeWhenItsEdgeWasSplit)
{
    const DumpFindings findings = FindingsIn(DumpOf(ThreeTrianglesOnOneEdge(), Step::Loop));
    EXPECT_THAT(findings.breach, IsEmpty());
    EXPECT_EQ(findings.displacedHalfEdges, 2U); // in the solid before, and in the new one
}

TEST(DumpCheck, TellsOfHalfEdgesThatASplitToreFromTheirEdge)
{
    // Two faces that run the same way along an edge; after a Loop step each half of it has a part of both sides.
    IndexedMesh mesh = SingleTriangle();
    mesh.positions.emplace_back(1, 1, 1);
    mesh.AddFace({1, 2, 4});
    const DumpFindings findings = FindingsIn(DumpOf(mesh, Step::Loop));
    EXPECT_THAT(findings.breach, IsEmpty());
    EXPECT_EQ(findings.clashingEdges, 1U); // that of the solid before
    EXPECT_EQ(findings.tornHalfEdges, 2U);
}

TEST(DumpCheck, TellsOfFacesWithOneCorner)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.AddFace({1});

    const DumpFindings findings = FindingsIn(DumpOf(mesh));
    EXPECT_THAT(findings.breach, IsEmpty());
    EXPECT_EQ(findings.loneHalfEdges, 1U);
}

TEST(DumpCheck, ChecksEachLink)
{
    const auto breachOfLink = [](const char* table, const char* field, const nlohmann::json& value)
    { return BreachAfter([&](nlohmann::json& dump) { dump[table][1][field] = value; }); };

    const auto halfEdge = [](unsigned slot) { return 0x20000000U + slot; };
    EXPECT_THAT(breachOfLink("halfedges", "next", halfEdge(4)), HasSubstr("halfedges 536870913"));
    EXPECT_THAT(breachOfLink("halfedges", "next", nullptr), HasSubstr("halfedges null"));
    EXPECT_THAT(breachOfLink("halfedges", "prev", halfEdge(99)), HasSubstr("is not the prev of its next"));
    EXPECT_THAT(breachOfLink("halfedges", "loop", 0xA0000002U), HasSubstr("in another loop"));
    EXPECT_THAT(breachOfLink("halfedges", "v", 3), HasSubstr("lies between other vertices"));
    EXPECT_THAT(breachOfLink("halfedges", "v", 4), HasSubstr("vertices 4"));
    EXPECT_THAT(breachOfLink("halfedges", "e", nullptr), HasSubstr("edges null"));
    EXPECT_THAT(breachOfLink("halfedges", "e", 0x80000005U), HasSubstr("edge"));
    EXPECT_THAT(breachOfLink("edges", "h1", nullptr), HasSubstr("edges 2147483649"));
    EXPECT_THAT(breachOfLink("edges", "h2", nullptr), HasSubstr("is not listed by its edge"));
    EXPECT_THAT(breachOfLink("loops", "h", halfEdge(0)), HasSubstr("loops 2684354561 runs over"));
    EXPECT_THAT(breachOfLink("loops", "face", 0xC0000000U), HasSubstr("is not listed by its face"));
    EXPECT_THAT(breachOfLink("faces", "loops", nlohmann::json::array()), HasSubstr("not listed by its face"));
    EXPECT_THAT(breachOfLink("faces", "solid", nullptr), HasSubstr("solids null"));
    EXPECT_THAT(breachOfLink("vertices", "h", nullptr), HasSubstr("one starts there"));
    EXPECT_THAT(breachOfLink("vertices", "h", halfEdge(0)), HasSubstr("another vertex"));
}

TEST(DumpCheck, ChecksIds)
{
    EXPECT_THAT(BreachAfter([](nlohmann::json& dump) { dump["vertices"][2]["id"] = 1; }),
                "vertices 2 says that its id is 1");
    EXPECT_THAT(BreachAfter([](nlohmann::json& dump) { dump["faces"][0]["id"] = 0; }),
                HasSubstr("faces 3221225472"));
}

TEST(DumpCheck, ChecksThatListsReferToLiveElementsAndToEachOnce)
{
    EXPECT_THAT(BreachAfter([](nlohmann::json& dump) { dump["solids"][0]["vertices"][0] = 7; }),
                HasSubstr("solids 3758096384 lists vertices 7"));
    EXPECT_THAT(BreachAfter([](nlohmann::json& dump) { dump["solids"][0]["edges"][0] = nullptr; }),
                HasSubstr("lists edges null"));
    EXPECT_THAT(BreachAfter([](nlohmann::json& dump) { dump["solids"][0]["faces"].erase(0); }),
                HasSubstr("no solid lists faces 3221225472"));
    EXPECT_THAT(BreachAfter([](nlohmann::json& dump) { dump["solids"][0]["faces"][1] = 0xC0000000U; }),
                HasSubstr("lists once more faces 3221225472"));
    EXPECT_THAT(
        BreachAfter([](nlohmann::json& dump) { dump["scene"]["children"][0]["solid"] = 0xE0000001U; }),
        HasSubstr("a scene leaf shows solids 3758096385"));
    EXPECT_THAT(BreachAfter([](nlohmann::json& dump) { dump["faces"][3] = nullptr; }), HasSubstr("faces"));
}

TEST(DumpCheck, RefusesWhatIsNoDump)
{
    EXPECT_THAT(FindingsIn("{").breach, HasSubstr("no JSON"));
    EXPECT_THAT(FindingsIn("{}").breach, HasSubstr("no array \"solids\""));
}
