#include "MANCommandManager.h"
#include "Assert.h"
#include "Failure.h"
#include "IACameraAroundCommand.h"
#include "IACameraMoveCommand.h"
#include "IACameraOrbitCommand.h"
#include "IACameraZoomCommand.h"
#include "IADrawSplatCommand.h"
#include "IAGenerateSplatCommand.h"
#include "IAMoveFaceCommand.h"
#include "IAMoveSolidCommand.h"
#include "IAMoveVertexCommand.h"
#include "IAProjectionCommand.h"
#include "IAReconstructionCommand.h"
#include "IAReconstructionSmoothCommand.h"
#include "IAReconstructionSmoothEnergyFunctionCommand.h"
#include "IAReconstructionSmoothTwoStepCommand.h"
#include "IARefineMeshCommand.h"
#include "IASelectCommand.h"
#include "IASetMaterialCommand.h"
#include "IASimplifyCommand.h"
#include "IASmoothCommand.h"
#include "IASubAdaptiveCommand.h"
#include "IASubLOOPCommand.h"
#include "Platform.h"
#include <algorithm>
#include <string>
#include <utility>

namespace tessarine
{
namespace
{
using CommandMaker = std::unique_ptr<IACommand> (*)();

template <class TCommand>
std::unique_ptr<IACommand> Make()
{
    return std::make_unique<TCommand>();
}

/// A class of commands. One that comes with a later version has no maker.
struct CommandClass
{
    unsigned id;
    const char* operation; ///< what it does, to the user
    CommandMaker make;
};

constexpr CommandClass kCommandClasses[] = {
    {CommandID::CameraMove, "panning the camera", Make<IACameraMoveCommand>},
    {CommandID::CameraZoom, "zooming the camera", Make<IACameraZoomCommand>},
    {CommandID::CameraOrbit, "orbiting the model", Make<IACameraOrbitCommand>},
    {CommandID::CameraAround, "looking around", Make<IACameraAroundCommand>},
    {CommandID::SubLOOP, "Loop subdivision", Make<IASubLOOPCommand>},
    {CommandID::SubAdaptive, "adaptive subdivision", Make<IASubAdaptiveCommand>},
    {CommandID::Select, "selecting elements", Make<IASelectCommand>},
    {CommandID::DrawSplat, "drawing a splat", Make<IADrawSplatCommand>},
    {CommandID::GenerateSplat, "generating splats", Make<IAGenerateSplatCommand>},
    {CommandID::Projection, "projection sampling", Make<IAProjectionCommand>},
    {CommandID::Reconstruction, "building the initial mesh", Make<IAReconstructionCommand>},
    {CommandID::Smooth, "hierarchical refinement", Make<IASmoothCommand>},
    {CommandID::ReconstructionSmooth, "incremental refinement", Make<IAReconstructionSmoothCommand>},
    {CommandID::ReconstructionSmoothTwoStep, "two-step refinement",
     Make<IAReconstructionSmoothTwoStepCommand>},
    {CommandID::ReconstructionSmoothEnergyFunction, "energy refinement",
     Make<IAReconstructionSmoothEnergyFunctionCommand>},
    {CommandID::Simplify, "simplification", Make<IASimplifyCommand>},
    {CommandID::RefineMesh, "mesh optimisation", Make<IARefineMeshCommand>},
    {CommandID::MoveVertex, "moving vertices", Make<IAMoveVertexCommand>},
    {CommandID::MoveFace, "moving faces", Make<IAMoveFaceCommand>},
    {CommandID::MoveSolid, "moving solids", Make<IAMoveSolidCommand>},
    {CommandID::SetMaterial, "setting a material", Make<IASetMaterialCommand>},
};
}

MANCommandManager::~MANCommandManager()
{
    for (auto& command : m_History)
    {
        command.reset();
    }
}

std::unique_ptr<IACommand> MANCommandManager::CreateCommand(unsigned id)
{
    const auto found = std::find_if(std::begin(kCommandClasses), std::end(kCommandClasses),
                                    [id](const CommandClass& entry) { return entry.id == id; });
    if (found == std::end(kCommandClasses))
    {
        ShowMessage("This command does not exist!");
        return nullptr;
    }
    if (found->make == nullptr)
    {
        throw Failure(std::string(found->operation) + " comes with a later version of Tessarine");
    }
    return found->make();
}

void MANCommandManager::StoreCommand(std::unique_ptr<IACommand>&& command)
{
    ASSERT(command != nullptr);
    // Kept: the truncation of an undo stack that was never finished. The count keeps up with the size, so
    // that there is nothing to cut.
    while (m_nCurrent < static_cast<int>(m_History.size()) - 1)
    {
        m_History.pop_back();
    }
    if (command->IsUndoable())
    {
        m_History.push_back(std::move(command));
        ++m_nCurrent;
    }
}

void MANCommandManager::Restore(const Checkpoint& checkpoint) noexcept
{
    while (m_History.size() > checkpoint.size)
    {
        m_History.pop_back();
    }
    m_nCurrent = checkpoint.current;
}
}
