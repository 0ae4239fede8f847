#pragma once
#include "IACommandRouter.h"
#include "WorkbenchTest.h"

namespace tessarine
{
/// A workbench whose view of 100 by 100 pixels looks from (0, 0, 5) along -z at a cube around the origin with
/// edges of length 1. The front of the cube is its second face, 13 pixels to every side of the middle, with the
/// vertices 4 to 7.
class SelectionTest : public WorkbenchTest
{
protected:
    using Kind = ToolEvent::Kind;

    SelectionTest()
    {
        m_Bench.GetView().Resize(0, 0, 100, 100);
        m_Bench.GetView().GetCamera()->SetLookAt({0, 0, 5}, {0, 0, 0}, {0, 1, 0});
        m_pCube = ShowCube();
    }

    DSSolid* ShowCube() { return Show(Placed(QuadCube(), 1.0, smVec3d(-0.5, -0.5, -0.5))); }

    bool Send(Kind kind, int x, int y) { return m_Bench.SendEvent({.kind = kind, .x = x, .y = y}); }
    bool MoveTo(int x, int y) { return Send(Kind::MouseMove, x, y); }
    bool LeftDown(int x = 1, int y = 1) { return Send(Kind::LeftButtonDown, x, y); }
    bool RightDown(int x = 1, int y = 1) { return Send(Kind::RightButtonDown, x, y); }
    bool Choose(int id) { return IACommandRouter(m_Bench).Run("menu", id); }

    /// Hovers and clicks.
    void Select(int x, int y)
    {
        EXPECT_TRUE(MoveTo(x, y));
        EXPECT_TRUE(LeftDown(x, y));
    }

    const std::vector<std::uint32_t>& GetSelection() { return GetElements().GetSelectList(); }
    const std::vector<std::uint32_t>& GetHover() { return m_Bench.GetView().GetHoverList(); }
    unsigned GetToolOnTop() const { return m_Bench.GetToolsManager().GetCurrentTool()->GetToolID(); }
    std::size_t GetHistorySize() const { return m_Bench.GetCommandManager().GetHistorySize(); }

    std::vector<smVec3d> GetPositions(const DSSolid& solid) const
    {
        std::vector<smVec3d> positions;
        for (const DSVertex* vertex : solid.GetVertexList())
        {
            positions.push_back(vertex->GetPosition());
        }
        return positions;
    }

    /// What has come to the console since the last call.
    std::string GetNewText()
    {
        const std::string text = m_Console.GetText();
        const std::string added = text.substr(m_nRead);
        m_nRead = text.size();
        return added;
    }

    DSSolid* m_pCube = nullptr;

private:
    std::size_t m_nRead = 0;
};
}
