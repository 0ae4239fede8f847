#pragma once
#include "IAController.h"
#include "MANCommandManager.h"
#include "Open3DView.h"
#include <cstdint>
#include <optional>

namespace tessarine
{
/// What an operation may do to the model: how much has to be kept to go back to.
enum class Effect
{
    None,         ///< the model stays
    ChangesModel, ///< anything in the stores may change
    Adds, ///< adds solids or materials, and changes the scene; of what is there only which solids are shown
    ReplacesModel, ///< changes nothing before it has called IAController::ResetModels or ClearModels
    ReplacesDocument ///< leaves this controller and its model alone, and has the view forget what it shows over it
};

/// The model, the view's overlays and the history as they were before an operation.
/// It holds for one controller; making it may fail for want of memory, and then nothing has changed.
class IACheckpoint
{
public:
    IACheckpoint(IAController& controller, Open3DView& view, MANCommandManager& commands, Effect effect);
    ~IACheckpoint();
    IACheckpoint(const IACheckpoint&) = delete;
    IACheckpoint& operator=(const IACheckpoint&) = delete;

    /// Puts everything back, every record and node at its old address. Allocates nothing. Once only.
    void Restore() noexcept;

private:
    IAController& m_Controller;
    Open3DView& m_View;
    MANCommandManager& m_Commands;
    Effect m_Effect;
    std::uint32_t m_nDisplayFlags; ///< a switch that ends in a frame which fails goes back
    IAController::Checkpoint m_KeptCommands;
    MANCommandManager::Checkpoint m_History;
    std::optional<Open3DView::Checkpoint> m_Overlays;
    std::optional<MANSceneManager::Checkpoint> m_Scene;
    IAController::ElementCheckpoint m_Elements;
    std::optional<MANBrepElementManager::Mark> m_Mark; ///< in place of the elements
};
}
