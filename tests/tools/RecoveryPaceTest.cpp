#include "RecoveryPace.h"
#include <gtest/gtest.h>
#include <random>

namespace tessarine
{
namespace
{
constexpr std::uint64_t kPaceMinute = 60000;
constexpr std::size_t kFewElements = 100;
constexpr std::size_t kManyElements = 30'000'000;

TEST(RecoveryPace, LetsTheFirstFileOfASmallModelBeWrittenAfterAMoment)
{
    const RecoveryPace pace(5000);
    EXPECT_FALSE(pace.IsDue(5000, kFewElements));
    EXPECT_FALSE(pace.IsDue(5900, kFewElements)); // 50 ms are foreseen, a twentieth of a second
    EXPECT_TRUE(pace.IsDue(6100, kFewElements));
}

TEST(RecoveryPace, LetsAMinutePassBetweenTwoFiles)
{
    RecoveryPace pace(0);
    pace.NoteWriting(10000, 10020, kFewElements);
    EXPECT_FALSE(pace.IsDue(10020 + kPaceMinute - 1, kFewElements));
    EXPECT_TRUE(pace.IsDue(10020 + kPaceMinute, kFewElements));
}

TEST(RecoveryPace, WaitsLongerForALargerModel)
{
    const RecoveryPace pace(0);
    EXPECT_FALSE(pace.IsDue(5 * kPaceMinute,
                            kManyElements)); // 15 s are foreseen: a twentieth of five minutes and a second
    EXPECT_TRUE(pace.IsDue(5 * kPaceMinute + 2000, kManyElements));
}

TEST(RecoveryPace, LearnsHowLongAFileTakes)
{
    RecoveryPace pace(0);
    pace.NoteWriting(20 * kPaceMinute, 20 * kPaceMinute + 60000,
                     kManyElements); // all that twenty minutes allow
    EXPECT_FALSE(pace.IsDue(39 * kPaceMinute, kManyElements));
    EXPECT_TRUE(pace.IsDue(40 * kPaceMinute + 2000, kManyElements));
    EXPECT_TRUE(pace.IsDue(22 * kPaceMinute, kFewElements)); // a minute and a twentieth
}

TEST(RecoveryPace, DoesNotTakeTheTimeOfASmallFileForThatOfItsElements)
{
    RecoveryPace pace(0);
    pace.NoteWriting(2000, 2100, kFewElements); // a millisecond for each
    EXPECT_TRUE(pace.IsDue(100 * kPaceMinute, kManyElements));
}

TEST(RecoveryPace, TakesATwentiethOfTheTimeAtMost)
{
    std::mt19937 random(7);
    for (int run = 0; run < 50; ++run)
    {
        RecoveryPace pace(0);
        const std::size_t elements = 20000 + random() % kManyElements;
        const double each = 0.0001 * (1 + random() % 4); // milliseconds; never more than is foreseen
        int files = 0;
        for (std::uint64_t now = 0; now < 10 * 60 * kPaceMinute; now += 1 + random() % 2000)
        {
            if (pace.IsDue(now, elements))
            {
                const auto end = now + static_cast<std::uint64_t>(each * static_cast<double>(elements));
                pace.NoteWriting(now, end, elements);
                now = end;
                ++files;
                ASSERT_LE(static_cast<double>(pace.GetTimeSpent()), 0.05 * static_cast<double>(now));
            }
        }
        EXPECT_GT(files, 20) << elements << " elements"; // 12 s at most of each four minutes
    }
}

TEST(RecoveryPace, MakesUpForAFileThatTookTooLong)
{
    RecoveryPace pace(0);
    pace.NoteWriting(kPaceMinute, 3 * kPaceMinute,
                     kManyElements); // two minutes of three: a share of a twentieth after forty
    EXPECT_FALSE(pace.IsDue(40 * kPaceMinute, kFewElements));
    EXPECT_TRUE(pace.IsDue(41 * kPaceMinute, kFewElements));
}
}
}
