#include "IASelectTool.h"
#include "Assert.h"
#include "Console.h"
#include "IAController.h"
#include "IASelectCommand.h"
#include "MANCommandManager.h"
#include "MarkDrawer.h"
#include "Open3DView.h"
#include "Platform.h"
#include "TryTo.h"
#include <algorithm>
#include <utility>

namespace tessarine
{
namespace
{
/// What a type of selection takes, and the sub-menu that a right click opens.
struct TypeOfSelection
{
    std::uint32_t type;
    std::uint32_t kind;
    int popup;
};

constexpr int kNoPopup = -1;
constexpr int kSolidPopup = 3;

constexpr TypeOfSelection kTypesOfSelection[] = {
    {SelectType::Vertices, ElementKind::Vertex, 0},
    {SelectType::Edges, ElementKind::Edge, kNoPopup},
    {SelectType::Faces, ElementKind::Face, 2},
};

/// Every other type takes solids.
TypeOfSelection FindTypeOfSelection(std::uint32_t type)
{
    const auto* found = std::find_if(std::begin(kTypesOfSelection), std::end(kTypesOfSelection),
                                     [type](const auto& entry) { return entry.type == type; });
    return found != std::end(kTypesOfSelection) ? *found
                                                : TypeOfSelection{type, ElementKind::Solid, kSolidPopup};
}
}

IASelectTool::IASelectTool() = default;

IASelectTool::~IASelectTool() = default;

void IASelectTool::Enter()
{
    ASSERT(m_pCommandManager != nullptr);
    ASSERT(m_pView != nullptr);
    std::unique_ptr<IACommand> command = m_pCommandManager->CreateCommand(CommandID::Select);
    ASSERT(command != nullptr);
    m_pCommand.reset(static_cast<IASelectCommand*>(command.release()));
    m_pCommand->SetCamera(m_pView->GetCamera());
    m_pCommand->SetFaceRuns(&m_FaceRuns);
    m_nState = State::Ready;
}

void IASelectTool::Leave()
{
    m_nState = State::Idle;
    ForgetModel();
    MANCommandManager::ReleaseCommand(std::move(m_pCommand));
}

void IASelectTool::PrepareModel() noexcept
{
    if (m_nState != State::Ready)
    {
        return;
    }
    // Where this fails, the next motion looks for itself, and tells what it lacks.
    TryTo(
        [this]
        {
            m_pCommand->SetScene(&m_pView->GetController()->GetSceneManager());
            m_pCommand->MakeFaceRuns();
        });
}

/// The scene is that of the document of this moment, whichever tool was on top when the document came.
void IASelectTool::OnMouseMove(int x, int y, unsigned /*flags*/)
{
    if (m_nState != State::Ready)
    {
        return;
    }
    ASSERT(m_pView->GetController() != nullptr);
    m_pCommand->SetScene(&m_pView->GetController()->GetSceneManager());
    m_pCommand->SetMouse(x, y);
    m_pCommand->SetKind(FindTypeOfSelection(m_pView->GetSelectType()).kind);
    m_pCommand->Execute();
    m_pView->GetHoverList().clear();
    if (m_pCommand->HasHit())
    {
        m_pView->GetHoverList().push_back(m_pCommand->GetElementID());
    }
    m_pView->Redraw();
}

void IASelectTool::OnLButtonDown(int /*x*/, int /*y*/, unsigned /*flags*/)
{
    if (m_nState != State::Ready || !m_pCommand->HasHit())
    {
        return;
    }
    const std::uint32_t id = m_pCommand->GetElementID();
    if (m_pView->GetController()->GetElementManager().FindLiveElement(id) == nullptr)
    {
        ShowMessage("The element doesnot exist!");
        return;
    }
    m_pView->ToggleSelect(id);
    m_pView->Redraw();
    DebugConsole() << "ELEMENT ID:" << id << '\n';
}

void IASelectTool::OnRButtonDown(int x, int y, unsigned /*flags*/)
{
    const int popup = FindTypeOfSelection(m_pView->GetSelectType()).popup;
    if (popup != kNoPopup)
    {
        GetPlatform().ShowPopupMenu(popup, x, y);
    }
}
}
