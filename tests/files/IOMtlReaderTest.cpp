#include "IOMtlReader.h"
#include "Capture.h"
#include "IOLoadObj.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

/// A library read into a fresh material manager.
struct Library
{
    explicit Library(const std::string& text) { Read(text); }

    void Read(const std::string& text)
    {
        ConsoleCapture console;
        reader.ParseMaterialText(text);
        lines = console.GetLines();
    }
    const DSMaterial& GetMaterial(std::size_t index) const
    {
        return *manager.GetMaterialManager().GetMaterialList().at(index);
    }
    std::size_t CountMaterials() const { return manager.GetMaterialManager().GetMaterialList().size(); }
    std::size_t CountTextures() const { return manager.GetMaterialManager().GetTextureList().size(); }

    MANBrepElementManager manager;
    IOLoadObj reader{nullptr, &manager};
    std::vector<std::string> lines;
};

std::string Unknown(int line, int index)
{
    return "Unknow token! Line: " + std::to_string(line) + ",Index: " + std::to_string(index);
}

std::vector<float> ColourOf(const smVec3f& colour)
{
    return {colour.x, colour.y, colour.z};
}

TEST(IOMtlReader, ReadsNameAndColours)
{
    const Library library("newmtl red\nKa 0.5 0.25 0\nKd 1 0 0\nKs 0 1 0.5");
    ASSERT_EQ(library.CountMaterials(), 1U);
    EXPECT_EQ(library.GetMaterial(0).m_Name, "red");
    EXPECT_THAT(ColourOf(library.GetMaterial(0).m_Ambient), ElementsAre(0.5F, 0.25F, 0.0F));
    EXPECT_THAT(ColourOf(library.GetMaterial(0).m_Diffuse), ElementsAre(1.0F, 0.0F, 0.0F));
    EXPECT_THAT(ColourOf(library.GetMaterial(0).m_Specular), ElementsAre(0.0F, 1.0F, 0.5F));
    EXPECT_THAT(library.lines, IsEmpty());
    EXPECT_FALSE(library.reader.HasTexture());
}

TEST(IOMtlReader, LeavesAMissingThirdComponentZero)
{
    const Library library("newmtl a\nKa 0.2 0.2");
    EXPECT_EQ(library.GetMaterial(0).m_Ambient.z, 0.0F);
    EXPECT_EQ(library.GetMaterial(0).m_Ambient.y, 2.0F / 10.0F);
}

TEST(IOMtlReader, MakesTwoMaterialsOfOneName)
{
    const Library library("newmtl a\nKd 1 1 0\nnewmtl a\nKd 0 0 1");
    ASSERT_EQ(library.CountMaterials(), 2U);
    EXPECT_EQ(library.GetMaterial(0).m_Name, library.GetMaterial(1).m_Name);
    EXPECT_EQ(library.GetMaterial(0).m_Diffuse.z, 0.0F);
    EXPECT_EQ(library.GetMaterial(1).m_Diffuse.z, 1.0F);
}

TEST(IOMtlReader, NamesTheKeywordsThatItDoesNotUse)
{
    const Library library(
        "newmtl a\nmap_Ks a.ppm\nmap_Ka a.ppm\nmap_Bump a.ppm\nillum 2\nd 0.5\nNs 10\nNi 1\n# x");
    EXPECT_THAT(library.lines,
                ElementsAre("Line: 2----Token: map_Ks", "Line: 3----Token: map_Ka",
                            "Line: 4----Token: map_Bump", "Line: 5----Token: illum", "Line: 6----Token: d",
                            "Line: 7----Token: Ns", "Line: 8----Token: Ni"));
    EXPECT_EQ(library.GetMaterial(0).m_fShininess, 40.0F);
    EXPECT_EQ(library.GetMaterial(0).m_fTransparency, 1.0F);
    EXPECT_EQ(library.CountTextures(), 0U);
}

TEST(IOMtlReader, ReportsUnknownTokensWithTheIndexBehindThem)
{
    // Only a blank ends a token, and the white space in front of a line is none of it.
    EXPECT_THAT(Library("Tr 1\n\n  map_d a\nKa: 1\n#comment here").lines,
                ElementsAre(Unknown(1, 2), Unknown(2, 5), Unknown(3, 3), Unknown(4, 8)));
}

TEST(IOMtlReader, TakesAKeywordWithNothingBehindItForUnknown)
{
    const Library library("newmtl\n#\nnewmtl a\nKd\nillum\nmap_Kd");
    EXPECT_THAT(library.lines,
                ElementsAre(Unknown(1, 6), Unknown(2, 1), Unknown(4, 2), Unknown(5, 5), Unknown(6, 6)));
    EXPECT_EQ(library.CountMaterials(), 1U);
    EXPECT_EQ(library.GetMaterial(0).m_Diffuse.x, 1.0F);
}

TEST(IOMtlReader, TakesAKeywordThatAZeroEndsForUnknown)
{
    EXPECT_THAT(Library(std::string("newmtl\0 a", 9)).lines, ElementsAre(Unknown(1, 6)));
}

TEST(IOMtlReader, EndsAMaterialsNameAtTheZero)
{
    EXPECT_EQ(Library(std::string("newmtl a\0b c", 12)).GetMaterial(0).m_Name, "a");
}

TEST(IOMtlReader, MakesAMaterialWithoutNameWhenOnlyABlankFollows)
{
    const Library library("newmtl \nKd 0 0 0");
    ASSERT_EQ(library.CountMaterials(), 1U);
    EXPECT_EQ(library.GetMaterial(0).m_Name, "");
    EXPECT_EQ(library.GetMaterial(0).m_Diffuse.x, 0.0F);
}

TEST(IOMtlReader, ReportsColoursAndTexturesInFrontOfAnyMaterial)
{
    const Library library("Ka 1 0 0\nKd 1 0 0\nKs 1 0 0\nmap_Kd a.ppm\nillum 1\nnewmtl a");
    EXPECT_THAT(library.lines, ElementsAre(Unknown(1, 2), Unknown(2, 2), Unknown(3, 2), Unknown(4, 6),
                                           "Line: 5----Token: illum"));
    EXPECT_FALSE(library.reader.HasTexture());
    EXPECT_THAT(library.reader.GetTextureMaps(), IsEmpty());
    EXPECT_EQ(library.CountTextures(), 0U);
}

TEST(IOMtlReader, ForgetsTheCurrentMaterialAtTheEndOfALibrary)
{
    Library library("newmtl a");
    library.Read("Kd 0 0 0");
    EXPECT_THAT(library.lines, ElementsAre(Unknown(1, 2)));
    EXPECT_EQ(library.GetMaterial(0).m_Diffuse.x, 1.0F);
}

TEST(IOMtlReader, ReportsTheEmptyReadBehindALastNewline)
{
    EXPECT_THAT(Library("newmtl a\n\n").lines, ElementsAre(Unknown(2, 0)));
    EXPECT_THAT(Library("").lines, ElementsAre(Unknown(1, 0)));
}

TEST(IOMtlReader, KeepsCarriageReturnsInNames)
{
    const Library library("newmtl a\r\nKd 0.5 0.5 0.5\r\n#\r\nillum 2\r\nmap_Kd \r\n");
    EXPECT_EQ(library.GetMaterial(0).m_Name, "a\r");
    EXPECT_EQ(library.GetMaterial(0).m_Diffuse.z, 0.5F);
    EXPECT_THAT(library.lines, ElementsAre(Unknown(3, 2), "Line: 4----Token: illum", Unknown(6, 0)));
    EXPECT_THAT(library.reader.GetTextureMaps(), ElementsAre(Pair("a\r", "\r")));
}

TEST(IOMtlReader, LoadsATextureOfTwoMaterialsOnce)
{
    const TemporaryCurrentFolder folder;
    folder.Write("tex.ppm", "P6\n1 1\n255\nabc");
    const Library library("newmtl a\nmap_Kd tex.ppm\nnewmtl b\nmap_Kd tex.ppm x\nmap_Kd tex.ppm");
    ASSERT_EQ(library.CountTextures(), 1U);
    const DSTexture& texture = *library.manager.GetMaterialManager().GetTextureList()[0];
    EXPECT_EQ(texture.GetFileName(), "tex.ppm");
    EXPECT_TRUE(texture.HasImage());
    EXPECT_THAT(library.reader.GetTextureMaps(), ElementsAre(Pair("a", "tex.ppm"), Pair("b", "tex.ppm")));
    EXPECT_TRUE(library.reader.HasTexture());
    EXPECT_THAT(library.lines, IsEmpty());
}

TEST(IOMtlReader, SharesATextureWithAnEarlierLibrary)
{
    const TemporaryCurrentFolder folder;
    folder.Write("tex.ppm", "P6\n1 1\n255\nabc");
    Library library("newmtl a\nmap_Kd tex.ppm");
    library.Read("newmtl b\nmap_Kd tex.ppm");
    EXPECT_EQ(library.CountTextures(), 1U);
}

TEST(IOMtlReader, SharesATextureThatTheManagerHadBefore)
{
    const TemporaryCurrentFolder folder;
    folder.Write("tex.ppm", "P6\n1 1\n255\nabc");
    Library library("newmtl a\nmap_Kd tex.ppm");
    IOLoadObj second(nullptr, &library.manager);
    second.ParseMaterialText("newmtl b\nmap_Kd tex.ppm");
    EXPECT_EQ(library.CountTextures(), 1U);
}

TEST(IOMtlReader, TakesTheLastTextureOfAMaterial)
{
    const Library library("newmtl a\nmap_Kd one.ppm\nmap_Kd two.ppm");
    EXPECT_THAT(library.reader.GetTextureMaps(), ElementsAre(Pair("a", "two.ppm")));
    EXPECT_EQ(library.CountTextures(), 2U);
}

TEST(IOMtlReader, KeepsTheNameOfAMissingPicture)
{
    const TemporaryCurrentFolder folder;
    const Library library("newmtl a\nmap_Kd gone.png\nmap_Kd gone.png");
    ASSERT_EQ(library.CountTextures(), 1U);
    EXPECT_EQ(library.manager.GetMaterialManager().GetTextureList()[0]->GetFileName(), "gone.png");
    EXPECT_FALSE(library.manager.GetMaterialManager().GetTextureList()[0]->HasImage());
}

TEST(IOMtlReader, LeavesOutTheTexturesThatAreTooManyTogether)
{
    const TemporaryCurrentFolder folder;
    for (const char* name : {"a.ppm", "b.ppm", "c.ppm", "d.ppm"})
    {
        folder.Write(name, "P6\n2 1\n255\nabcdef");
    }
    MANMaterialManager materials;
    TextureNameMap maps;
    IOMtlReader reader(materials, maps, 2 * 6 + 5);
    ConsoleCapture console;
    ::testing::internal::CaptureStderr();
    reader.ParseText("newmtl m\nmap_Kd a.ppm\nmap_Kd b.ppm\n");
    reader.ParseText("newmtl n\nmap_Kd c.ppm\nmap_Kd d.ppm\nmap_Kd e.png\nKd 1 0 0\n"); // of another library
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "c.ppm: it and the pictures before it take more than 0 MiB\n"
              "d.ppm: it and the pictures before it take more than 0 MiB\n"
              "cannot read e.png: it and the pictures before it take more than 0 MiB\n");
    ASSERT_EQ(materials.GetTextureList().size(), 5U);
    EXPECT_TRUE(materials.GetTextureList()[1]->HasImage());
    EXPECT_FALSE(materials.GetTextureList()[2]->HasImage());
    EXPECT_EQ(materials.GetTextureList()[2]->GetFileName(), "c.ppm");
    EXPECT_THAT(ColourOf(materials.GetMaterialList()[1]->m_Diffuse), ElementsAre(1.0F, 0.0F, 0.0F));
}

TEST(IOMtlReader, MakesARecordForEveryMentionOfAnUnknownEnding)
{
    // The record keeps an empty name, so the next mention does not find it.
    const Library library("newmtl a\nmap_Kd a.xyz\nmap_Kd a.xyz");
    EXPECT_EQ(library.CountTextures(), 2U);
}

TEST(IOMtlReader, SaysThatALibraryCannotBeOpened)
{
    const TemporaryCurrentFolder folder;
    std::filesystem::create_directory("folder.mtl");
    MANBrepElementManager manager;
    IOLoadObj reader(nullptr, &manager);
    ConsoleCapture console;
    for (const std::string& name : {std::string("gone.mtl"), std::string("folder.mtl"), std::string(),
                                    std::string("/dev/null"), std::string(100000, 'x')})
    {
        reader.ParseMaterialFile(name);
    }
    EXPECT_EQ(console.GetText(),
              "Cannot open file!!\nCannot open file!!\nCannot open file!!\nCannot open file!!\n"
              "Cannot open file!!\n");
    EXPECT_THAT(manager.GetMaterialManager().GetMaterialList(), IsEmpty());
}

TEST(IOMtlReader, LeavesOutTheLibrariesThatAreTooManyTogether)
{
    const TemporaryCurrentFolder folder;
    folder.Write("large.mtl", "newmtl a\n#" + std::string(std::size_t{32} << 20U, ' '));
    folder.Write("small.mtl", "newmtl b");
    MANBrepElementManager manager;
    IOLoadObj reader(nullptr, &manager);
    ConsoleCapture console;
    ::testing::internal::CaptureStderr();
    for (const char* name : {"large.mtl", "small.mtl", "large.mtl", "small.mtl"})
    {
        reader.ParseMaterialFile(name);
    }
    EXPECT_EQ(
        ::testing::internal::GetCapturedStderr(),
        "cannot read large.mtl: it and the libraries before it have more than 64 MiB (working folder: " +
            folder.GetPath().string() + "); the import goes on without this library\n");
    EXPECT_EQ(console.GetText(), "Cannot open file!!\n");
    EXPECT_EQ(manager.GetMaterialManager().GetMaterialList().size(), 3U);
}

TEST(IOMtlReader, ReadsALibraryWithoutAnEndOnce)
{
    const char* const endless = "/proc/self/pagemap"; // an ordinary file, by what it tells of itself
    if (!std::filesystem::exists(endless))
    {
        GTEST_SKIP() << "this system has no such file";
    }
    MANBrepElementManager manager;
    IOLoadObj reader(nullptr, &manager);
    ConsoleCapture console;
    ::testing::internal::CaptureStderr();
    for (int i = 0; i < 1000; ++i) // would take a minute
    {
        reader.ParseMaterialFile(endless);
    }
    EXPECT_THAT(
        ::testing::internal::GetCapturedStderr(),
        ::testing::StartsWith("cannot read /proc/self/pagemap: it and the libraries before it have more "
                              "than 64 MiB; the import goes on without this library\n"));
    EXPECT_THAT(manager.GetMaterialManager().GetMaterialList(), IsEmpty());
}

TEST(IOMtlReader, FindsALibraryWhateverItsSpelling)
{
    const TemporaryCurrentFolder folder;
    folder.Write("Sub/Paint.mtl", "newmtl a");
    MANBrepElementManager manager;
    IOLoadObj reader(nullptr, &manager);
    reader.ParseMaterialFile(".\\sub\\paint.MTL");
    EXPECT_EQ(manager.GetMaterialManager().GetMaterialList().size(), 1U);
}
}
}
