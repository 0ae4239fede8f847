#include "IOSaveObj.h"
#include "Capture.h"
#include "Failure.h"
#include "FileSizeLimit.h"
#include "IOTextOutput.h"
#include "Meshes.h"
#include "TemporaryFolder.h"
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* kHeader = "# ORCHID zk-------OBJ\xE6\x96\x87\xE4\xBB\xB6 \n\n";
constexpr const char* kMtlHeader = "# ORCHID zk-------MTL\xE6\x96\x87\xE4\xBB\xB6 \n\n";

/// A writer whose text stays here.
struct Writing
{
    DSSolid* Load(const IndexedMesh& mesh) { return LoadQuietly(elements, mesh); }
    std::string Save()
    {
        const TemporaryCurrentFolder folder;
        writer.SaveObj("out.obj");
        return ReadFile("out.obj");
    }
    template <class TWrite>
    std::string Write(TWrite write)
    {
        std::string text;
        IOTextOutput output([&text](std::string_view piece) { text += piece; });
        write(output);
        output.Flush();
        return text;
    }
    std::string WriteNormals(const DSSolid& solid)
    {
        return Write([&](IOTextOutput& file) { writer.WriteNormals(solid, file); });
    }

    MANBrepElementManager elements;
    IOSaveObj writer{nullptr, &elements};
};

TEST(IOSaveObj, WritesTheHeaderAloneForAnEmptyManager)
{
    EXPECT_EQ(Writing().Save(), kHeader);
}

TEST(IOSaveObj, WritesATetrahedronByteForByte)
{
    Writing writing;
    writing.Load(Tetrahedron());
    EXPECT_EQ(writing.Save(), std::string(kHeader) + "g object1 \n"
                                                     "v 0.000000 0.000000 0.000000 \n"
                                                     "v 1.000000 0.000000 0.000000 \n"
                                                     "v 0.000000 1.000000 0.000000 \n"
                                                     "v 0.000000 0.000000 1.000000 \n"
                                                     "# 4 vertices in this object!\n\n"
                                                     "\nf 1 3 2 \nf 1 2 4 \nf 2 3 4 \nf 3 1 4 "
                                                     "\n# 4 faces in this object ");
}

TEST(IOSaveObj, WritesAQuadOnOneLine)
{
    Writing writing;
    IndexedMesh mesh;
    mesh.positions = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    mesh.AddFace({1, 2, 3, 4});
    writing.Load(mesh);
    EXPECT_THAT(writing.Save(),
                EndsWith("# 4 vertices in this object!\n\n\nf 1 2 3 4 \n# 1 faces in this object "));
    EXPECT_EQ(writing.writer.GetFaceCount(), 1);
}

TEST(IOSaveObj, SkipsHiddenSolidsAndKeepsTheirNumbers)
{
    Writing writing;
    writing.Load(SingleTriangle())->SetVisible(false);
    writing.Load(SingleTriangle());
    EXPECT_THAT(writing.Save(), StartsWith(std::string(kHeader) + "g object2 \nv "));
    EXPECT_EQ(writing.writer.GetVertexBase(), 4); // from 1, the three that were written
    EXPECT_EQ(writing.writer.GetNormalBase(), 1);
}

TEST(IOSaveObj, SkipsDeletedSolids)
{
    Writing writing;
    writing.elements.DeleteSolid(writing.Load(SingleTriangle()));
    writing.Load(SingleTriangle());
    EXPECT_THAT(writing.Save(), StartsWith(std::string(kHeader) + "g object2 \nv "));
}

TEST(IOSaveObj, NumbersTheVerticesOfEachObjectFromOne)
{
    Writing writing;
    writing.Load(SingleTriangle());
    writing.Load(SingleTriangle());
    const std::string text = writing.Save();
    EXPECT_THAT(text,
                HasSubstr("\nf 1 2 3 \n# 1 faces in this object g object2 \n")); // no line end between them
    EXPECT_THAT(text, EndsWith("\nf 1 2 3 \n# 1 faces in this object "));
    EXPECT_THAT(text, Not(HasSubstr("f 4 5 6")));
    EXPECT_EQ(writing.writer.GetVertexBase(), 7);
}

TEST(IOSaveObj, WritesVerticesThatNoFaceUses)
{
    Writing writing;
    IndexedMesh mesh = SingleTriangle();
    mesh.positions.emplace_back(0.5, -0.25, 8.0);
    writing.Load(mesh);
    EXPECT_THAT(writing.Save(),
                HasSubstr("v 0.500000 -0.250000 8.000000 \n# 4 vertices in this object!\n\n"));
}

TEST(IOSaveObj, SkipsNullEntriesAndCountsThemAsVertices)
{
    Writing writing;
    DSSolid* solid = writing.Load(SingleTriangle());
    solid->GetVertexList().push_back(nullptr);
    solid->GetFaceList().push_back(nullptr);
    const std::string text = writing.Save();
    EXPECT_THAT(text, HasSubstr("# 4 vertices in this object!"));
    EXPECT_THAT(text, EndsWith("\nf 1 2 3 \n# 1 faces in this object "));
}

TEST(IOSaveObj, WritesAllLoopsOfAFaceOnOneLine)
{
    Writing writing;
    DSSolid* solid = writing.Load(BowTie());
    const std::string apart = writing.Save();
    ASSERT_THAT(apart, EndsWith("\nf 1 2 3 \nf 1 4 5 \n# 2 faces in this object "));
    solid->GetFaceList()[0]->GetLoopList().push_back(solid->GetFaceList()[1]->GetLoopList()[0]);
    EXPECT_THAT(writing.Save(), EndsWith("\nf 1 2 3 1 4 5 \nf 1 4 5 \n# 2 faces in this object "));
}

TEST(IOSaveObj, WritesZeroForAVertexThatWasNotWritten)
{
    Writing writing;
    DSSolid* solid = writing.Load(SingleTriangle());
    EXPECT_EQ(writing.Write([&](IOTextOutput& file) { writing.writer.WriteFaces(*solid, file); }),
              "\nf 0 0 0 \n# 1 faces in this object ");
}

TEST(IOSaveObj, WritesPositionsThatAreNoNumbersAsPrintfDoes)
{
    Writing writing;
    DSSolid* solid = writing.Load(SingleTriangle());
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    solid->GetVertexList()[0]->SetPosition(std::nan(""), kInfinity, -kInfinity);
    EXPECT_THAT(writing.Save(), HasSubstr("v nan inf -inf \n"));
}

TEST(IOSaveObj, WritesEachDistinctNormalOnce)
{
    Writing writing;
    DSSolid* solid = writing.Load(Tetrahedron());
    const auto& vertices = solid->GetVertexList();
    vertices[0]->GetNormal() = {0, 0, 1};
    vertices[1]->GetNormal() = {1, 0, 0};
    vertices[2]->GetNormal() = {0, 0, 1};
    vertices[3]->GetNormal() = {-0.0, -0.0, 1}; // the zeros are equal
    EXPECT_EQ(writing.WriteNormals(*solid), "vn 0.000000 0.000000 1.000000 \n"
                                            "vn 1.000000 0.000000 0.000000 \n"
                                            "# 2 vertice normals in this object!\n\n");
    // They are kept for the next object, and its summary counts them all.
    EXPECT_EQ(writing.WriteNormals(*solid), "# 2 vertice normals in this object!\n\n");
}

TEST(IOSaveObj, WritesANormalThatIsNoNumberEveryTime)
{
    Writing writing;
    DSSolid* solid = writing.Load(SingleTriangle());
    for (DSVertex* vertex : solid->GetVertexList())
    {
        vertex->GetNormal() = {std::nan(""), 0, 0};
    }
    writing.WriteNormals(*solid);
    EXPECT_EQ(writing.writer.GetNormals().size(), 3U);
}

TEST(IOSaveObj, FindsEqualNormalsAsALinearSearchDoes)
{
    Writing writing;
    DSSolid* solid = writing.Load(Grid(40));
    std::mt19937 random(99);
    PositionList expected;
    for (DSVertex* vertex : solid->GetVertexList())
    {
        const auto pick = [&] { return (static_cast<double>(random() % 9) - 4) * 0.1; };
        const smVec3d normal(pick(), pick(), pick());
        vertex->GetNormal() = normal;
        const bool isKnown =
            std::any_of(expected.begin(), expected.end(),
                        [&](const smVec3d& known)
                        { return known.x == normal.x && known.y == normal.y && known.z == normal.z; });
        if (!isKnown)
        {
            expected.push_back(normal);
        }
    }
    writing.WriteNormals(*solid);
    ASSERT_EQ(writing.writer.GetNormals().size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        EXPECT_EQ(writing.writer.GetNormals()[i].x, expected[i].x);
        EXPECT_EQ(writing.writer.GetNormals()[i].y, expected[i].y);
        EXPECT_EQ(writing.writer.GetNormals()[i].z, expected[i].z);
    }
}

TEST(IOSaveObj, RaisesTheNormalBaseByAllNormalsAtEachObject)
{
    Writing writing;
    DSSolid* solid = writing.Load(SingleTriangle());
    writing.Load(SingleTriangle());
    solid->GetVertexList()[0]->GetNormal() = {1, 0, 0};
    solid->GetVertexList()[1]->GetNormal() = {0, 1, 0};
    solid->GetVertexList()[2]->GetNormal() = {0, 0, 1};
    writing.WriteNormals(*solid);
    writing.Save();
    EXPECT_EQ(writing.writer.GetNormalBase(), 1 + 3 + 3);
}

TEST(IOSaveObj, StopsAtCornersThatRunIntoACircle)
{
    Writing writing;
    DSHalfEdge* first = writing.Load(SingleTriangle())->GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge();
    first->GetNext()->GetNext()->GetNext() = first->GetNext();
    const AssertionCapture assertions;
    EXPECT_THROW(writing.Save(), AssertionFailure);
}

TEST(IOSaveObj, StopsAtACornerWithoutAVertex)
{
    Writing writing;
    writing.Load(SingleTriangle())->GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge()->GetVertex() = nullptr;
    const AssertionCapture assertions;
    EXPECT_THROW(writing.Save(), AssertionFailure);
}

TEST(IOSaveObj, WritesTheTextureCoordinateOfEachCorner)
{
    Writing writing;
    DSSolid* solid = writing.Load(SingleTriangle());
    solid->GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge()->GetNext()->GetTexCoord() = {0.5F, 0.1F};
    EXPECT_EQ(writing.Write([&](IOTextOutput& file) { writing.writer.WriteTexCoords(*solid, file); }),
              "vt 0.000000 0.000000\nvt 0.500000 0.100000\nvt 0.000000 0.000000\n");
}

TEST(IOSaveObj, WritesTheMaterialFileByteForByte)
{
    const TemporaryCurrentFolder folder;
    Writing writing;
    MANMaterialManager& materials = writing.elements.GetMaterialManager();
    DSMaterial* red = materials.NewMaterial();
    red->m_Name = "red";
    red->m_Diffuse = {1.0F, 0.0F, 0.25F};
    materials.NewMaterial()->m_Name = "plain";
    DSTexture* texture = materials.NewTexture();
    folder.Write("paint.ppm", "P6\n1 1\n255\nabc");
    texture->LoadImage("paint.ppm");
    red->m_pTexture = materials.NewImage();
    red->m_pTexture->m_pTexture = texture;

    writing.writer.SaveMtl("out.mtl");
    EXPECT_EQ(ReadFile("out.mtl"), std::string(kMtlHeader) + "newmtl Default_Mat \n"
                                                             "  Ka 1.0000001.0000001.000000 \n"
                                                             "  Kd 1.0000001.0000001.000000 \n"
                                                             "  Ks 0.7500000.7500000.750000 \n"
                                                             "newmtl red \n"
                                                             "  Ka 1.0000001.0000001.000000 \n"
                                                             "  Kd 1.0000000.0000000.250000 \n"
                                                             "  Ks 0.7500000.7500000.750000 \n"
                                                             " map_Kd paint.ppm \n"
                                                             "newmtl plain \n"
                                                             "  Ka 1.0000001.0000001.000000 \n"
                                                             "  Kd 1.0000001.0000001.000000 \n"
                                                             "  Ks 0.7500000.7500000.750000 \n");
}

TEST(IOSaveObj, SaysThatAFileWasNotOpenedAndFails)
{
    const TemporaryCurrentFolder folder;
    std::filesystem::create_directory("folder.obj");
    Writing writing;
    for (const char* name : {"gone/out.obj", "folder.obj", ""})
    {
        ConsoleCapture console;
        EXPECT_THROW(writing.writer.SaveObj(name), Failure);
        EXPECT_THROW(writing.writer.SaveMtl(name), Failure);
        const std::string line = "The file " + std::string(name) + " was not opened";
        EXPECT_THAT(console.GetLines(), ElementsAre(line, line));
    }
    EXPECT_THAT(folder.List(), ElementsAre("folder.obj"));
}

TEST(IOSaveObj, LeavesAnOlderFileWhenTheWritingFails)
{
    const TemporaryCurrentFolder folder;
    folder.Write("out.obj", "old");
    Writing writing;
    DSSolid* solid = writing.Load(SingleTriangle());
    solid->GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge()->GetNext()->GetNext() =
        nullptr; // a broken circle
    const AssertionCapture assertions;
    EXPECT_THROW(writing.writer.SaveObj("out.obj"), AssertionFailure);
    EXPECT_EQ(ReadFile("out.obj"), "old");
    EXPECT_THAT(folder.List(), ElementsAre("out.obj"));
}

TEST(IOSaveObj, LeavesAnOlderFileOnAFullDisk)
{
    const TemporaryCurrentFolder folder;
    folder.Write("out.obj", "old");
    Writing writing;
    writing.Load(Grid(20)); // some 20,000 bytes
    ConsoleCapture console;
    {
        const FileSizeLimit limit(4096);
        EXPECT_THROW(writing.writer.SaveObj("out.obj"), Failure);
    }
    EXPECT_EQ(console.GetText(), ""); // the file was opened
    EXPECT_EQ(ReadFile("out.obj"), "old");
    EXPECT_THAT(folder.List(), ElementsAre("out.obj"));
}

TEST(IOSaveObj, ReplacesAnOlderFile)
{
    const TemporaryCurrentFolder folder;
    folder.Write("out.obj", std::string(1000, 'x'));
    Writing().writer.Save("out.obj");
    EXPECT_EQ(ReadFile("out.obj"), kHeader);
}

TEST(IOTextOutput, KeepsTheOrderOfShortAndLongTexts)
{
    std::string text;
    std::string expected;
    IOTextOutput output([&text](std::string_view piece) { text += piece; });
    const std::string large(200000, 'x');
    for (int i = 0; i < 20000; ++i)
    {
        output << "v " << i << " " << i / 8.0 << "\n";
        expected += "v " + std::to_string(i) + " " + std::to_string(i / 8.0) + "\n";
        if (i % 5000 == 0)
        {
            output << large;
            expected += large;
        }
    }
    output.Flush();
    EXPECT_EQ(text, expected);
}
}
}
