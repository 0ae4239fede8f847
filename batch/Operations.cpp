#include "Operations.h"
#include <algorithm>

namespace tessarine
{
namespace
{
using Group = OperationGroup;

constexpr Operation kOperations[] = {
    {"new", "", Group::Document, "starts an empty document", nullptr},
    {"import", "FILE", Group::Document, "replaces the document's model by the one of an .obj file", nullptr},
    {"export", "FILE", Group::Document, "writes the visible solids of the document to an .obj file", nullptr},

    {"subdivide-loop", "", Group::MenuCommand, "one Loop subdivision of the current model", nullptr},
    {"subdivide-adaptive", "AREA", Group::MenuCommand, "splits the faces with an area measure above AREA", nullptr},
    {"simplify", "RATIO", Group::MenuCommand, "takes away the share RATIO of the faces", nullptr},
    {"optimize", "MODE", Group::MenuCommand, "1 and 3: swaps diagonals; 2: removes edges without length", nullptr},
    {"project-samples", "", Group::MenuCommand, "renders views of the model into images", nullptr},
    {"build-initial-mesh", "", Group::MenuCommand, "distance field of images and cloud, and a mesh of it", nullptr},
    {"refine-hierarchical", "", Group::MenuCommand, "fits the mesh to the cloud by subdivision", nullptr},
    {"refine-incremental", "", Group::MenuCommand, "fits the mesh by connecting points one by one", nullptr},
    {"refine-two-step", "", Group::MenuCommand, "starts the two-step correspondence", nullptr},
    {"two-step-first", "", Group::MenuCommand, "first step of the command kept from refine-two-step", nullptr},
    {"two-step-second", "", Group::MenuCommand, "second step of the command kept from refine-two-step", nullptr},
    {"two-step-third", "", Group::MenuCommand, "third step of the command kept from refine-two-step", nullptr},
    {"refine-energy", "", Group::MenuCommand, "fits the mesh by an energy function", nullptr},
    {"generate-splats", "", Group::MenuCommand, "makes the cut faces of the model's splats", nullptr},
    {"set-material", "", Group::MenuCommand, "gives the selected solids the material of the dialog", nullptr},
    {"menu", "ID", Group::MenuCommand, "runs the menu, toolbar or pop-up command of this number", nullptr},

    {"generate-mesh", "LEVEL", Group::KeptCommand, "mesh of the kept distance field at LEVEL", nullptr},
    {"show-field", "", Group::KeptCommand, "shows the kept distance field", nullptr},
    {"connect-next", "[N|all]", Group::KeptCommand, "N steps (1) of the kept incremental command, or all", nullptr},
    {"save-environment", "", Group::KeptCommand, "saves the kept incremental command's environment", nullptr},
    {"fit-vertices", "", Group::KeptCommand, "fits the vertices to the cloud", nullptr},
    {"fit-limit-surface", "", Group::KeptCommand, "fits the limit surface to the cloud", nullptr},
    {"build-octree", "", Group::KeptCommand, "divides the space of the cloud", nullptr},
    {"triangle-quality", "", Group::KeptCommand, "prints min, median, mean and max of the faces' quality", nullptr},
    {"make-eigen-table", "FILE [NMAX]", Group::KeptCommand, "writes the loop evaluation data up to valence NMAX (50)",
     nullptr},
    {"limit-point", "FACE V W", Group::KeptCommand, "prints a point of the limit surface and its control vertices",
     nullptr},
    {"solve", "A.mtx B.vec X.vec [ITOL TOL ITMAX]", Group::KeptCommand,
     "solves a sparse system by biconjugate gradients (3 1e-7 200)", nullptr},
    {"filter-image", "IN OUT", Group::KeptCommand, "filters an image by runs and fills its background", nullptr},
    {"distance-2d", "IMAGE OUT", Group::KeptCommand, "writes the distance field of an image", nullptr},

    {"camera", "EX EY EZ TX TY TZ [UX UY UZ]", Group::ViewAndInput, "eye, target and up vector (0 1 0)", nullptr},
    {"tool", "ID", Group::ViewAndInput, "makes the tool of this number the current one", nullptr},
    {"mouse-move", "X Y", Group::ViewAndInput, "moves the mouse to a pixel of the view, y down", nullptr},
    {"left-down", "X Y", Group::ViewAndInput, "presses the left button", nullptr},
    {"left-up", "X Y", Group::ViewAndInput, "releases the left button", nullptr},
    {"right-down", "X Y", Group::ViewAndInput, "presses the right button", nullptr},
    {"right-up", "X Y", Group::ViewAndInput, "releases the right button", nullptr},
    {"render", "FILE", Group::ViewAndInput, "writes one frame as PNG", nullptr},
    {"status", "", Group::ViewAndInput, "prints the seven panes of the status bar, one a line", nullptr},

    {"report", "FILE", Group::Result, "writes what the document holds, as a page of JSON (- is standard output)", nullptr},
    {"dump", "FILE", Group::Result, "writes everything that the document holds, as JSON (- is standard output)", nullptr},
    {"dump-field", "FILE", Group::Result, "writes the kept distance field", nullptr},
};
}

std::span<const Operation> GetOperations() { return kOperations; }

const Operation* FindOperation(std::string_view name)
{
    const auto* found = std::find_if(std::begin(kOperations), std::end(kOperations),
                                     [name](const Operation& operation) { return operation.name == name; });
    return found != std::end(kOperations) ? found : nullptr;
}

std::string GetUsage(const Operation& operation)
{
    std::string usage(operation.name);
    if (!operation.arguments.empty())
    {
        usage += ' ';
        usage += operation.arguments;
    }
    return usage;
}
}
