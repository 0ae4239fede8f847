#include "FaultCases.h"
#include "Resources.h"
#include "resource.h"
#include <utility>

namespace tessarine
{
namespace
{
using enum FaultOutcome;

// The middle of the view, 100 pixels wide, looks at the model.
constexpr char kModel[] = "import model.obj ";
constexpr char kFacePicked[] =
    "import model.obj menu 32788 mouse-move 50 50 left-down 50 50 left-up 50 50 menu 32810 ";
constexpr char kVertexPicked[] = "import model.obj camera 3 3 3 0 0 0 menu 32786 mouse-move 50 50 left-down "
                                 "50 50 menu 32809 ";
constexpr char kSolidPicked[] = "import model.obj menu 32789 mouse-move 50 50 left-down 50 50 menu 32814 ";

// Of the runs that take long.
constexpr int kSome = 100;
constexpr int kFew = 30;
constexpr int kLeast = 6;

FaultCase OnModel(const std::string& operation)
{
    return {operation, kModel, operation};
}

FaultCase OnTorus(const std::string& operation)
{
    return {operation + " of 2000 faces", "import torus.obj", operation, kFew};
}

FaultCase Behind(const std::string& setup, const std::string& operation, int most = kAllPlaces)
{
    return {operation, setup, operation, most};
}

FaultCase Writing(const std::string& setup, const std::string& operation, const std::string& folder,
                  int most = kAllPlaces)
{
    return {operation, setup, operation, most, Nothing, folder};
}

std::vector<FaultCase> ListOperations()
{
    const std::string model = kModel;
    return {
        OnModel("new"),
        {"import", model, "import model.obj", kAllPlaces, Nothing, {}, true},
        Writing(model, "export out/a.obj", "out"),
        Writing(model, "report out/r.json", "out"),
        Writing(model, "dump out/d.json", "out"),
        OnModel("subdivide-loop"),
        OnModel("subdivide-adaptive 0.1"),
        OnModel("simplify 0.5"),
        OnModel("optimize 1"),
        OnModel("optimize 2"),
        OnModel("optimize 3"),
        OnModel("refine-hierarchical"),
        Writing(model, "fit-vertices", "data", kSome),
        OnModel("refine-incremental"),
        OnModel("refine-two-step"),
        OnModel("refine-energy"),
        OnModel("build-octree"),
        OnModel("generate-splats"),
        OnModel("triangle-quality"),
        Behind(model + "subdivide-loop", "limit-point 0 0.25 0.5"),
        OnModel("camera 3 3 3 0 0 0"),
        OnModel("tool 67108867"),
        OnModel("status"),
        Behind(model + "refine-two-step", "two-step-first"),
        Behind(model + "refine-two-step two-step-first", "two-step-second"),
        Behind(model + "refine-two-step two-step-first two-step-second", "two-step-third"),
        Behind(model + "refine-incremental", "connect-next"),
        Behind(model + "refine-incremental", "connect-next all"),
        Writing(model + "refine-incremental", "save-environment", "data"),
        Behind(model + "menu 32789 mouse-move 50 50 left-down 50 50", "set-material"),
        Writing("", "solve a.mtx b.vec out/x.vec", "out"),
        Writing("", "filter-image disc.bmp out/f.png", "out"),
        Writing("", "filter-image disc.bmp out/f.bmp", "out"),
        Writing("", "distance-2d disc.bmp out/d.bin", "out"),
        Writing("", "make-eigen-table out/e.dat 4", "out"),
        Writing(model + "subdivide-loop", "fit-limit-surface", "data", kFew),
        Writing(model, "build-initial-mesh", ".", kFew),
        Behind("build-initial-mesh", "generate-mesh 0", kLeast),
        Behind("build-initial-mesh", "show-field", kLeast),
        Writing("build-initial-mesh", "dump-field out/f.bin", "out", kLeast),
        Writing(model, "render out/p.png", "out"),
        Writing("", "project-samples", "data1", kLeast),
        OnTorus("subdivide-loop"),
        OnTorus("subdivide-adaptive 0.001"),
        OnTorus("simplify 0.8"),
        OnTorus("optimize 1"),
        OnTorus("optimize 2"),
        OnTorus("optimize 3"),
        OnTorus("refine-hierarchical"),
        OnTorus("fit-vertices"),
        OnTorus("refine-energy"),
        OnTorus("import torus.obj"),
    };
}

/// Every event of the view, sent to the tool that a setup has left on top.
void AddEvents(std::vector<FaultCase>& cases, const std::string& setup)
{
    using Kind = ToolEvent::Kind;
    constexpr std::pair<const char*, Kind> kKinds[] = {{"mouse-move", Kind::MouseMove},
                                                       {"left-down", Kind::LeftButtonDown},
                                                       {"left-up", Kind::LeftButtonUp},
                                                       {"right-up", Kind::RightButtonUp},
                                                       {"right-down", Kind::RightButtonDown},
                                                       {"key-down", Kind::KeyDown},
                                                       {"key-up", Kind::KeyUp},
                                                       {"set-cursor", Kind::SetCursor}};
    for (const auto& [name, kind] : kKinds)
    {
        FaultCase added{std::string(name) + " behind " + setup, setup, name, kAllPlaces, WholeStep};
        added.event = {.kind = kind, .x = 60, .y = 50, .key = 'A'};
        cases.push_back(std::move(added));
    }
}

/// Every tool in each of its states.
std::vector<FaultCase> ListEvents()
{
    const std::string model = kModel;
    std::vector<FaultCase> events;
    AddEvents(events, model + "mouse-move 5 5");
    AddEvents(events, model + "mouse-move 50 50");
    AddEvents(events, model + "menu 32788 mouse-move 50 50");
    for (const std::string picked : {kFacePicked, kVertexPicked, kSolidPicked})
    {
        AddEvents(events, picked);
        AddEvents(events, picked + "mouse-move 50 50");
        AddEvents(events, picked + "mouse-move 50 50 mouse-move 55 50");
    }
    for (const char* tool : {"67108865", "67108866", "67108867", "67108868"})
    {
        const std::string taken = model + "tool " + tool;
        AddEvents(events, taken);
        AddEvents(events, taken + " left-down 50 50 mouse-move 55 50");
    }
    AddEvents(events, model + "menu 32836");
    AddEvents(events, model + "menu 32836 left-down 20 20 mouse-move 60 60");
    return events;
}

/// What ends a move that is under way, or another tool's drag.
std::vector<FaultCase> ListInterruptions()
{
    const std::string moving = std::string(kSolidPicked) + "mouse-move 50 50 mouse-move 55 50 ";
    std::vector<FaultCase> cases;
    for (const char* operation :
         {"new", "subdivide-loop", "subdivide-adaptive 0.1", "simplify 0.5", "optimize 1",
          "refine-hierarchical", "refine-incremental", "refine-two-step", "refine-energy", "build-octree",
          "generate-splats", "set-material", "menu 32836"})
    {
        cases.push_back({std::string(operation) + " with a move under way", moving, operation});
    }
    cases.push_back(
        {"import with a move under way", moving, "import model.obj", kAllPlaces, Nothing, {}, true});
    cases.push_back({"two-step-first with a move under way",
                     std::string(kModel) +
                         "refine-two-step menu 32789 mouse-move 50 50 left-down 50 50 menu 32814 "
                         "mouse-move 50 50 mouse-move 55 50",
                     "two-step-first"});
    for (const char* tool : {"67108865", "67108866", "67108867", "67108868"})
    {
        const std::string other = std::string(tool) == "67108865" ? "67108866" : "67108865";
        cases.push_back({"tool " + other + " in a drag of " + tool,
                         std::string(kModel) + "tool " + tool + " left-down 50 50 mouse-move 55 50",
                         "tool " + other, kAllPlaces, WholeStep});
    }
    cases.push_back({"tool 67108865 in a drag of a splat",
                     std::string(kModel) + "menu 32836 left-down 20 20 mouse-move 60 60", "tool 67108865",
                     kAllPlaces, WholeStep});
    return cases;
}

/// What an entry of the menus needs, to come to its end.
std::string SetupOf(int id)
{
    const std::string model = kModel;
    const std::string pick = "mouse-move 50 50 left-down 50 50";
    if (id >= ResourceID::MoveVertexX && id <= ResourceID::MoveVertexNormal)
    {
        return model + "camera 3 3 3 0 0 0 menu 32786 " + pick;
    }
    if (id >= ResourceID::MoveFaceX && id <= ResourceID::MoveFaceNormal)
    {
        return model + "menu 32788 " + pick;
    }
    switch (id)
    {
    case ResourceID::ShowOctree: return model + "build-octree";
    case ResourceID::ShowPointNormals: return model; // no cloud: no point without a normal
    default: return model + "refine-two-step two-step-first " + pick;
    }
}
}

const std::vector<FaultCase>& GetFaultCases()
{
    static const std::vector<FaultCase> cases = []
    {
        std::vector<FaultCase> all = ListOperations();
        for (const std::vector<FaultCase>& more : {ListInterruptions(), ListEvents()})
        {
            all.insert(all.end(), more.begin(), more.end());
        }
        return all;
    }();
    return cases;
}

std::vector<FaultCase> MakeMenuCases()
{
    std::vector<FaultCase> cases;
    for (const MenuEntry& entry : GetMenuEntries())
    {
        // The projection has a case among the operations: it takes a second.
        if (entry.handler != MenuHandler::None && entry.id != ResourceID::ProjectSamples)
        {
            const std::string operation = "menu " + std::to_string(entry.id);
            const bool isLong = entry.id == ResourceID::BuildInitialMesh;
            cases.push_back({operation, SetupOf(entry.id), operation, isLong ? kLeast : kAllPlaces});
        }
    }
    return cases;
}
}
