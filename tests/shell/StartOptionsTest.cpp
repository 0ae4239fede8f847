#include "StartOptions.h"
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
StartOptions Parse(QStringList words)
{
    words.prepend("tessarine");
    return ParseStartOptions(words);
}

TEST(StartOptions, AreEmptyWithoutWords)
{
    const StartOptions options = Parse({});
    EXPECT_TRUE(options.file.isEmpty());
    EXPECT_TRUE(options.importModel.isEmpty());
    EXPECT_TRUE(options.error.isEmpty());
    EXPECT_FALSE(options.help);
    EXPECT_FALSE(options.version);
}

TEST(StartOptions, TakeAWordForTheFileToOpen)
{
    EXPECT_EQ(Parse({"a.obj"}).file, "a.obj");
    EXPECT_TRUE(Parse({"a.obj"}).importModel.isEmpty());
    EXPECT_EQ(Parse({"--", "--import"}).file, "--import");
}

TEST(StartOptions, TakeTheModelToImport)
{
    EXPECT_EQ(Parse({"--import", "a.obj"}).importModel, "a.obj");
    EXPECT_EQ(Parse({"--import=a.obj"}).importModel, "a.obj");
    EXPECT_TRUE(Parse({"--import", "a.obj"}).file.isEmpty());
}

TEST(StartOptions, TakeTheFileForAModelInTheWorkspace)
{
    EXPECT_FALSE(Parse({"a.obj"}).workspace);
    EXPECT_TRUE(Parse({"--workspace"}).workspace);
    EXPECT_EQ(Parse({"--workspace", "a.obj"}).importModel, "a.obj");
    EXPECT_TRUE(Parse({"--workspace", "a.obj"}).file.isEmpty());
    EXPECT_EQ(Parse({"--workspace", "--import", "a.obj"}).importModel, "a.obj");
    EXPECT_EQ(Parse({"--workspace", "--import", "a.obj", "b.obj"}).error, "one file at a time: a.obj b.obj");
    EXPECT_EQ(Parse({"--workspace", ""}).error, "the name of the file is empty");
}

TEST(StartOptions, KnowHelpAndVersion)
{
    EXPECT_TRUE(Parse({"--help"}).help);
    EXPECT_TRUE(Parse({"-h"}).help);
    EXPECT_TRUE(Parse({"--version"}).version);
    EXPECT_TRUE(GetStartHelp().contains("--import"));
}

TEST(StartOptions, SayWhatIsWrong)
{
    EXPECT_EQ(Parse({"a.obj", "b.obj"}).error, "one file at a time: a.obj b.obj");
    EXPECT_EQ(Parse({"--import", "a.obj", "--import", "b.obj"}).error, "one file at a time: a.obj b.obj");
    EXPECT_EQ(Parse({"--import", ""}).error, "the name of the file is empty");
    EXPECT_EQ(Parse({""}).error, "the name of the file is empty");
    EXPECT_TRUE(Parse({"--nonsense"}).error.contains("nonsense"));
    EXPECT_TRUE(Parse({"-nonsense"}).error.contains("nonsense"));
    EXPECT_TRUE(Parse({"--import"}).error.contains("import"));
}
}
}
