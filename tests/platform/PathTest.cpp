#include "Path.h"
#include "File.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::ThrowsMessage;
}

TEST(ResolveForReading, TakesABackslashForASlash)
{
    const TemporaryCurrentFolder folder;
    folder.Write("Data/man/param.dat", "");
    EXPECT_EQ(ResolveForReading("Data\\man\\param.dat"), "Data/man/param.dat");
}

TEST(ResolveForReading, FindsEveryFolderWhateverItsCase)
{
    const TemporaryCurrentFolder folder;
    folder.Write("DATA/Man/Param.DAT", "");
    EXPECT_EQ(ResolveForReading("data\\man\\param.dat"), "DATA/Man/Param.DAT");
}

TEST(ResolveForReading, PrefersTheExactEntry)
{
    const TemporaryCurrentFolder folder;
    folder.Write("data/x", "");
    folder.Write("Data/x", "");
    EXPECT_EQ(ResolveForReading("data\\x"), "data/x");
    EXPECT_EQ(ResolveForReading("Data\\x"), "Data/x");
}

TEST(ResolveForReading, RefusesToChooseBetweenTwoSpellings)
{
    const TemporaryCurrentFolder folder;
    folder.Write("Data/a.TXT", "");
    folder.Write("Data/A.txt", "");
    EXPECT_THAT([] { ResolveForReading("data\\a.txt"); },
                ThrowsMessage<FileError>(AllOf(HasSubstr("Data/a.TXT"), HasSubstr("Data/A.txt"))));
}

TEST(ResolveForReading, KeepsTheAskedNameWhereNothingMatches)
{
    const TemporaryCurrentFolder folder;
    folder.Write("DATA/other", "");
    EXPECT_EQ(ResolveForReading("data\\param.dat"), "data/param.dat");
    EXPECT_EQ(ResolveForReading("none\\param.dat"), "none/param.dat");
    EXPECT_EQ(ResolveForReading(""), "");
}

TEST(ResolveForReading, UnderstandsTheCurrentFolderInFront)
{
    const TemporaryCurrentFolder folder;
    folder.Write("Wall.JPG", "picture");
    EXPECT_EQ(ReadFile(ResolveForReading(".\\wall.jpg")), "picture");
}

TEST(ResolveForReading, UnderstandsTheFolderAbove)
{
    const TemporaryCurrentFolder folder;
    folder.Write("Models/one.obj", "");
    folder.Write("Pictures/Wall.jpg", "picture");
    EXPECT_EQ(ResolveForReading("models\\..\\pictures\\wall.jpg"), "Models/../Pictures/Wall.jpg");
    SetCurrentFolder(folder / "Models");
    EXPECT_EQ(ResolveForReading("..\\pictures\\wall.jpg"), "../Pictures/Wall.jpg");
}

TEST(ResolveForReading, FindsAbsoluteNames)
{
    const TemporaryFolder folder;
    folder.Write("Data/Param.dat", "");
    const std::string asked = (folder / "data").string() + "\\param.dat";
    EXPECT_EQ(ResolveForReading(asked), folder / "Data/Param.dat");
}

TEST(ResolveForReading, FindsLinksThatLeadNowhere)
{
    const TemporaryCurrentFolder folder;
    fs::create_symlink("nothing", folder / "Link");
    EXPECT_EQ(ResolveForReading("link"), "Link");
}

TEST(ResolveForReading, ComparesOnlyTheLettersOfAscii)
{
    const TemporaryCurrentFolder folder;
    folder.Write("\xC3\x84.txt", ""); // a capital A with two dots
    EXPECT_EQ(ResolveForReading("\xC3\xA4.txt"), "\xC3\xA4.txt");
    EXPECT_EQ(ResolveForReading("\xC3\x84.TXT"), "\xC3\x84.txt");
}

TEST(ResolveForReading, LeavesAFileWithASlashBehindItAFault)
{
    const TemporaryCurrentFolder folder;
    folder.Write("File", "");
    EXPECT_THROW(ReadFile(ResolveForReading("file\\")), FileError);
}

TEST(ResolveForReading, SurvivesVeryLongNames)
{
    const std::string part(100000, 'x');
    EXPECT_EQ(ResolveForReading(part), part);
    std::string deep;
    for (int i = 0; i < 20000; ++i)
    {
        deep += "..\\";
    }
    EXPECT_EQ(ResolveForReading(deep + "no such file").string().size(), deep.size() + 12);
}

TEST(ResolveForWriting, LooksUpTheFoldersAndKeepsTheLastPart)
{
    const TemporaryCurrentFolder folder;
    folder.Write("DATA/Result.TXT", "");
    EXPECT_EQ(ResolveForWriting("data\\result.txt"), "DATA/result.txt");
}

TEST(ResolveForWriting, KeepsANameWithoutAFolder)
{
    const TemporaryCurrentFolder folder;
    folder.Write("Result.TXT", "");
    EXPECT_EQ(ResolveForWriting("result.txt"), "result.txt");
}

TEST(ResolveForWriting, KeepsTheAskedNameWhereAFolderIsMissing)
{
    const TemporaryCurrentFolder folder;
    EXPECT_EQ(ResolveForWriting("Data\\result.txt"), "Data/result.txt");
}

TEST(ResolveForWriting, WritesToTheRootFolder)
{
    EXPECT_EQ(ResolveForWriting("\\result.txt"), "/result.txt");
}

TEST(ResolveForWriting, RefusesToChooseBetweenTwoFolders)
{
    const TemporaryCurrentFolder folder;
    folder.Write("Data/x", "");
    folder.Write("DATA/x", "");
    EXPECT_THROW(ResolveForWriting("data\\result.txt"), FileError);
}
}
