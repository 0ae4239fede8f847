#include "MANCommandManager.h"
#include "Assert.h"
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

struct CommandClass
{
    unsigned id;
    CommandMaker make;
};

constexpr CommandClass kCommandClasses[] = {
    {CommandID::CameraMove, Make<IACameraMoveCommand>},
    {CommandID::CameraZoom, Make<IACameraZoomCommand>},
    {CommandID::CameraOrbit, Make<IACameraOrbitCommand>},
    {CommandID::CameraAround, Make<IACameraAroundCommand>},
    {CommandID::SubLOOP, Make<IASubLOOPCommand>},
    {CommandID::SubAdaptive, Make<IASubAdaptiveCommand>},
    {CommandID::Select, Make<IASelectCommand>},
    {CommandID::DrawSplat, Make<IADrawSplatCommand>},
    {CommandID::GenerateSplat, Make<IAGenerateSplatCommand>},
    {CommandID::Projection, Make<IAProjectionCommand>},
    {CommandID::Reconstruction, Make<IAReconstructionCommand>},
    {CommandID::Smooth, Make<IASmoothCommand>},
    {CommandID::ReconstructionSmooth, Make<IAReconstructionSmoothCommand>},
    {CommandID::ReconstructionSmoothTwoStep, Make<IAReconstructionSmoothTwoStepCommand>},
    {CommandID::ReconstructionSmoothEnergyFunction, Make<IAReconstructionSmoothEnergyFunctionCommand>},
    {CommandID::Simplify, Make<IASimplifyCommand>},
    {CommandID::RefineMesh, Make<IARefineMeshCommand>},
    {CommandID::MoveVertex, Make<IAMoveVertexCommand>},
    {CommandID::MoveFace, Make<IAMoveFaceCommand>},
    {CommandID::MoveSolid, Make<IAMoveSolidCommand>},
    {CommandID::SetMaterial, Make<IASetMaterialCommand>},
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
