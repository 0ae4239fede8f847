#include "IACameraTool.h"
#include "MANCommandManager.h"
#include "Open3DView.h"
#include "Platform.h"
#include <charconv>
#include <cstdint>
#include <limits>
#include <string>

namespace tessarine
{
namespace
{
constexpr int kCameraPane = 3;

/// From one pixel to another; they may lie further apart than an int reaches.
double GetWay(int from, int to)
{
    return static_cast<double>(std::int64_t{to} - from);
}

/// As "%.2f" gives it in the C locale.
std::string WithTwoDecimals(double value)
{
    char digits[std::numeric_limits<double>::max_exponent10 + 8]; // all digits, a sign, a point, two decimals
    const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, 2).ptr;
    return {digits, end};
}
}

void IACameraTool::Enter()
{
    m_nState = State::Idle; // until it has entered: it may have been left in a drag
    ASSERT(m_pCommandManager != nullptr);
    ASSERT(m_pView != nullptr);
    std::unique_ptr<IACommand> command = m_pCommandManager->CreateCommand(m_nCommandID);
    ASSERT(command != nullptr);
    m_pCommand.reset(static_cast<IACameraCommand*>(command.release()));
    m_pCommand->SetCamera(m_pView->GetCamera());
    m_pCommand->SaveState();
    m_nState = State::Ready;
}

void IACameraTool::Leave()
{
    if (m_nState == State::Ready)
    {
        m_nState = State::Idle;
    }
    m_pCommand.reset();
}

void IACameraTool::OnLButtonDown(int x, int y, unsigned /*flags*/)
{
    if (m_nState == State::Ready)
    {
        m_nState = State::Dragging;
        m_nX = x;
        m_nY = y;
    }
}

void IACameraTool::OnLButtonUp(int /*x*/, int /*y*/, unsigned /*flags*/)
{
    if (m_nState == State::Dragging)
    {
        m_nState = State::Ready;
    }
}

void IACameraTool::OnSetCursor()
{
    GetPlatform().SetCursorFromFile(m_pCursorFile);
}

double IACameraTool::GetWayRight(int x) const
{
    return GetWay(m_nX, x);
}

double IACameraTool::GetWayUp(int y) const
{
    return GetWay(y, m_nY);
}

void IACameraTool::RunStep(int x, int y)
{
    m_pCommand->Execute();
    m_nX = x;
    m_nY = y;
    UpdateCameraStatus();
    m_pView->Redraw();
}

void IACameraTool::UpdateCameraStatus() const
{
    const smVec3d eye = m_pView->GetCamera()->GetPosition();
    GetPlatform().SetPaneText(kCameraPane, "相机位置: (" + WithTwoDecimals(eye.x) + "," +
                                               WithTwoDecimals(eye.y) + "," + WithTwoDecimals(eye.z) + ")");
}
}
