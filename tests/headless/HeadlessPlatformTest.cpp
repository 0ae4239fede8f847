#include "HeadlessPlatform.h"
#include "Capture.h"
#include "TemporaryFolder.h"
#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;

/// What `action` prints on standard error.
template <class TAction>
std::string SaidBy(TAction action)
{
    ::testing::internal::CaptureStderr();
    action();
    return ::testing::internal::GetCapturedStderr();
}
}

TEST(HeadlessPlatform, ShowsAMessageBoxAsOneLineAndKeepsIt)
{
    HeadlessPlatform platform;
    EXPECT_EQ(SaidBy([&] { platform.ShowMessage("Title", "first\nsecond"); }),
              "message box \"Title\": first\\nsecond\n");
    EXPECT_THAT(platform.GetMessages(), ElementsAre(HeadlessPlatform::Message{"Title", "first\nsecond"}));
}

TEST(HeadlessPlatform, TellsWhichOperationFailedAndWhy)
{
    HeadlessPlatform platform;
    EXPECT_EQ(SaidBy([&] { platform.ShowFailure("import", "no\nfile", false); }),
              "tessarine-batch: import: no\\nfile\n");
    EXPECT_EQ(SaidBy([&] { platform.ShowFailure("import", "no file", true); }),
              "tessarine-batch: import: no file\n"); // the box did not name the operation
}

TEST(HeadlessPlatform, PrintsWhatTheConsoleHoldsBackBeforeAMessage)
{
    // The console is sent to standard error too, so that the order of the two shows.
    const Console::Sink before = DebugConsole().SetSink(
        [](std::string_view text) { std::fwrite(text.data(), 1, text.size(), stderr); });
    HeadlessPlatform platform;
    const std::string said = SaidBy(
        [&]
        {
            DebugConsole() << "held ";
            platform.ShowMessage("T", "text");
        });
    DebugConsole().SetSink(before);
    EXPECT_EQ(said, "held message box \"T\": text\n");
}

TEST(HeadlessPlatform, KeepsTheCursorOfTheView)
{
    HeadlessPlatform platform;
    EXPECT_EQ(platform.GetCursor(), "");
    platform.SetCursorFromFile("res\\Orbit.CUR");
    EXPECT_EQ(platform.GetCursor(), "res\\Orbit.CUR");
    platform.SetArrowCursor();
    EXPECT_EQ(platform.GetCursor(), "");
}

TEST(HeadlessPlatform, KeepsWhatItsFileDialogsAsked)
{
    HeadlessPlatform platform;
    platform.AskOpenFile({"A|*.a||", ".a"});
    platform.AskSaveFile({"B|*.b||", ".b"});
    EXPECT_THAT(platform.GetFileQuestions(),
                ElementsAre(FileQuestion{"A|*.a||", ".a"}, FileQuestion{"B|*.b||", ".b"}));
}

TEST(HeadlessPlatform, CancelsAFileDialogWithoutAnAnswer)
{
    HeadlessPlatform platform;
    EXPECT_FALSE(platform.AskOpenFile({}).has_value());
    EXPECT_FALSE(platform.AskSaveFile({}).has_value());
}

TEST(HeadlessPlatform, MakesTheFolderOfTheChoiceTheCurrentOne)
{
    const TemporaryCurrentFolder folder;
    std::filesystem::create_directory("models");
    HeadlessPlatform platform;
    platform.AnswerFile("models/one.obj");
    EXPECT_EQ(platform.AskOpenFile({}), folder / "models/one.obj");
    EXPECT_EQ(GetCurrentFolder(), folder / "models");
}

TEST(HeadlessPlatform, TakesTheChoiceAsItStands)
{
    const TemporaryCurrentFolder folder;
    std::filesystem::create_directory("models");
    HeadlessPlatform platform;
    platform.AnswerFile("models\\One.obj");
    EXPECT_EQ(platform.AskSaveFile({}), folder / "models\\One.obj"); // a name like any other here
    EXPECT_EQ(GetCurrentFolder(), folder.GetPath());
}

TEST(HeadlessPlatform, StaysWhereItIsWhenTheFolderOfAFileToOpenIsMissing)
{
    const TemporaryCurrentFolder folder;
    HeadlessPlatform platform;
    platform.AnswerFile("missing/one.obj");
    EXPECT_EQ(platform.AskOpenFile({}), folder / "missing/one.obj");
    EXPECT_EQ(GetCurrentFolder(), folder.GetPath());

    platform.AnswerFile("missing/one.obj");
    EXPECT_THROW(platform.AskSaveFile({}), FileError);  // it would be written elsewhere
    EXPECT_FALSE(platform.AskSaveFile({}).has_value()); // the answer is used up
}

TEST(HeadlessPlatform, NeedsNoCurrentFolderForAWholePath)
{
    const TemporaryFolder folder;
    const CurrentFolderGuard home;
    {
        const TemporaryFolder gone;
        SetCurrentFolder(gone.GetPath());
    }
    HeadlessPlatform platform;
    platform.AnswerFile("relative.obj");
    EXPECT_THROW(platform.AskOpenFile({}), FileError);
    platform.AnswerFile((folder / "whole.obj").string());
    EXPECT_EQ(platform.AskOpenFile({}), folder / "whole.obj");
}

TEST(HeadlessPlatform, AnswersDialogsInTheOrderOfTheQueue)
{
    const TemporaryCurrentFolder folder;
    HeadlessPlatform platform;
    platform.AnswerFile("first");
    platform.AnswerFile((folder / "second").string());
    EXPECT_EQ(platform.AskOpenFile({}), folder / "first");
    EXPECT_EQ(platform.AskSaveFile({}), folder / "second");
    EXPECT_FALSE(platform.AskOpenFile({}).has_value());
}

TEST(HeadlessPlatform, AnswersTheQuestionForAThresholdFromItsQueue)
{
    HeadlessPlatform platform;
    platform.AnswerAreaThreshold(0.5F);
    EXPECT_EQ(platform.AskAreaThreshold(), 0.5F);
    EXPECT_EQ(platform.AskAreaThreshold(), std::nullopt) << "an empty queue cancels";
    EXPECT_EQ(platform.CountThresholdQuestions(), 2);
}

TEST(HeadlessPlatform, KeepsTheTextsOfItsPanes)
{
    HeadlessPlatform platform;
    platform.SetPaneText(6, "text");
    EXPECT_EQ(platform.GetPaneText(6), "text");
    EXPECT_THROW(platform.SetPaneText(7, "text"), std::out_of_range);
    EXPECT_THROW(platform.SetPaneText(-1, "text"), std::out_of_range);
}

TEST(Platform, IsTheOneThatWasSetLast)
{
    HeadlessPlatform platform;
    Platform* before = SetPlatform(&platform);
    SaidBy([] { ShowMessage("text"); });
    EXPECT_EQ(SetPlatform(before), &platform);
    EXPECT_THAT(platform.GetMessages(), ElementsAre(HeadlessPlatform::Message{"Tessarine", "text"}));
}

TEST(Platform, IsNotAskedForBeforeOneWasSet)
{
    Platform* before = SetPlatform(nullptr);
    EXPECT_THROW(GetPlatform(), std::logic_error);
    SetPlatform(before);
}
}
