#include "DSBrep.h"
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
class LoopListOfThree : public testing::Test
{
protected:
    LoopListOfThree()
    {
        for (DSLoop& loop : m_Loops)
        {
            m_List.push_back(&loop);
        }
    }

    DSLoop m_Loops[3];
    LoopList m_List;
};
}

TEST(LoopList, HasRoomForOneLoopInItself)
{
    // One pointer and two counters: a face with one loop needs no other memory.
    EXPECT_EQ(sizeof(LoopList), 16U);
    DSLoop loop;
    LoopList list;
    EXPECT_TRUE(list.empty());
    list.push_back(&loop);
    EXPECT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0], &loop);
}

TEST_F(LoopListOfThree, KeepsTheOrder)
{
    const std::vector<DSLoop*> loops(m_List.begin(), m_List.end());
    EXPECT_EQ(loops, (std::vector<DSLoop*>{&m_Loops[0], &m_Loops[1], &m_Loops[2]}));
}

TEST_F(LoopListOfThree, RemovesTheFirstEqualLoopAndMovesTheOthersDown)
{
    m_List.push_back(&m_Loops[0]);
    EXPECT_TRUE(m_List.Remove(&m_Loops[0]));
    const std::vector<DSLoop*> loops(m_List.begin(), m_List.end());
    EXPECT_EQ(loops, (std::vector<DSLoop*>{&m_Loops[1], &m_Loops[2], &m_Loops[0]}));
    DSLoop other;
    EXPECT_FALSE(m_List.Remove(&other));
}

TEST_F(LoopListOfThree, CopiesAreIndependent)
{
    LoopList copy = m_List;
    copy.Remove(&m_Loops[1]);
    EXPECT_EQ(m_List.size(), 3U);
    EXPECT_EQ(copy.size(), 2U);
    m_List = copy;
    EXPECT_EQ(m_List[1], &m_Loops[2]);
}

TEST_F(LoopListOfThree, MovesLeaveAnEmptyList)
{
    LoopList moved = std::move(m_List);
    EXPECT_EQ(moved.size(), 3U);
    EXPECT_TRUE(m_List.empty()); // NOLINT(bugprone-use-after-move)
    m_List.push_back(&m_Loops[0]);
    EXPECT_EQ(m_List[0], &m_Loops[0]);
}

TEST_F(LoopListOfThree, IsEmptyAfterClear)
{
    m_List.clear();
    EXPECT_TRUE(m_List.empty());
    EXPECT_EQ(m_List.begin(), m_List.end());
}

TEST_F(LoopListOfThree, RefusesAnIndexBeyondItsLoops)
{
    EXPECT_THROW(m_List[3], AssertionFailure);
    EXPECT_THROW(LoopList()[0], AssertionFailure);
}

TEST_F(LoopListOfThree, LetsAnEntryBeReplaced)
{
    m_List[1] = &m_Loops[0];
    EXPECT_EQ(m_List[1], &m_Loops[0]);
}
}
