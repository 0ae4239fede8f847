#include "Path.h"
#include "File.h"
#include "TemporaryFolder.h"
#include <chrono>
#include <ctime>
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

/// Makes the folder look as if nothing had changed in it for an hour.
void LayAtRest(const fs::path& folder)
{
    fs::last_write_time(folder, fs::file_time_type::clock::now() - std::chrono::hours(1));
}
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

TEST(ResolveForReading, ListsAFolderAtRestOnceForManyNames)
{
    const TemporaryCurrentFolder folder;
    for (int i = 0; i < 2000; ++i)
    {
        folder.Write("Pictures/File" + std::to_string(i) + ".PNG", "");
    }
    LayAtRest(folder / "Pictures");
    LayAtRest(folder.GetPath());
    const std::clock_t start = std::clock();
    for (int i = 0; i < 20'000; ++i) // a list for each would be 40 million entries
    {
        const std::string number = std::to_string(i);
        EXPECT_EQ(ResolveForReading("pictures\\file" + number + ".png"),
                  i < 2000 ? "Pictures/File" + number + ".PNG" : "pictures/file" + number + ".png");
    }
    EXPECT_LT(std::clock() - start, 5 * CLOCKS_PER_SEC);
}

TEST(ResolveForReading, SeesWhatChangesInAFolder)
{
    const TemporaryCurrentFolder folder;
    for (const bool atRest : {false, true})
    {
        folder.Write("Wall.PNG", "");
        const auto rest = [&]
        {
            if (atRest)
            {
                LayAtRest(folder.GetPath());
            }
        };
        rest();
        EXPECT_EQ(ResolveForReading("wall.png"), "Wall.PNG");
        fs::rename("Wall.PNG", "WALL.png");
        rest(); // a folder of the same age as before
        EXPECT_EQ(ResolveForReading("wall.png"), "WALL.png");
        folder.Write("Wall.png", "");
        EXPECT_THROW(ResolveForReading("wall.png"), FileError);
        fs::remove("Wall.png");
        fs::remove("WALL.png");
        EXPECT_EQ(ResolveForReading("wall.png"), "wall.png");
    }
}

TEST(ResolveForReading, TellsTheCurrentFoldersApart)
{
    const TemporaryCurrentFolder folder;
    for (int i = 0; i < 20; ++i) // more than are kept
    {
        folder.Write(std::to_string(i) + "/File" + (i % 2 == 0 ? ".PNG" : ".Png"), "");
        LayAtRest(folder / std::to_string(i));
    }
    for (int i = 0; i < 60; ++i)
    {
        SetCurrentFolder(folder / std::to_string(i % 20));
        EXPECT_EQ(ResolveForReading("file.png"), i % 2 == 0 ? "File.PNG" : "File.Png");
    }
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
