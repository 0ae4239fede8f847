#include "IADrawSplatTool.h"
#include "Assert.h"
#include "IAController.h"
#include "IADrawSplatCommand.h"
#include "MANCommandManager.h"
#include "Open3DView.h"
#include <utility>

namespace tessarine
{
IADrawSplatTool::IADrawSplatTool() = default;

IADrawSplatTool::~IADrawSplatTool() = default;

void IADrawSplatTool::Enter()
{
    ASSERT(m_pCommandManager != nullptr);
    ASSERT(m_pView != nullptr);
    std::unique_ptr<IACommand> command = m_pCommandManager->CreateCommand(CommandID::DrawSplat);
    ASSERT(command != nullptr);
    m_pCommand.reset(static_cast<IADrawSplatCommand*>(command.release()));
    m_pCommand->SetCamera(m_pView->GetCamera());
    m_nState = State::Ready;
}

void IADrawSplatTool::Leave()
{
    m_nState = State::Idle;
    MANCommandManager::ReleaseCommand(std::move(m_pCommand));
}

void IADrawSplatTool::OnLButtonDown(int x, int y, unsigned /*flags*/)
{
    if (m_nState == State::Ready)
    {
        m_nState = State::Dragging;
        m_pCommand->SetStart(x, y);
    }
}

void IADrawSplatTool::OnMouseMove(int x, int y, unsigned /*flags*/)
{
    if (m_nState == State::Dragging)
    {
        m_pCommand->SetEnd(x, y);
        m_pView->RedrawUnder(m_pCommand->MakeQuad());
    }
}

void IADrawSplatTool::EndDrag()
{
    if (m_nState == State::Dragging)
    {
        m_nState = State::Ready;
    }
}

/// The scene is that of the document of this moment: the tool may have outlived the one that it was taken in.
void IADrawSplatTool::OnLButtonUp(int x, int y, unsigned /*flags*/)
{
    if (m_nState == State::Dragging)
    {
        m_nState = State::Ready;
        m_pCommand->SetEnd(x, y);
        ASSERT(m_pView->GetController() != nullptr);
        m_pCommand->SetScene(&m_pView->GetController()->GetSceneManager());
        m_pCommand->Execute();
    }
}
}
