#include "Console.h"
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>
#include <string>

namespace tessarine
{
namespace
{
/// What the text that `write` prints looks like.
template <class TWrite>
std::string PrintedBy(TWrite write)
{
    std::string text;
    Console console;
    console.SetSink([&text](std::string_view part) { text += part; });
    write(console);
    console.Flush();
    return text;
}

TEST(Console, PrintsNumbersWithUpToSixSignificantDigits)
{
    EXPECT_EQ(PrintedBy([](Console& console) { console << 0.1 << ' ' << 1234567.0 << ' ' << 1.0 / 3.0; }),
              "0.1 1.23457e+06 0.333333");
    EXPECT_EQ(PrintedBy([](Console& console) { console << 2.0F << ' ' << -0.0; }), "2 -0");
    EXPECT_EQ(PrintedBy([](Console& console)
                        { console << 3221225472U << ' ' << std::numeric_limits<std::int64_t>::min(); }),
              "3221225472 -9223372036854775808");
}

TEST(Console, GathersTextUntilItIsFlushed)
{
    std::string text;
    Console console;
    console.SetSink([&text](std::string_view part) { text += part; });
    console << "no line end";
    EXPECT_EQ(text, "");
    console.Flush();
    EXPECT_EQ(text, "no line end");
    console.Flush();
    EXPECT_EQ(text, "no line end");
}

TEST(Console, HandsOnMuchTextAtALineEndWithoutBeingAsked)
{
    std::string text;
    Console console;
    console.SetSink([&text](std::string_view part) { text += part; });
    const std::string much(1U << 17U, 'x');
    console << much;
    EXPECT_EQ(text.size(), 0U);
    console << "\n";
    EXPECT_EQ(text, much + "\n");
}

TEST(Console, DropsWhatNobodyHears)
{
    std::string text;
    Console console;
    console.SetSink([&text](std::string_view part) { text += part; });
    console << "heard";
    EXPECT_TRUE(console.SetHeard(false));
    EXPECT_FALSE(console.IsHeard());
    console << "lost" << 1 << 2.5 << 'c' << std::string(1U << 17U, 'x') << '\n';
    EXPECT_FALSE(console.SetHeard(true));
    console << "again";
    console.Flush();
    EXPECT_EQ(text, "heardagain");
}

TEST(Console, FlushesBeforeItIsSentElsewhere)
{
    std::string first;
    std::string second;
    Console console;
    console.SetSink([&first](std::string_view part) { first += part; });
    console << "one";
    console.SetSink([&second](std::string_view part) { second += part; });
    console << "two";
    console.Flush();
    EXPECT_EQ(first, "one");
    EXPECT_EQ(second, "two");
}

TEST(Console, FlushesAtItsEnd)
{
    std::string text;
    {
        Console console;
        console.SetSink([&text](std::string_view part) { text += part; });
        console << "last words";
    }
    EXPECT_EQ(text, "last words");
}

TEST(Console, LetsNothingOutAtItsEnd)
{
    const auto endWithAFailingSink = []
    {
        Console console;
        console.SetSink([](std::string_view) { throw std::runtime_error("no room"); });
        console << "lost";
    };
    EXPECT_NO_THROW(endWithAFailingSink());
}

TEST(ConsoleDeathTest, PrintsWhatIsLeftWhenTheProcessEnds)
{
    const auto printAndExit = []
    {
        // The parent looks at standard error alone.
        DebugConsole().SetSink([](std::string_view text)
                               { std::fwrite(text.data(), 1, text.size(), stderr); });
        DebugConsole() << "left over";
        std::exit(0);
    };
    EXPECT_EXIT(printAndExit(), testing::ExitedWithCode(0), "left over");
}
}
}
