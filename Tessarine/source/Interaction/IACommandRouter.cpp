#include "IACommandRouter.h"
#include "Failure.h"
#include "IAMoveCommand.h"
#include "IAMoveTool.h"
#include "IAWorkbench.h"
#include "Platform.h"
#include "Resources.h"
#include "resource.h"
#include <algorithm>
#include <string_view>

namespace tessarine
{
namespace
{
/// What an entry does.
struct Route
{
    int id;
    Effect effect;
    void (*run)(IAWorkbench& workbench);
};

constexpr Route Command(int id, void (*run)(IAWorkbench& workbench))
{
    return {id, Effect::ChangesModel, run};
}

/// What there is stays as it is, but may be hidden.
constexpr Route Addition(int id, void (*run)(IAWorkbench& workbench))
{
    return {id, Effect::Adds, run};
}

/// A tool, a switch, a selection type or a sampling: what the model is made of stays.
constexpr Route OfView(int id, void (*run)(IAWorkbench& workbench))
{
    return {id, Effect::None, run};
}

template <unsigned toolID>
constexpr Route Tool(int id)
{
    return OfView(id, [](IAWorkbench& workbench) { workbench.GetToolsManager().ChangeTool(toolID); });
}

template <void (Open3DView::*toggle)()>
constexpr Route Switch(int id)
{
    return OfView(id, [](IAWorkbench& workbench) { (workbench.GetView().*toggle)(); });
}

/// Another type than the one in force drops the selection.
template <std::uint32_t type>
constexpr Route SelectionType(int id)
{
    return OfView(id,
                  [](IAWorkbench& workbench)
                  {
                      if (workbench.GetView().GetSelectType() != type)
                      {
                          workbench.GetView().SetSelectType(type);
                      }
                  });
}

/// Along an axis or the normal, until a click.
void PushMoveTool(IAWorkbench& workbench, unsigned toolID, const smVec3d& direction)
{
    MANToolsManager& tools = workbench.GetToolsManager();
    auto* tool = static_cast<IAMoveTool*>(tools.FindTool(toolID));
    tool->SetDirection(direction);
    tools.PushTool(tool);
}

enum class Way
{
    AlongX,
    AlongY,
    AlongZ,
    AlongNormal
};

constexpr smVec3d kDirections[] = {
    {1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}, IAMoveCommand::kAlongNormal};

template <unsigned toolID, Way way>
constexpr Route Move(int id)
{
    return OfView(id, [](IAWorkbench& workbench)
                  { PushMoveTool(workbench, toolID, kDirections[static_cast<int>(way)]); });
}

void PushDrawSplatTool(IAWorkbench& workbench)
{
    MANToolsManager& tools = workbench.GetToolsManager();
    tools.PushTool(tools.FindTool(ToolID::DrawSplat));
}

void OpenLightingDialog(IAWorkbench& workbench)
{
    GetPlatform().OpenLightingDialog(workbench.GetController().GetSceneManager().GetLightList());
}

// clang-format off
constexpr Route kRoutes[] = {
    {ResourceID::FileNew, Effect::ReplacesDocument, [](IAWorkbench& workbench) { workbench.NewDocument(); }},
    {ResourceID::FileOpen, Effect::None, [](IAWorkbench& workbench) { workbench.OpenDocument(); }},
    {ResourceID::FileSave, Effect::None, [](IAWorkbench& workbench) { workbench.SaveDocument(); }},
    {ResourceID::FileSaveAs, Effect::None, [](IAWorkbench& workbench) { workbench.SaveDocument(); }},
    {ResourceID::AppAbout, Effect::None, [](IAWorkbench&) {}}, // a dialog, which only the window has
    {ResourceID::ImportObj, Effect::ReplacesModel, [](IAWorkbench& workbench) { workbench.ImportObj(); }},
    {ResourceID::ExportObj, Effect::None, [](IAWorkbench& workbench) { workbench.ExportObj(); }},
    Tool<ToolID::Orbit>(ResourceID::OrbitTool),
    Tool<ToolID::MoveCamera>(ResourceID::MoveCameraTool),
    Tool<ToolID::Around>(ResourceID::AroundTool),
    Tool<ToolID::Zoom>(ResourceID::ZoomTool),
    Tool<ToolID::Select>(ResourceID::SelectTool),
    OfView(ResourceID::DrawSplatTool, PushDrawSplatTool),
    Move<ToolID::MoveVertex, Way::AlongX>(ResourceID::MoveVertexX),
    Move<ToolID::MoveVertex, Way::AlongY>(ResourceID::MoveVertexY),
    Move<ToolID::MoveVertex, Way::AlongZ>(ResourceID::MoveVertexZ),
    Move<ToolID::MoveVertex, Way::AlongNormal>(ResourceID::MoveVertexNormal),
    Move<ToolID::MoveFace, Way::AlongX>(ResourceID::MoveFaceX),
    Move<ToolID::MoveFace, Way::AlongY>(ResourceID::MoveFaceY),
    Move<ToolID::MoveFace, Way::AlongZ>(ResourceID::MoveFaceZ),
    Move<ToolID::MoveFace, Way::AlongNormal>(ResourceID::MoveFaceNormal),
    Move<ToolID::MoveSolid, Way::AlongX>(ResourceID::MoveSolidX),
    Move<ToolID::MoveSolid, Way::AlongY>(ResourceID::MoveSolidY),
    Move<ToolID::MoveSolid, Way::AlongZ>(ResourceID::MoveSolidZ),
    SelectionType<SelectType::Vertices>(ResourceID::SelectVertices),
    SelectionType<SelectType::Edges>(ResourceID::SelectEdges),
    SelectionType<SelectType::Faces>(ResourceID::SelectFaces),
    SelectionType<SelectType::Solids>(ResourceID::SelectSolids),
    Switch<&Open3DView::ToggleWire>(ResourceID::ShowWire),
    OfView(ResourceID::ShowShaded, [](IAWorkbench&) {}), // a check mark without a switch
    Switch<&Open3DView::ToggleAxes>(ResourceID::ShowAxes),
    Switch<&Open3DView::ToggleGrid>(ResourceID::ShowGrid),
    OfView(ResourceID::LightingDialog, OpenLightingDialog),
    Switch<&Open3DView::ShowTexture>(ResourceID::ShowTexture),
    Switch<&Open3DView::TogglePoints>(ResourceID::ShowPoints),
    Switch<&Open3DView::ToggleFlatShading>(ResourceID::FaceNormals),
    Switch<&Open3DView::ToggleSmoothShading>(ResourceID::VertexNormals),
    Switch<&Open3DView::ToggleOctree>(ResourceID::ShowOctree),
    Switch<&Open3DView::TogglePointCloud>(ResourceID::ShowPointCloud),
    Switch<&Open3DView::TogglePointNormals>(ResourceID::ShowPointNormals),
    Switch<&Open3DView::ToggleProjectedPoints>(ResourceID::ShowProjectedPoints),
    Switch<&Open3DView::ToggleProjectionLines>(ResourceID::ShowProjectionLines),
    Switch<&Open3DView::ToggleNewMesh>(ResourceID::ShowNewMesh),
    Switch<&Open3DView::ToggleOriginalModel>(ResourceID::ShowOriginalModel),
    Switch<&Open3DView::ToggleCutFaces>(ResourceID::ShowCutFaces),
    Command(ResourceID::SubdivideLoop, [](IAWorkbench& workbench) { workbench.GetController().SubdivideLoop(); }),
    {ResourceID::SubdivideAdaptive, Effect::ReplacesModel, [](IAWorkbench& workbench) { workbench.GetController().SubdivideAdaptive(); }},
    OfView(ResourceID::ProjectSamples, [](IAWorkbench& workbench) { workbench.GetController().ProjectSamples(); }),
    Command(ResourceID::BuildInitialMesh, [](IAWorkbench& workbench) { workbench.GetController().BuildInitialMesh(); }),
    Command(ResourceID::RefineHierarchical, [](IAWorkbench& workbench) { workbench.GetController().RefineHierarchical(); }),
    Command(ResourceID::RefineIncremental, [](IAWorkbench& workbench) { workbench.GetController().RefineIncremental(); }),
    Command(ResourceID::RefineTwoStep, [](IAWorkbench& workbench) { workbench.GetController().RefineTwoStep(); }),
    Command(ResourceID::RefineEnergy, [](IAWorkbench& workbench) { workbench.GetController().RefineEnergy(); }),
    Command(ResourceID::OptimizeMesh1, [](IAWorkbench& workbench) { workbench.GetController().OptimizeMesh(1); }),
    Command(ResourceID::OptimizeMesh2, [](IAWorkbench& workbench) { workbench.GetController().OptimizeMesh(2); }),
    Command(ResourceID::OptimizeMesh3, [](IAWorkbench& workbench) { workbench.GetController().OptimizeMesh(3); }),
    Addition(ResourceID::Simplify20, [](IAWorkbench& workbench) { workbench.GetController().Simplify(0.8F); }),
    Addition(ResourceID::Simplify50, [](IAWorkbench& workbench) { workbench.GetController().Simplify(0.5F); }),
    Addition(ResourceID::Simplify80, [](IAWorkbench& workbench) { workbench.GetController().Simplify(0.2F); }),
    Addition(ResourceID::SetMaterial, [](IAWorkbench& workbench) { workbench.GetController().SetMaterialOfSelection(); }),
    Addition(ResourceID::GenerateSplats, [](IAWorkbench& workbench) { workbench.GetController().GenerateSplats(); }),
    Command(ResourceID::TwoStepFirst, [](IAWorkbench& workbench) { workbench.GetController().TwoStepFirst(); }),
    Command(ResourceID::TwoStepSecond, [](IAWorkbench& workbench) { workbench.GetController().TwoStepSecond(); }),
    Command(ResourceID::TwoStepThird, [](IAWorkbench& workbench) { workbench.GetController().TwoStepThird(); }),
};
// clang-format on

const Route* FindRoute(int id)
{
    const auto found = std::find_if(std::begin(kRoutes), std::end(kRoutes),
                                    [id](const Route& route) { return route.id == id; });
    return found == std::end(kRoutes) ? nullptr : found;
}

/// Why a number leads nowhere.
[[noreturn]] void Refuse(int id)
{
    const MenuEntry* entry = FindMenuEntry(id);
    if (entry == nullptr)
    {
        throw Failure("no command has the number " + std::to_string(id));
    }
    const std::string_view label = entry->label;
    const std::string name =
        "\"" + std::string(label.substr(0, label.find('\t'))) + "\" (" + std::to_string(id) + ")";
    throw Failure(name + " is disabled");
}

bool IsFirstModelVisible(const IAController& controller)
{
    const MANSceneGroup* root = controller.GetRootGroup();
    return root != nullptr && !root->GetChildren().empty() && root->GetChildren().front()->IsVisible();
}

bool IsOnTop(unsigned toolID, const IAWorkbench& workbench)
{
    const IATool* tool = workbench.GetToolsManager().GetCurrentTool();
    return tool != nullptr && tool->GetToolID() == toolID;
}

bool IsChecked(const MenuEntry& entry, const IAWorkbench& workbench)
{
    switch (entry.check)
    {
    case MenuCheck::DisplayFlag: return (workbench.GetView().GetDisplayFlags() & entry.checkValue) != 0;
    case MenuCheck::SelectType: return workbench.GetView().GetSelectType() == entry.checkValue;
    case MenuCheck::Tool: return IsOnTop(entry.checkValue, workbench);
    case MenuCheck::OriginalModel: return IsFirstModelVisible(workbench.GetController());
    case MenuCheck::None: break;
    }
    return false;
}
}

bool IACommandRouter::Run(const std::string& operation, int id)
{
    const Route* route = FindRoute(id);
    if (route == nullptr)
    {
        return m_Workbench.Perform(operation, Effect::None, [id] { Refuse(id); });
    }
    return m_Workbench.Perform(operation, route->effect, [this, route] { route->run(m_Workbench); });
}

MenuState IACommandRouter::GetState(int id) const
{
    const MenuEntry* entry = FindMenuEntry(id);
    if (entry == nullptr)
    {
        return {};
    }
    return {entry->handler != MenuHandler::None, IsChecked(*entry, m_Workbench)};
}
}
