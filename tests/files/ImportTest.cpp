#include "Capture.h"
#include "Failure.h"
#include "IOLoadObj.h"
#include "IOSaveObj.h"
#include "LinksHold.h"
#include "MANSceneManager.h"
#include "TemporaryFolder.h"
#include <cmath>
#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <vector>

/// The import of a file into the scene, with every line that it says.
namespace tessarine
{
namespace
{
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr std::uint32_t kFirstEdge = ElementKind::Edge;
constexpr std::uint32_t kFirstLoop = ElementKind::Loop;

/// Managers into which files are imported.
struct Import
{
    void Load(const std::string& fileName)
    {
        ConsoleCapture console;
        try
        {
            IOLoadObj(&scene, &elements).Load(fileName);
        }
        catch (const Failure& failure)
        {
            failureText = failure.GetMessage();
        }
        lines = console.GetLines();
    }
    void LoadText(const std::string& text)
    {
        ConsoleCapture console;
        IOLoadObj(&scene, &elements).LoadText("model.obj", text);
        lines = console.GetLines();
    }
    const auto& GetNodes() const { return scene.GetRootGroup()->GetChildren(); }
    DSSolid& GetSolid(std::size_t index = 0) const
    {
        return *dynamic_cast<MANSceneLeaf&>(*GetNodes().at(index)).GetSolid();
    }
    bool IsEmpty() const
    {
        return GetNodes().empty() && elements.GetSolidArray().empty() && elements.GetVertexArray().empty() &&
               scene.GetLeafList().empty();
    }

    MANBrepElementManager elements;
    MANSceneManager scene;
    std::string failureText;
    std::vector<std::string> lines;
};

std::string Boundary(int edge)
{
    return "boundary edge: " + std::to_string(kFirstEdge + static_cast<unsigned>(edge));
}

std::vector<std::string> Sizes(int vertices, int faces, int edges)
{
    return {"m_VertexList.SIZE(): " + std::to_string(vertices), "m_FaceList.Size(): " + std::to_string(faces),
            "m_EdgeList.Size(): " + std::to_string(edges)};
}

void Append(std::vector<std::string>& lines, const std::vector<std::string>& more)
{
    lines.insert(lines.end(), more.begin(), more.end());
}

constexpr const char* kTetrahedron = "# four corners\n"
                                     "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\n"
                                     "\n"
                                     "f 1 3 2\nf 1 2 4\nf 2 3 4\nf 3 1 4\n";

TEST(Import, SaysTheGoldenLinesOfATetrahedron)
{
    const TemporaryCurrentFolder folder;
    folder.Write("tetrahedron.obj", kTetrahedron);
    Import import;
    import.Load("tetrahedron.obj");

    EXPECT_EQ(import.failureText, "");
    EXPECT_THAT(
        import.lines,
        ElementsAre("Unknow token! Line: 10,Index: 0", // nine lines, and the read behind the last newline
                    "Number of halfedge: 12", "m_VertexList.SIZE(): 4", "m_FaceList.Size(): 4",
                    "m_EdgeList.Size(): 6", "total halfedge number: 12", "Solid fits Euler formular: true"));
}

TEST(Import, HangsTheSolidUnderTheRootInTheUnitCubeWithNormals)
{
    Import import;
    import.LoadText(kTetrahedron);

    ASSERT_EQ(import.GetNodes().size(), 1U);
    EXPECT_EQ(import.GetNodes()[0]->GetParent(), import.scene.GetRootGroup());
    EXPECT_TRUE(LinksHold(import.GetSolid()));
    for (const DSVertex* vertex : import.GetSolid().GetVertexList())
    {
        const smVec3d& position = vertex->GetPosition(); // 0 and 1 go to -1 and 1
        EXPECT_EQ(std::abs(position.x), 1.0);
        EXPECT_EQ(std::abs(position.y), 1.0);
        EXPECT_EQ(std::abs(position.z), 1.0);
        EXPECT_NEAR(vertex->GetNormal().Length(), 1.0, 1e-12);
    }
    for (const DSFace* face : import.GetSolid().GetFaceList())
    {
        EXPECT_EQ(face->GetMaterial(), &import.elements.GetMaterialManager().GetDefaultMaterial());
        EXPECT_NEAR(face->GetNormal().Length(), 1.0, 1e-12);
    }
}

TEST(Import, AddsTheSecondModelBehindTheFirst)
{
    Import import;
    import.LoadText(kTetrahedron);
    import.LoadText(kTetrahedron);
    ASSERT_EQ(import.GetNodes().size(), 2U);
    EXPECT_THAT(import.lines[1], "Number of halfedge: 24"); // over all solids
    EXPECT_TRUE(LinksHold(import.GetSolid(1)));
}

/// A row of four squares: the first without a material, then two blue ones, then a red one.
constexpr const char* kRow = "mtllib row.mtl\n"
                             "v 0 0 0\nv 1 0 0\nv 2 0 0\nv 3 0 0\nv 4 0 0\n"
                             "v 0 1 0\nv 1 1 0\nv 2 1 0\nv 3 1 0\nv 4 1 0\n"
                             "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
                             "f 1/1 2/2 7/3 6/4\n"
                             "usemtl blue\n"
                             "f 2/1 3/2 8/3 7/4\nf 3/1 4/2 9/3 8/4\n"
                             "usemtl red\n"
                             "f 4/1 5/2 10/3 9/4\n";
constexpr const char* kRowLibrary = "# paint\n"
                                    "newmtl red\nKa 0.2 0.2\nKd 1 0 0\nmap_Kd paint.ppm\nillum 2\n"
                                    "newmtl blue\nKd 0 0 1\n";

/// Two lines for each quadrilateral: the report takes triangles for granted.
std::vector<std::string> TopologyOfRow()
{
    std::vector<std::string> lines;
    for (const int edge : {0, 2, 3, 4, 6, 7, 9, 10, 11, 12}) // 1, 5 and 8 lie between two squares
    {
        lines.push_back(Boundary(edge));
    }
    Append(lines, Sizes(10, 4, 13));
    for (unsigned loop = 0; loop < 4; ++loop)
    {
        lines.push_back("loop error(next): " + std::to_string(kFirstLoop + loop));
        lines.push_back("loop error(Pre): " + std::to_string(kFirstLoop + loop));
    }
    Append(lines, {"total halfedge number: 16", "Solid fits Euler formular: false"}); // 10 + 4 - 13 = 1
    return lines;
}

TEST(Import, SaysTheGoldenLinesOfAnOpenQuadMeshWithMaterials)
{
    const TemporaryCurrentFolder folder;
    folder.Write("row.obj", kRow);
    folder.Write("row.mtl", kRowLibrary);
    folder.Write("paint.ppm", "P6\n1 1\n255\nabc");
    Import import;
    import.Load("row.obj");

    std::vector<std::string> expected{
        "Line: 6----Token: illum", "Unknow token! Line: 9,Index: 0", // the library
        "Unknow token! Line: 22,Index: 0", "texcoord number: 4", "texcoord index number: 16"};
    // The groups' names against each material's, until one fits: red, then blue.
    Append(expected, {"blue", "red", "red", "red", "blue", "blue"});
    Append(expected, TopologyOfRow());
    EXPECT_THAT(import.lines, ElementsAreArray(expected));
}

TEST(Import, BindsTheMaterialToTheFirstFaceOfEachRun)
{
    const TemporaryCurrentFolder folder;
    folder.Write("row.obj", kRow);
    folder.Write("row.mtl", kRowLibrary);
    folder.Write("paint.ppm", "P6\n1 1\n255\nabc");
    Import import;
    import.Load("row.obj");

    MANMaterialManager& materials = import.elements.GetMaterialManager();
    const DSMaterial* red = materials.GetMaterialList().at(0).get();
    const DSMaterial* blue = materials.GetMaterialList().at(1).get();
    const auto& faces = import.GetSolid().GetFaceList();
    EXPECT_EQ(faces[0]->GetMaterial(), &materials.GetDefaultMaterial());
    EXPECT_EQ(faces[1]->GetMaterial(), blue);
    EXPECT_EQ(faces[2]->GetMaterial(), nullptr);
    EXPECT_EQ(faces[3]->GetMaterial(), red);
    ASSERT_NE(red->m_pTexture, nullptr);
    EXPECT_EQ(red->m_pTexture->m_pTexture, materials.GetTextureList().at(0).get());
    EXPECT_EQ(blue->m_pTexture, nullptr);
    const DSHalfEdge* corner = faces[3]->GetLoopList()[0]->GetHalfEdge()->GetNext()->GetNext();
    EXPECT_EQ(corner->GetTexCoord().x, 1.0F);
    EXPECT_EQ(corner->GetTexCoord().y, 1.0F);
}

TEST(Import, SaysNoNamesWhereNoTextureIsNamed)
{
    const TemporaryCurrentFolder folder;
    folder.Write("row.obj", kRow);
    folder.Write("row.mtl", "newmtl blue\nKd 0 0 1");
    Import import;
    import.Load("row.obj");

    std::vector<std::string> expected{"Unknow token! Line: 22,Index: 0", "texcoord number: 4",
                                      "texcoord index number: 16"};
    Append(expected, TopologyOfRow());
    EXPECT_THAT(import.lines, ElementsAreArray(expected));
    EXPECT_EQ(import.GetSolid().GetFaceList()[3]->GetMaterial(),
              &import.elements.GetMaterialManager().GetDefaultMaterial()); // no material is called red
}

TEST(Import, KeepsTheDefaultOnTheFirstFaceOfAFileOfOneGroupZeroRun)
{
    Import import;
    import.LoadText("v 0 0 0\nv 1 0 0\nv 0 1 0\nv 1 1 0\nf 1 2 3\nf 2 4 3\nusemtl a");
    const auto& faces = import.GetSolid().GetFaceList();
    EXPECT_EQ(faces[0]->GetMaterial(), &import.elements.GetMaterialManager().GetDefaultMaterial());
    EXPECT_EQ(faces[1]->GetMaterial(), nullptr);
}

TEST(Import, DropsTextureNumbersWithoutAMaterialLine)
{
    Import import;
    import.LoadText("v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0.5 0.5\nf 1/1 2/1 3/1");
    EXPECT_EQ(import.GetSolid().GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge()->GetTexCoord().x, 0.0F);
}

TEST(Import, SaysTheGoldenLinesOfANonManifoldFile)
{
    const TemporaryCurrentFolder folder;
    // Three triangles on the edge 1-2, and a fourth beside the second, from which vertex 1 meets the
    // displaced side.
    folder.Write("fins.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 -1 0\nv 0 0 1\nv -1 -1 0\n"
                             "f 1 2 3\nf 2 1 4\nf 2 1 5\nf 4 1 6\n");
    Import import;
    import.Load("fins.obj");

    std::vector<std::string> expected{"Unknow token! Line: 11,Index: 0", "Number of halfedge: 12",
                                      "Edge has already two halfedges: 0,1"};
    for (const int edge :
         {1, 2, 4, 5, 6, 7, 8}) // 0 is the crowded one, 3 lies between the second and the fourth
    {
        expected.push_back(Boundary(edge));
    }
    Append(expected, Sizes(6, 4, 9));
    Append(expected, {"total halfedge number: 12", "Solid fits Euler formular: false"});
    expected.emplace_back("Border exist.."); // while the normal of vertex 1 is summed up
    EXPECT_THAT(import.lines, ElementsAreArray(expected));
    EXPECT_EQ(import.GetNodes().size(), 1U);
}

TEST(Import, SaysTheGoldenLinesOfACarriageReturnFile)
{
    const TemporaryCurrentFolder folder;
    folder.Write("a.mtl", "newmtl a\r\n");
    folder.Write("dos.obj", "mtllib a.mtl\r\nv 0 0 0\r\nv 1 0 0\r\nv 0 1 0\r\nvn 0 0 1\r\n\r\nusemtl a\r\n"
                            "f 1//1 2//1 3//1\r\n");
    Import import;
    import.Load("dos.obj");

    EXPECT_THAT(import.lines,
                ElementsAre("Cannot open file!!", // the library's name keeps its carriage return
                            "Unknow token! Line: 8,Index: 0", "texcoord number: 0",
                            "texcoord index number: 0", Boundary(0), Boundary(1), Boundary(2),
                            "m_VertexList.SIZE(): 3", "m_FaceList.Size(): 1", "m_EdgeList.Size(): 3",
                            "total halfedge number: 3",
                            "Solid fits Euler formular: false")); // 3 + 1 - 3 = 1
    EXPECT_TRUE(import.elements.GetMaterialManager().GetMaterialList().empty());
}

TEST(Import, BringsAnEmptySolidOutOfAFileOfComments)
{
    Import import;
    import.LoadText("# nothing\n# at all\n");
    EXPECT_THAT(import.lines,
                ElementsAre("Unknow token! Line: 3,Index: 0", "Number of halfedge: 0",
                            "m_VertexList.SIZE(): 0", "m_FaceList.Size(): 0", "m_EdgeList.Size(): 0",
                            "total halfedge number: 0", "Solid fits Euler formular: false"));
    ASSERT_EQ(import.GetNodes().size(), 1U);
    EXPECT_TRUE(import.GetSolid().GetVertexList().empty());
}

TEST(Import, ReportsVerticesThatNoFaceUses)
{
    Import import;
    import.LoadText(std::string(kTetrahedron) + "v 5 5 5");
    EXPECT_THAT(import.lines, ElementsAre("Number of halfedge: 12", "m_VertexList.SIZE(): 5",
                                          "m_FaceList.Size(): 4", "m_EdgeList.Size(): 6", "isolated point: 4",
                                          "total halfedge number: 12", "Solid fits Euler formular: false"));
}

TEST(Import, OnlyCentresAModelWithoutExtent)
{
    Import import;
    import.LoadText("v 7 7 7\nv 7 7 7\nf 1 2");
    EXPECT_EQ(import.GetSolid().GetVertexList()[1]->GetPosition().x, 0.0);
}

TEST(Import, TakesFacesOfOneAndTwoCorners)
{
    Import import;
    import.LoadText("v 0 0 0\nv 1 0 0\nf 1 2\nf 2");
    EXPECT_EQ(import.GetSolid().GetFaceList().size(), 2U);
}

TEST(Import, SaysThatAMissingFileCannotBeOpenedAndFails)
{
    const TemporaryCurrentFolder folder;
    Import import;
    import.Load("gone.obj");
    EXPECT_THAT(import.lines, ElementsAre("Cannot open file!!"));
    EXPECT_THAT(import.failureText, StartsWith("cannot open gone.obj: no such file"));
    EXPECT_TRUE(import.IsEmpty());
}

TEST(Import, OpensNothingThatIsNoOrdinaryFile)
{
    const TemporaryCurrentFolder folder;
    std::filesystem::create_directory("folder.obj");
    ASSERT_EQ(::mkfifo("pipe.obj", 0600), 0);
    for (const char* name : {"folder.obj", "pipe.obj", "/dev/zero", ""})
    {
        Import import;
        import.Load(name);
        EXPECT_THAT(import.lines, ElementsAre("Cannot open file!!")) << name;
        EXPECT_THAT(import.failureText, StartsWith("cannot open")) << name;
        EXPECT_TRUE(import.IsEmpty()) << name;
    }
}

TEST(Import, MakesNothingOfAFileWithWrongNumbers)
{
    const TemporaryCurrentFolder folder;
    folder.Write("wrong.obj", "v 0 0 0\nf 1 2 3\n");
    Import import;
    import.Load("wrong.obj");
    EXPECT_EQ(import.failureText, "wrong.obj, line 2: there is no vertex 2, the file has 1");
    EXPECT_TRUE(import.IsEmpty());
}

TEST(Import, FailsWhenTheModelIsTooLargeForTheUnitCube)
{
    Import import;
    EXPECT_THROW(import.LoadText("v 3e38 0 0\nv -3e38 0 0\nf 1 2 1"), Failure);
    EXPECT_TRUE(import.GetNodes().empty());
}

TEST(Import, ReadsAFileThatNamesItselfAsItsLibrary)
{
    const TemporaryCurrentFolder folder;
    folder.Write("self.obj", "mtllib self.obj\nv 0 0 0");
    Import import;
    import.Load("self.obj");
    EXPECT_EQ(import.lines[0], "Unknow token! Line: 1,Index: 6");
    EXPECT_EQ(import.lines[1], "Unknow token! Line: 2,Index: 1");
    EXPECT_EQ(import.GetNodes().size(), 1U);
}

TEST(Import, GoesOnWhenALibraryIsAFolderOrAPipe)
{
    const TemporaryCurrentFolder folder;
    std::filesystem::create_directory("folder.mtl");
    ASSERT_EQ(::mkfifo("pipe.mtl", 0600), 0);
    Import import;
    import.LoadText("mtllib folder.mtl\nmtllib pipe.mtl\nmtllib\nv 0 0 0");
    EXPECT_EQ(import.lines[0], "Cannot open file!!");
    EXPECT_EQ(import.lines[1], "Cannot open file!!");
    EXPECT_EQ(import.lines[2], "Cannot open file!!");
    EXPECT_EQ(import.GetSolid().GetVertexList().size(), 1U);
}

TEST(Import, ReadsEachLibraryAtItsLine)
{
    const TemporaryCurrentFolder folder;
    folder.Write("one.mtl", "newmtl a\nKd 1 0 0");
    folder.Write("two.mtl", "newmtl a\nKd 0 1 0\nd 1");
    Import import;
    import.LoadText("mtllib one.mtl\no x\nmtllib two.mtl\no y\nv 0 0 0\nusemtl a\nf 1 1 1");
    EXPECT_EQ(import.lines[0], "Unknow token! Line: 2,Index: 0");
    EXPECT_EQ(import.lines[1], "Line: 3----Token: d");
    EXPECT_EQ(import.lines[2], "Unknow token! Line: 4,Index: 0");
    // Of two materials with the name, the later one is bound.
    EXPECT_EQ(import.GetSolid().GetFaceList()[0]->GetMaterial()->m_Diffuse.y, 1.0F);
}

TEST(Import, BindsAMaterialWhoseNameEndsInACarriageReturnOnBothSides)
{
    const TemporaryCurrentFolder folder;
    folder.Write("a.mtl", "newmtl a\r\nKd 0 1 0\r\n");
    Import import;
    import.LoadText(
        "mtllib a.mtl \r\nv 0 0 0\r\nusemtl a\r\nf 1 1 1\r\n"); // the blank ends the library's name
    const DSMaterial* material = import.elements.GetMaterialManager().GetMaterialList().at(0).get();
    EXPECT_EQ(material->m_Name, "a\r");
    EXPECT_EQ(import.GetSolid().GetFaceList()[0]->GetMaterial(), material);
}

TEST(Import, MakesWhatItCanOfBinaryFiles)
{
    std::string bytes;
    for (int i = 0; i < 4096; ++i)
    {
        bytes += static_cast<char>(i * 37 % 256);
    }
    Import import;
    try
    {
        import.LoadText(bytes);
        EXPECT_EQ(import.GetNodes().size(), 1U);
    }
    catch (const Failure& failure)
    {
        EXPECT_THAT(failure.GetMessage(), HasSubstr("model.obj, line "));
    }
}

TEST(Import, EndsCleanlyWhereverATextIsCutOff)
{
    const std::string whole(kRow);
    for (std::size_t length = 0; length <= whole.size(); ++length)
    {
        Import import;
        try
        {
            import.LoadText(whole.substr(0, length));
            EXPECT_EQ(import.GetNodes().size(), 1U);
        }
        catch (const Failure& failure)
        {
            EXPECT_THAT(failure.GetMessage(), StartsWith("model.obj, line ")) << length;
        }
    }
}

TEST(Import, ReadsBackWhatWasWritten)
{
    const TemporaryCurrentFolder folder;
    Import first;
    first.LoadText(kRow);
    IOSaveObj(&first.scene, &first.elements).SaveObj("copy.obj");
    Import second;
    second.Load("copy.obj");

    EXPECT_EQ(second.GetSolid().GetVertexList().size(), 10U);
    EXPECT_EQ(second.GetSolid().GetFaceList().size(), 4U);
    EXPECT_EQ(second.GetSolid().GetEdgeList().size(), 13U);
    EXPECT_TRUE(LinksHold(second.GetSolid()));
    // "g" lines and comments are ignored, and the last line has no newline: nothing is unknown.
    EXPECT_EQ(second.lines[0], "Number of halfedge: 16");
}

TEST(Import, SaysOnStandardErrorWhyALibraryCannotBeOpened)
{
    const TemporaryCurrentFolder folder;
    folder.Write("two.MTL", "");
    folder.Write("Two.mtl", "");
    // The console is sent to standard error too, so that the order of the two shows.
    const Console::Sink before = DebugConsole().SetSink(
        [](std::string_view text) { std::fwrite(text.data(), 1, text.size(), stderr); });
    ::testing::internal::CaptureStderr();
    MANBrepElementManager elements;
    IOLoadObj(nullptr, &elements).ParseText("model.obj", "mtllib none.mtl\nmtllib two.mtl\nv 0 0 0");
    DebugConsole().Flush();
    DebugConsole().SetSink(before);
    EXPECT_EQ(
        ::testing::internal::GetCapturedStderr(),
        "Cannot open file!!\ncannot open none.mtl: no such file (working folder: " +
            folder.GetPath().string() +
            "); the import goes on without this library\n"
            "Cannot open file!!\ncannot tell which file two.mtl means: there are Two.mtl and two.MTL; rename "
            "one of them; the import goes on without this library\n");
}

TEST(Import, NeedsTheRootOfTheScene)
{
    Import import;
    import.scene.DeleteGroup(import.scene.GetRootGroup()->GetID());
    const AssertionCapture assertions;
    EXPECT_THROW(import.LoadText(kTetrahedron), AssertionFailure);
#if TESSARINE_ASSERTIONS
    EXPECT_THAT(assertions.GetExpressions(), ElementsAre("pRoot != nullptr"));
#endif
}
}
}
