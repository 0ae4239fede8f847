#include "IACommandRouter.h"
#include "Failure.h"
#include "IAWorkbench.h"
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

// clang-format off
constexpr Route kRoutes[] = {
    {ResourceID::FileNew, Effect::None, [](IAWorkbench& workbench) { workbench.NewDocument(); }},
    {ResourceID::FileOpen, Effect::None, [](IAWorkbench& workbench) { workbench.OpenDocument(); }},
    {ResourceID::FileSave, Effect::None, [](IAWorkbench& workbench) { workbench.SaveDocument(); }},
    {ResourceID::FileSaveAs, Effect::None, [](IAWorkbench& workbench) { workbench.SaveDocument(); }},
    {ResourceID::ImportObj, Effect::ReplacesModel, [](IAWorkbench& workbench) { workbench.ImportObj(); }},
    {ResourceID::ExportObj, Effect::None, [](IAWorkbench& workbench) { workbench.ExportObj(); }},
    {ResourceID::ShowShaded, Effect::None, [](IAWorkbench&) {}}, // a check mark without a switch
    Command(ResourceID::SubdivideLoop, [](IAWorkbench& workbench) { workbench.GetController().SubdivideLoop(); }),
    Command(ResourceID::SubdivideAdaptive, [](IAWorkbench& workbench) { workbench.GetController().SubdivideAdaptive(); }),
    Command(ResourceID::ProjectSamples, [](IAWorkbench& workbench) { workbench.GetController().ProjectSamples(); }),
    Command(ResourceID::BuildInitialMesh, [](IAWorkbench& workbench) { workbench.GetController().BuildInitialMesh(); }),
    Command(ResourceID::RefineHierarchical, [](IAWorkbench& workbench) { workbench.GetController().RefineHierarchical(); }),
    Command(ResourceID::RefineIncremental, [](IAWorkbench& workbench) { workbench.GetController().RefineIncremental(); }),
    Command(ResourceID::RefineTwoStep, [](IAWorkbench& workbench) { workbench.GetController().RefineTwoStep(); }),
    Command(ResourceID::RefineEnergy, [](IAWorkbench& workbench) { workbench.GetController().RefineEnergy(); }),
    Command(ResourceID::OptimizeMesh1, [](IAWorkbench& workbench) { workbench.GetController().OptimizeMesh(1); }),
    Command(ResourceID::OptimizeMesh2, [](IAWorkbench& workbench) { workbench.GetController().OptimizeMesh(2); }),
    Command(ResourceID::OptimizeMesh3, [](IAWorkbench& workbench) { workbench.GetController().OptimizeMesh(3); }),
    Command(ResourceID::Simplify20, [](IAWorkbench& workbench) { workbench.GetController().Simplify(0.8F); }),
    Command(ResourceID::Simplify50, [](IAWorkbench& workbench) { workbench.GetController().Simplify(0.5F); }),
    Command(ResourceID::Simplify80, [](IAWorkbench& workbench) { workbench.GetController().Simplify(0.2F); }),
    Command(ResourceID::SetMaterial, [](IAWorkbench& workbench) { workbench.GetController().SetMaterialOfSelection(); }),
    Command(ResourceID::GenerateSplats, [](IAWorkbench& workbench) { workbench.GetController().GenerateSplats(); }),
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
    throw Failure(entry->comesLater ? name + " comes with a later version of Tessarine"
                                    : name + " is disabled");
}

bool IsFirstModelVisible(const IAController& controller)
{
    const MANSceneGroup* root = controller.GetRootGroup();
    return root != nullptr && !root->GetChildren().empty() && root->GetChildren().front()->IsVisible();
}

bool IsChecked(const MenuEntry& entry, const IAWorkbench& workbench)
{
    switch (entry.check)
    {
    case MenuCheck::DisplayFlag: return (workbench.GetView().GetDisplayFlags() & entry.checkValue) != 0;
    case MenuCheck::SelectType: return workbench.GetView().GetSelectType() == entry.checkValue;
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
