#include "MANToolsManager.h"
#include "Capture.h"
#include "Failure.h"
#include "IAAroundTool.h"
#include "IADrawSplatTool.h"
#include "IAMoveCameraTool.h"
#include "IAMoveFaceTool.h"
#include "IAMoveSolidTool.h"
#include "IAMoveVertexTool.h"
#include "IAOrbitTool.h"
#include "IASelectTool.h"
#include "IAZoomTool.h"
#include "MANCommandManager.h"
#include "Open3DView.h"
#include <gmock/gmock.h>
#include <stdexcept>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

/// Writes down what reaches it. It can be told to fail when it enters or leaves.
class TellingTool : public IATool
{
public:
    explicit TellingTool(std::vector<std::string>& events) : m_Events(events) {}

    void Enter() override
    {
        m_Events.emplace_back(m_pView != nullptr && m_pCommandManager != nullptr ? "Enter" : "Enter bare");
        if (m_bFails)
        {
            throw std::runtime_error("cannot enter");
        }
    }
    void Leave() override
    {
        m_Events.emplace_back("Leave");
        if (m_bStays)
        {
            throw std::runtime_error("cannot leave");
        }
    }
    void OnLButtonDown(int x, int y, unsigned flags) override { Tell("LButtonDown", x, y, flags); }
    void OnLButtonUp(int x, int y, unsigned flags) override { Tell("LButtonUp", x, y, flags); }
    void OnRButtonDown(int x, int y, unsigned flags) override { Tell("RButtonDown", x, y, flags); }
    void OnRButtonUp(int x, int y, unsigned flags) override { Tell("RButtonUp", x, y, flags); }
    void OnMouseMove(int x, int y, unsigned flags) override { Tell("MouseMove", x, y, flags); }
    void OnKeyDown(unsigned key, unsigned flags) override
    {
        Tell("KeyDown", static_cast<int>(key), 0, flags);
    }
    void OnKeyUp(unsigned key, unsigned flags) override { Tell("KeyUp", static_cast<int>(key), 0, flags); }
    void OnSetCursor() override { m_Events.emplace_back("SetCursor"); }

    void Fail() { m_bFails = true; }
    void Stay() { m_bStays = true; }

private:
    void Tell(const std::string& name, int x, int y, unsigned flags)
    {
        m_Events.push_back(name + ' ' + std::to_string(x) + ' ' + std::to_string(y) + ' ' +
                           std::to_string(flags));
    }

    std::vector<std::string>& m_Events;
    bool m_bFails = false;
    bool m_bStays = false;
};

class ToolsManagerTest : public testing::Test
{
protected:
    ToolsManagerTest()
    {
        m_Manager.SetView(&m_View);
        m_Manager.SetCommandManager(&m_Commands);
    }

    IATool* GetTool(unsigned id) { return m_Manager.FindTool(id); }
    void PushSelectTool() { m_Manager.PushTool(GetTool(ToolID::Select)); }

    ConsoleCapture m_Console;
    MANCommandManager m_Commands;
    Open3DView m_View;
    std::vector<std::string> m_Events;
    TellingTool m_First{m_Events};
    TellingTool m_Second{m_Events};
    MANToolsManager m_Manager;
};

template <class TTool>
bool Is(const IATool* tool, unsigned id)
{
    return dynamic_cast<const TTool*>(tool) != nullptr && tool->GetToolID() == id;
}

TEST_F(ToolsManagerTest, HasTheNineTools)
{
    EXPECT_TRUE(Is<IAMoveCameraTool>(GetTool(0x4000001), 0x4000001));
    EXPECT_TRUE(Is<IAZoomTool>(GetTool(0x4000002), 0x4000002));
    EXPECT_TRUE(Is<IAOrbitTool>(GetTool(0x4000003), 0x4000003));
    EXPECT_TRUE(Is<IAAroundTool>(GetTool(0x4000004), 0x4000004));
    EXPECT_TRUE(Is<IASelectTool>(GetTool(0x5000001), 0x5000001));
    EXPECT_TRUE(Is<IADrawSplatTool>(GetTool(0x5000006), 0x5000006));
    EXPECT_TRUE(Is<IAMoveVertexTool>(GetTool(0x6000001), 0x6000001));
    EXPECT_TRUE(Is<IAMoveFaceTool>(GetTool(0x6000003), 0x6000003));
    EXPECT_TRUE(Is<IAMoveSolidTool>(GetTool(0x6000004), 0x6000004));
    EXPECT_EQ(m_Manager.GetCurrentTool(), nullptr);
    EXPECT_THAT(m_Manager.GetToolStack(), IsEmpty());
}

TEST_F(ToolsManagerTest, FindsNoToolOfAnotherIdAndSaysNothing)
{
    const MessageCapture messages;
    EXPECT_EQ(GetTool(0), nullptr);
    EXPECT_EQ(GetTool(0x6000002), nullptr); // a gap
    EXPECT_THAT(messages.GetTexts(), IsEmpty());
}

TEST_F(ToolsManagerTest, RegistersNoToolOfAnUnknownId)
{
    const MessageCapture messages;
    EXPECT_EQ(m_Manager.RegisterTool(0x6000002), nullptr);
    EXPECT_THAT(messages.GetTexts(), ElementsAre("This tool does not exist!"));
}

TEST_F(ToolsManagerTest, FindsTheToolThatWasRegisteredFirst)
{
    IATool* first = GetTool(ToolID::Zoom);
    IATool* another = m_Manager.RegisterTool(ToolID::Zoom);
    EXPECT_TRUE(Is<IAZoomTool>(another, ToolID::Zoom));
    EXPECT_NE(another, first);
    EXPECT_EQ(GetTool(ToolID::Zoom), first);
}

TEST_F(ToolsManagerTest, LetsAToolEnterWithViewAndCommandManager)
{
    m_Manager.PushTool(&m_First);
    EXPECT_THAT(m_Events, ElementsAre("Enter"));
    EXPECT_EQ(m_Manager.GetCurrentTool(), &m_First);
    EXPECT_THAT(m_Manager.GetToolStack(), ElementsAre(&m_First));
    EXPECT_EQ(m_Console.GetText(), "");
}

TEST_F(ToolsManagerTest, PushesTheCurrentToolWithoutAnotherEnter)
{
    m_Manager.PushTool(&m_First);
    m_Manager.PushTool(&m_First);
    EXPECT_THAT(m_Events, ElementsAre("Enter"));
    EXPECT_THAT(m_Manager.GetToolStack(), ElementsAre(&m_First));
}

TEST_F(ToolsManagerTest, AssertsThatAPushedToolIsThere)
{
    const AssertionCapture assertions;
    EXPECT_THROW(m_Manager.PushTool(nullptr), AssertionFailure);
}

TEST_F(ToolsManagerTest, ReturnsToTheToolBelowWithoutTellingIt)
{
    m_Manager.PushTool(&m_First);
    m_Manager.PushTool(&m_Second);
    m_Events.clear();
    EXPECT_EQ(m_Manager.PopTool(), &m_Second);
    EXPECT_THAT(m_Events, ElementsAre("Leave"));
    EXPECT_EQ(m_Manager.GetCurrentTool(), &m_First);
    EXPECT_EQ(m_Console.GetText(), "Size of current tool stack: 2\n");
}

TEST_F(ToolsManagerTest, KeepsTheLastToolForCurrentWhenTheStackIsEmpty)
{
    m_Manager.PushTool(&m_First);
    m_Manager.PopTool();
    EXPECT_THAT(m_Manager.GetToolStack(), IsEmpty());
    EXPECT_EQ(m_Manager.GetCurrentTool(), &m_First);
}

TEST_F(ToolsManagerTest, AssertsThatThereIsAToolToPop)
{
    const AssertionCapture assertions;
    EXPECT_THROW(m_Manager.PopTool(), AssertionFailure);
    EXPECT_EQ(m_Console.GetText(), "Size of current tool stack: 0\n");
}

TEST_F(ToolsManagerTest, DropsAToolAlsoWhereItRefusesToLeave)
{
    m_Manager.PushTool(&m_First);
    m_Manager.PushTool(&m_Second);
    m_Second.Stay();
    EXPECT_THROW(m_Manager.PopTool(), std::runtime_error);
    EXPECT_EQ(m_Manager.GetCurrentTool(), &m_Second);
    m_Manager.DropTool();
    EXPECT_THAT(m_Manager.GetToolStack(), ElementsAre(&m_First));
    EXPECT_EQ(m_Manager.GetCurrentTool(), &m_First);
}

TEST_F(ToolsManagerTest, ChangesTheToolOnTop)
{
    PushSelectTool();
    m_Manager.ChangeTool(ToolID::Orbit);
    EXPECT_EQ(m_Manager.GetCurrentTool(), GetTool(ToolID::Orbit));
    EXPECT_THAT(m_Manager.GetToolStack(), ElementsAre(GetTool(ToolID::Orbit)));
    EXPECT_EQ(m_Console.GetText(), "Size of current tool stack: 1\n");
}

TEST_F(ToolsManagerTest, ChangesNothingForTheCurrentTool)
{
    PushSelectTool();
    m_Manager.ChangeTool(ToolID::Select);
    EXPECT_THAT(m_Manager.GetToolStack(), ElementsAre(GetTool(ToolID::Select)));
    EXPECT_EQ(m_Console.GetText(), "");
}

TEST_F(ToolsManagerTest, ChangesNothingForAnUnknownId)
{
    PushSelectTool();
    m_Manager.ChangeTool(12345);
    EXPECT_EQ(m_Manager.GetCurrentTool(), GetTool(ToolID::Select));
    EXPECT_EQ(m_Console.GetText(), "");
}

TEST_F(ToolsManagerTest, ChangesToTheToolBelowByTakingOffTheTop)
{
    PushSelectTool();
    m_Manager.PushTool(&m_First);
    m_Manager.ChangeTool(ToolID::Select);
    EXPECT_THAT(m_Manager.GetToolStack(), ElementsAre(GetTool(ToolID::Select)));
    EXPECT_EQ(m_Manager.GetCurrentTool(), GetTool(ToolID::Select));
}

TEST_F(ToolsManagerTest, TakesAToolThatCannotEnterOffAgain)
{
    m_Manager.PushTool(&m_First);
    m_Second.Fail();
    EXPECT_THROW(m_Manager.PushTool(&m_Second), std::runtime_error);
    EXPECT_EQ(m_Manager.GetCurrentTool(), &m_First);
    EXPECT_THAT(m_Manager.GetToolStack(), ElementsAre(&m_First));
}

TEST_F(ToolsManagerTest, GoesBackToTheToolBeforeWhenTheNewOneCannotEnter)
{
    m_Manager.PushTool(&m_First);
    m_Events.clear();
    const AssertionCapture assertions;
    EXPECT_THROW(m_Manager.ChangeTool(ToolID::MoveVertex), AssertionFailure); // the view has no controller
    EXPECT_EQ(m_Manager.GetCurrentTool(), &m_First);
    EXPECT_THAT(m_Manager.GetToolStack(), ElementsAre(&m_First));
    EXPECT_THAT(m_Events, ElementsAre("Leave", "Enter"));
}

TEST_F(ToolsManagerTest, StaysUsableWhenTheToolBeforeCannotEnterEither)
{
    m_Manager.PushTool(&m_First);
    m_First.Fail();
    const AssertionCapture assertions;
    EXPECT_THROW(m_Manager.ChangeTool(ToolID::MoveVertex), AssertionFailure);
    EXPECT_EQ(m_Manager.GetCurrentTool(), &m_First);
    m_Manager.ChangeTool(ToolID::Zoom);
    EXPECT_THAT(m_Manager.GetToolStack(), ElementsAre(GetTool(ToolID::Zoom)));
}

TEST_F(ToolsManagerTest, PassesEveryEventToTheToolOnTop)
{
    m_Manager.PushTool(&m_First);
    m_Manager.PushTool(&m_Second);
    m_Events.clear();
    m_Manager.OnLButtonDown(1, 2, 3);
    m_Manager.OnLButtonUp(4, 5, 6);
    m_Manager.OnRButtonDown(7, 8, 9);
    m_Manager.OnRButtonUp(10, 11, 12);
    m_Manager.OnMouseMove(-13, -14, 15);
    m_Manager.OnKeyDown(65, 16);
    m_Manager.OnKeyUp(65, 17); // reaches no tool
    m_Manager.OnSetCursor();
    EXPECT_THAT(m_Events,
                ElementsAre("LButtonDown 1 2 3", "LButtonUp 4 5 6", "RButtonDown 7 8 9", "RButtonUp 10 11 12",
                            "MouseMove -13 -14 15", "KeyDown 65 0 16", "SetCursor"));
}

TEST_F(ToolsManagerTest, AssertsThatAToolTakesTheEvents)
{
    const AssertionCapture assertions;
    EXPECT_THROW(m_Manager.OnMouseMove(0, 0, 0), AssertionFailure);
    EXPECT_THROW(m_Manager.OnSetCursor(), AssertionFailure);
    EXPECT_THROW(m_Manager.OnKeyDown(0, 0), AssertionFailure);
}

TEST_F(ToolsManagerTest, LetsNoToolLeaveAtItsEnd)
{
    {
        MANToolsManager manager;
        manager.PushTool(&m_First);
    }
    EXPECT_THAT(m_Events, ElementsAre("Enter bare")); // nobody had set view and command manager
}
}
}
