#include "FaultCases.h"
#include "Resources.h"
#include "resource.h"

namespace tessarine
{
namespace
{
using enum FaultOutcome;

// The middle of the view, 100 pixels wide, looks at the model.
constexpr char kModel[] = "import model.obj ";
constexpr char kFacePicked[] =
    "import model.obj menu 32788 mouse-move 50 50 left-down 50 50 left-up 50 50 menu 32810 mouse-move 50 50 ";
constexpr char kVertexPicked[] = "import model.obj camera 3 3 3 0 0 0 menu 32786 mouse-move 50 50 left-down "
                                 "50 50 menu 32809 mouse-move 50 50 ";
constexpr char kSolidPicked[] =
    "import model.obj menu 32789 mouse-move 50 50 left-down 50 50 menu 32814 mouse-move 50 50 ";

FaultCase OnModel(const std::string& operation, int most = 400)
{
    return {operation, kModel, operation, most};
}

FaultCase OnTorus(const std::string& operation)
{
    return {operation + " of 2000 faces", "import torus.obj", operation, 8};
}

FaultCase Behind(const std::string& setup, const std::string& operation, int most = 100)
{
    return {operation, setup, operation, most};
}

FaultCase Writing(const std::string& setup, const std::string& operation, const std::string& folder,
                  int most = 100)
{
    return {operation, setup, operation, most, Nothing, folder};
}

FaultCase Event(const std::string& setup, const std::string& operation)
{
    return {operation + " behind " + setup, setup, operation, 60, WholeStep};
}

std::vector<FaultCase> ListOperations()
{
    const std::string model = kModel;
    return {
        OnModel("new"),
        {"new with a move under way", std::string(kFacePicked) + "mouse-move 60 50", "new"},
        {"import", model, "import model.obj", 400, Nothing, {}, true},
        Writing(model, "export out/a.obj", "out", 400),
        Writing(model, "report out/r.json", "out"),
        Writing(model, "dump out/d.json", "out"),
        OnModel("subdivide-loop"),
        OnModel("subdivide-adaptive 0.1"),
        OnModel("simplify 0.5"),
        OnModel("optimize 1"),
        OnModel("optimize 2"),
        OnModel("optimize 3"),
        OnModel("refine-hierarchical", 60),
        Writing(model, "fit-vertices", "data", 60),
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
        Writing("", "make-eigen-table out/e.dat 4", "out", 10),
        Writing(model + "subdivide-loop", "fit-limit-surface", "data", 6),
        Writing(model, "build-initial-mesh", ".", 3),
        Behind("build-initial-mesh", "generate-mesh 0", 3),
        Behind("build-initial-mesh", "show-field", 3),
        Writing("build-initial-mesh", "dump-field out/f.bin", "out", 3),
        Writing(model, "render out/p.png", "out", 10),
        Writing("", "project-samples", "data1", 1),
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

std::vector<FaultCase> ListEvents()
{
    const std::string model = kModel;
    std::vector<FaultCase> events{
        Event(model, "mouse-move 50 50"),
        Event(model + "mouse-move 50 50", "left-down 50 50"),
        Event(model + "menu 32788", "right-down 50 50"),
        Event(model, "right-up 50 50"),
    };
    for (const std::string picked : {kFacePicked, kVertexPicked, kSolidPicked})
    {
        events.push_back(Event(picked, "mouse-move 60 50"));
        events.push_back(Event(picked + "mouse-move 60 50", "mouse-move 70 50"));
        events.push_back(Event(picked + "mouse-move 60 50", "left-down 60 50"));
        events.push_back(Event(picked + "mouse-move 60 50", "right-down 60 50"));
    }
    for (const char* tool : {"67108865", "67108866", "67108867", "67108868"})
    {
        const std::string drag = model + "tool " + tool + " left-down 50 50 ";
        events.push_back(Event(drag, "mouse-move 60 55"));
        events.push_back(Event(drag + "mouse-move 60 55", "left-up 60 55"));
    }
    const std::string splat = model + "menu 32836 left-down 20 20 mouse-move 60 60 ";
    events.push_back(Event(splat, "mouse-move 70 70"));
    events.push_back(Event(splat, "left-up 60 60"));
    events.push_back(Event(splat, "right-down 60 60"));
    return events;
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
        const std::vector<FaultCase> events = ListEvents();
        all.insert(all.end(), events.begin(), events.end());
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
            cases.push_back({operation, SetupOf(entry.id), operation, isLong ? 2 : 16});
        }
    }
    return cases;
}
}
