#include "Report.h"
#include "BatchDocument.h"
#include "MANSceneManager.h"
#include "Meshes.h"
#include "Open3DView.h"
#include "SolidCounts.h"
#include <algorithm>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using namespace tessarine;

namespace
{
SolidCounts CountsOf(const IndexedMesh& mesh)
{
    MANBrepElementManager elements;
    return CountSolid(*LoadQuietly(elements, mesh), elements);
}

struct Stores
{
    MANBrepElementManager elements;
    MANSceneManager scene;
    Open3DView view;

    MANSceneLeaf* Show(const IndexedMesh& mesh)
    {
        MANSceneLeaf* pLeaf = scene.NewLeaf();
        pLeaf->SetSolid(LoadQuietly(elements, mesh));
        scene.GetRootGroup()->AddChild(pLeaf);
        return pLeaf;
    }

    std::string Report() const { return MakeReport({elements, scene, view, 3, 0x4000003}); }
    nlohmann::json Parsed() const { return nlohmann::json::parse(Report()); }
};
}

TEST(SolidCounts, OfATetrahedronFitEuler)
{
    const SolidCounts counts = CountsOf(CentredTetrahedron());

    EXPECT_EQ(counts.vertices, 4U);
    EXPECT_EQ(counts.faces, 4U);
    EXPECT_EQ(counts.edges, 6U);
    EXPECT_EQ(counts.boundaryEdges, 0U);
    EXPECT_EQ(counts.crowdedEdges, 0U);
    EXPECT_EQ(counts.pieces, 1U);
    EXPECT_EQ(counts.isolatedVertices, 0U);
    EXPECT_EQ(counts.eulerNumber, 2);
    EXPECT_EQ(counts.box->low.x, -1.0);
    EXPECT_EQ(counts.box->high.z, 1.0);
}

TEST(SolidCounts, OfATorusHaveTheEulerNumberZero)
{
    EXPECT_EQ(CountsOf(Torus(5, 4)).eulerNumber, 0);
}

TEST(SolidCounts, FindTheBoundaryOfAnOpenSheet)
{
    const SolidCounts counts = CountsOf(Grid(3));

    EXPECT_EQ(counts.boundaryEdges, 12U); // four sides of three
    EXPECT_EQ(counts.eulerNumber, 1);
}

TEST(SolidCounts, FindAnEdgeWhereThreeFacesMeet)
{
    const SolidCounts counts = CountsOf(ThreeTrianglesOnOneEdge());

    EXPECT_EQ(counts.crowdedEdges, 1U);
    EXPECT_EQ(counts.boundaryEdges, 6U); // two of each face
}

TEST(SolidCounts, TakeFacesThatShareAVertexForOnePiece)
{
    EXPECT_EQ(CountsOf(BowTie()).pieces, 1U);
}

TEST(SolidCounts, CountPiecesAndIsolatedVerticesApart)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.positions.insert(mesh.positions.end(),
                          {smVec3d(5, 5, 5), smVec3d(6, 5, 5), smVec3d(6, 6, 5), smVec3d(9, 9, 9)});
    mesh.AddFace({4, 5, 6});

    const SolidCounts counts = CountsOf(mesh);
    EXPECT_EQ(counts.pieces, 2U);
    EXPECT_EQ(counts.isolatedVertices, 1U); // the seventh
    EXPECT_EQ(counts.box->high.x, 9.0);     // it counts for the box
}

TEST(SolidCounts, OfNothingAreZeroAndHaveNoBox)
{
    const SolidCounts counts = CountsOf(IndexedMesh());

    EXPECT_EQ(counts.pieces, 0U);
    EXPECT_EQ(counts.eulerNumber, 0);
    EXPECT_FALSE(counts.box);
}

TEST(SolidCounts, TolerateAFaceOfOneCorner)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.AddFace({1});

    EXPECT_EQ(CountsOf(mesh).faces, 2U);
    EXPECT_EQ(CountsOf(mesh).edges, 3U);
}

TEST(Report, TellsOfEachNodeUnderTheRoot)
{
    Stores stores;
    stores.Show(CentredTetrahedron());
    MANSceneLeaf* pSnapshot = stores.Show(IndexedMesh());
    pSnapshot->SetVisible(false);
    pSnapshot->GetSolid()->SetVisible(false);
    stores.scene.GetRootGroup()->AddChild(stores.scene.NewLeaf());

    const nlohmann::json expected = nlohmann::json::parse(R"([
        {"id": 3758096384, "visible": true, "solid": 3758096384, "solidVisible": true, "vertices": 4, "faces": 4, "edges": 6,
         "boundaryEdges": 0, "edgesOfMoreThanTwoFaces": 0, "pieces": 1, "isolatedVertices": 0, "eulerNumber": 2,
         "min": [-1.0, -1.0, -1.0], "max": [1.0, 1.0, 1.0]},
        {"id": 3758096385, "visible": false, "solid": 3758096385, "solidVisible": false, "vertices": 0, "faces": 0, "edges": 0,
         "boundaryEdges": 0, "edgesOfMoreThanTwoFaces": 0, "pieces": 0, "isolatedVertices": 0, "eulerNumber": 0,
         "min": null, "max": null},
        {"id": 3758096386, "visible": true, "solid": null}])");
    EXPECT_EQ(stores.Parsed()["nodes"], expected);
}

TEST(Report, TellsOfTheNodesBelowAGroup)
{
    Stores stores;
    MANSceneGroup* pGroup = stores.scene.NewGroup();
    pGroup->AddChild(stores.scene.NewLeaf());
    stores.scene.GetRootGroup()->AddChild(pGroup);

    const nlohmann::json expected = nlohmann::json::parse(R"([
        {"id": 3221225473, "visible": true, "children": 1},
        {"id": 3758096384, "visible": true, "solid": null}])");
    EXPECT_EQ(stores.Parsed()["nodes"], expected);
}

TEST(Report, TellsOfTheViewAndTheHistory)
{
    Stores stores;
    stores.view.GetPointCloud().resize(5);
    stores.elements.CreateVertex();
    stores.elements.ToggleSelect(0);
    stores.view.GetHoverList() = {0, 7};

    const nlohmann::json report = stores.Parsed();
    EXPECT_EQ(report["flags"], 12);
    EXPECT_EQ(report["camera"]["position"], nlohmann::json({10.0, 4.0, 10.0}));
    EXPECT_EQ(report["camera"]["near"], 0.1); // a float, told as one
    EXPECT_EQ(report["selection"], nlohmann::json({{"type", 83886085}, {"count", 1}, {"ids", {0}}}));
    EXPECT_EQ(report["hover"], nlohmann::json({{"count", 2}, {"ids", {0, 7}}}));
    EXPECT_EQ(report["overlays"]["pointCloud"], 5);
    EXPECT_EQ(report["overlays"]["cutFaces"], 0);
    EXPECT_EQ(report["history"], 3);
    EXPECT_EQ(report["tool"], 67108867);
}

TEST(Report, FitsAPageHoweverMuchIsSelected)
{
    Stores stores;
    stores.Show(Grid(20));
    stores.Show(Grid(20));
    for (std::uint32_t id = 0; id < 400; ++id)
    {
        stores.elements.ToggleSelect(id);
    }
    const std::string report = stores.Report();
    EXPECT_LE(std::count(report.begin(), report.end(), '\n'), 60);
    EXPECT_EQ(stores.Parsed()["selection"]["count"], 400);
    EXPECT_EQ(stores.Parsed()["selection"]["ids"].size(), kMostIdsInReport);
}
