#include "Dump.h"
#include "BatchDocument.h"
#include "MANSceneManager.h"
#include "Meshes.h"
#include "Open3DView.h"
#include <gmock/gmock.h>
#include <limits>
#include <nlohmann/json.hpp>

using namespace tessarine;
using testing::HasSubstr;

namespace
{
/// The stores of a document, and their dump.
struct Stores
{
    MANBrepElementManager elements;
    MANSceneManager scene;
    Open3DView view;

    std::string Dump() const
    {
        std::string text;
        WriteDump({elements, scene, view, 0}, [&text](std::string_view piece) { text += piece; });
        return text;
    }

    nlohmann::json Parsed() const { return nlohmann::json::parse(Dump()); }
};

constexpr char kEmptyDump[] =
    R"({"format": "tessarine-dump 1",
 "scene": {"root": 3221225472, "children": []},
 "solids": [],
 "vertices": [],
 "halfedges": [],
 "edges": [],
 "loops": [],
 "faces": [],
 "selection": {"type": 83886085, "ids": []},
 "materials": [],
 "textures": [],
 "lights": [
  {"name": "Main Light", "ambient": [0,0,0], "diffuse": [0.7,0.7,0.7], "specular": [0,0,0], "position": [0.61237,0.5,0.61237,0], "flags": [false,true,false]},
  {"name": "Aid Light", "ambient": [0,0,0], "diffuse": [0.7,0.7,0.7], "specular": [0,0,0], "position": [-0.61237,0.5,-0.61237,0], "flags": [false,true,false]},
  {"name": "Bot Light", "ambient": [0,0,0], "diffuse": [0.7,0.7,0.7], "specular": [0,0,0], "position": [0,-1,0,0], "flags": [false,true,false]}],
 "view": {"flags": 12, "camera": {"position": [10,4,10], "target": [0,0,0], "up": [0,1,0], "near": 0.1, "far": 200, "fovy": 45, "aspect": 1}, "hover": [], "pointCloud": [], "pointNormals": [], "projectedPoints": [], "newMesh": null, "octree": null},
 "cutFaces": []}
)";
}

TEST(Dump, OfAnEmptyDocumentHoldsTheDefaultsAndNothingElse)
{
    EXPECT_EQ(Stores().Dump(), kEmptyDump);
}

TEST(Dump, WritesNullForADeletedElementAndForALinkThatIsNone)
{
    Stores stores;
    DSVertex* pFirst = stores.elements.CreateVertex();
    stores.elements.CreateVertex()->SetPosition(1.0, -0.5, 0.1);
    stores.elements.DeleteVertex(pFirst);
    stores.elements.CreateEdge();

    EXPECT_THAT(stores.Dump(), HasSubstr(" \"vertices\": [\n"
                                         "  null,\n"
                                         "  {\"id\": 1, \"p\": [1,-0.5,0.1], \"n\": [0,0,0], \"h\": null, "
                                         "\"selected\": false}],\n"));
    EXPECT_THAT(
        stores.Dump(),
        HasSubstr("{\"id\": 2147483648, \"h1\": null, \"h2\": null, \"highlight\": false, \"split\": false, "
                  "\"splitVertex\": 0, \"boundary\": false}"));
}

TEST(Dump, WritesNumbersThatAreNoneAsStrings)
{
    Stores stores;
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    stores.elements.CreateVertex()->SetPosition(std::numeric_limits<double>::quiet_NaN(), kInfinity,
                                                -kInfinity);

    EXPECT_THAT(stores.Dump(), HasSubstr(R"("p": ["nan","inf","-inf"])"));
}

TEST(Dump, WritesFloatsInTheirOwnShortestForm)
{
    Stores stores;
    stores.elements.CreateHalfEdge()->GetTexCoord() = smVec2f(0.1F, 1.0F / 3.0F);
    stores.view.Resize(0, 0, 800, 600);

    const std::string dump = stores.Dump();
    EXPECT_THAT(dump, HasSubstr(R"("t": [0.1,0.33333334])"));
    EXPECT_THAT(dump, HasSubstr(R"("aspect": 1.3333334)"));
}

TEST(Dump, NamesMaterialsByNullDefaultOrNumber)
{
    Stores stores;
    MANMaterialManager& materials = stores.elements.GetMaterialManager();
    materials.NewMaterial();
    DSMaterial* pSecond = materials.NewMaterial();
    stores.elements.CreateFace();
    stores.elements.CreateFace()->GetMaterial() = &materials.GetDefaultMaterial();
    stores.elements.CreateFace()->GetMaterial() = pSecond;
    stores.elements.CreateSolid()->SetMaterial(pSecond);

    const nlohmann::json dump = stores.Parsed();
    EXPECT_EQ(dump["faces"][0]["material"], nullptr);
    EXPECT_EQ(dump["faces"][1]["material"], "default");
    EXPECT_EQ(dump["faces"][2]["material"], 1);
    EXPECT_EQ(dump["solids"][0]["material"], 1);
}

TEST(Dump, WritesMaterialsWithTheNumberOfTheirTexture)
{
    Stores stores;
    MANMaterialManager& materials = stores.elements.GetMaterialManager();
    materials.NewTexture();
    DSTexture* pTexture = materials.NewTexture();
    pTexture->SetImage(2, 1, 3, std::vector<std::uint8_t>(6));
    DSTextureBinding* pBinding = materials.NewImage();
    pBinding->m_pTexture = pTexture;
    DSMaterial* pMaterial = materials.NewMaterial();
    pMaterial->m_Name = "bad \xFF name";
    pMaterial->m_Ambient = smVec3f(0.1F, 0.2F, 0.3F);
    pMaterial->m_pTexture = pBinding;
    materials.NewMaterial();

    const std::string dump = stores.Dump();
    EXPECT_THAT(
        dump,
        HasSubstr("{\"name\": \"bad \xEF\xBF\xBD name\", \"ambient\": [0.1,0.2,0.3], \"diffuse\": [1,1,1], "
                  "\"specular\": [0.75,0.75,0.75], \"emission\": [0,0,0], \"shininess\": 40, "
                  "\"transparency\": 1, \"texture\": 1},\n"));
    EXPECT_THAT(dump, HasSubstr("\"transparency\": 1, \"texture\": null}],\n"));
    EXPECT_THAT(dump, HasSubstr(" \"textures\": [\n"
                                "  {\"file\": \"\", \"width\": 0, \"height\": 0, \"components\": 0},\n"
                                "  {\"file\": \"\", \"width\": 2, \"height\": 1, \"components\": 3}],\n"));
}

TEST(Dump, WritesGroupsWithTheirChildren)
{
    Stores stores;
    MANSceneGroup* pGroup = stores.scene.NewGroup();
    MANSceneLeaf* pLeaf = stores.scene.NewLeaf();
    pLeaf->SetVisible(false);
    pGroup->AddChild(pLeaf);
    stores.scene.GetRootGroup()->AddChild(pGroup);
    stores.scene.GetRootGroup()->AddChild(stores.scene.NewLeaf());

    const nlohmann::json expected = nlohmann::json::parse(R"([
        {"id": 3221225473, "visible": true, "children": [{"id": 3758096384, "visible": false, "solid": null}]},
        {"id": 3758096385, "visible": true, "solid": null}])");
    EXPECT_EQ(stores.Parsed()["scene"]["children"], expected);
}

TEST(Dump, WritesSelectionOverlaysAndCutFaces)
{
    Stores stores;
    stores.elements.CreateVertex();
    stores.elements.CreateVertex();
    stores.elements.ToggleSelect(1);
    stores.view.GetHoverList() = {0};
    stores.view.GetPointCloud() = {smVec3d(1, 2, 3), smVec3d(0.5, 0, 0)};
    stores.view.GetPointNormals() = {smVec3d(0, 0, 1)};
    stores.view.GetProjectedPoints() = {smVec3d(0, 1, 0)};
    stores.view.SetNewMesh(stores.elements.CreateSolid());
    stores.scene.GetCutFaceList().push_back(
        {smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(1, 1, 0), smVec3d(0, 1, 0.25)});

    const std::string text = stores.Dump();
    const nlohmann::json dump = nlohmann::json::parse(text);
    EXPECT_EQ(dump["selection"]["ids"], nlohmann::json::array({1}));
    EXPECT_EQ(dump["vertices"][1]["selected"], true);
    EXPECT_EQ(dump["vertices"][0]["selected"], false);
    EXPECT_EQ(dump["view"]["hover"], nlohmann::json::array({0}));
    EXPECT_EQ(dump["view"]["newMesh"], 0xE0000000U);
    EXPECT_THAT(text, HasSubstr(R"("pointCloud": [[1,2,3],[0.5,0,0]], "pointNormals": [[0,0,1]], )"
                                R"("projectedPoints": [[0,1,0]])"));
    EXPECT_THAT(text, HasSubstr(" \"cutFaces\": [\n  [[0,0,0],[1,0,0],[1,1,0],[0,1,0.25]]]}\n"));
}

TEST(Dump, WritesAFaceWithItsTags)
{
    Stores stores;
    DSFace* pFace = stores.elements.CreateFace();
    pFace->GetTag() = 5;
    pFace->GetTagList() = {-1, 7};
    pFace->GetNormal() = smVec3d(0, 0, 1);
    pFace->GetLoopList().push_back(stores.elements.CreateLoop());

    EXPECT_THAT(stores.Dump(),
                HasSubstr("{\"id\": 3221225472, \"loops\": [2684354560], \"n\": [0,0,1], \"solid\": null, "
                          "\"material\": null, \"tag\": 5, \"tags\": [-1,7]}"));
}

TEST(Dump, ListsTheElementsOfASolidInTheirOrder)
{
    Stores stores;
    LoadQuietly(stores.elements, SingleTriangle());

    EXPECT_THAT(stores.Dump(), HasSubstr("{\"id\": 3758096384, \"visible\": true, \"material\": null, "
                                         "\"vertices\": [0,1,2], \"faces\": [3221225472], "
                                         "\"edges\": [2147483648,2147483649,2147483650]}"));
}

TEST(Dump, HandsItsTextOnInPieces)
{
    Stores stores;
    LoadQuietly(stores.elements, Grid(40)); // 3200 triangles
    std::size_t longest = 0;
    WriteDump({stores.elements, stores.scene, stores.view, 0},
              [&longest](std::string_view piece) { longest = std::max(longest, piece.size()); });

    EXPECT_LT(longest, 200000U); // the whole is over a million
    EXPECT_GT(longest, 0U);
}
