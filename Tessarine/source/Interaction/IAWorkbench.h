#pragma once
#include "IACheckpoint.h"
#include "IAController.h"
#include "MANCommandManager.h"
#include "MANToolsManager.h"
#include "Open3DView.h"
#include "ToolEvent.h"
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tessarine
{
class IARecovery;

/// What the document and the view do together, without any window: the one controller of the current
/// document, the view, the tools and the command history that outlive it, and the boundary that every operation
/// of the user passes.
class IAWorkbench
{
public:
    /// With an empty document, and the select tool on top.
    IAWorkbench();
    IAWorkbench(const IAWorkbench&) = delete;
    IAWorkbench& operator=(const IAWorkbench&) = delete;

    IAController& GetController() { return *m_pController; }
    const IAController& GetController() const { return *m_pController; }
    Open3DView& GetView() { return m_View; }
    const Open3DView& GetView() const { return m_View; }
    MANCommandManager& GetCommandManager() { return m_CommandManager; }
    const MANCommandManager& GetCommandManager() const { return m_CommandManager; }
    MANToolsManager& GetToolsManager() { return m_ToolsManager; }
    const MANToolsManager& GetToolsManager() const { return m_ToolsManager; }

    /// Gets the view its surface, with the state that stays for all frames.
    /// @return 0; -1 where there is none, see Open3DView::Create
    int CreateView();
    /// Frees the surface.
    void DestroyView() { m_View.Destroy(); }

    /// Runs what a user asked for, and alone catches what ends it: nothing that a file or a user supplies
    /// ends the process. A move that is under way ends behind an operation that may have changed the model, and
    /// standard error says so: its way back leads to a model that is no more.
    ///
    /// Fails   The user is told once (Platform::ShowFailure), and model, selection, overlays and history are
    ///         exactly as before: same records at the same addresses, same ids, same order.
    /// @param operation names it to the user
    /// @return whether it ran to its end
    bool Perform(const std::string& operation, Effect effect, const std::function<void()>& action);

    /// Passes an event of the view to the tool on top, and catches as Perform does.
    ///
    /// Fails   The user is told why, and nothing of the model: what the tool has done by then stays, where only the
    ///         frame failed all of it, be it to selection, hover mark, positions or history. A tool changes the
    ///         records in steps that are taken as a whole or not at all.
    /// @return whether the tool ran to its end
    bool SendEvent(const ToolEvent& event);

    /// From now on the model is kept for the case that the process is ended; null ends that.
    void SetRecovery(IARecovery* recovery) { m_pRecovery = recovery; }

    // What follows throws, and is to be run through Perform.

    /// A fresh controller takes the place of the old one; camera, display flags and history stay. A move that is
    /// under way is taken back, and a splat that is being drawn is dropped.
    void NewDocument();

    /// Effect::ReplacesModel. The controller's ImportObj; the current folder is afterwards what it was.
    void ImportObj();
    /// Effect::None. The same for ExportObj.
    void ExportObj();

    /// Effect::None. The framework's file commands: they ask for a file, and read and write nothing, as
    /// models come and go by ImportObj and ExportObj.
    /// @return what the user chose; nothing when he cancelled
    std::optional<std::filesystem::path> OpenDocument();
    std::optional<std::filesystem::path> SaveDocument();

private:
    void PassToTool(const ToolEvent& event);
    bool IsSelectToolOnTop() const;
    void ForgetPicks();
    void PreparePicks() noexcept;
    bool EndMoves() noexcept;
    bool RunOrRestore(Effect effect, const std::function<void()>& action);
    void ConnectController(IAController& controller);
    void KeepModel() noexcept;
    void NoteOutcome(Effect effect, unsigned modelBefore);
    bool IsMoveUnderWay() const;
    void RedrawAfterFailure() noexcept;

    // The history goes last: a command may hold what the overlays of the view point at.
    MANCommandManager m_CommandManager;
    Open3DView m_View;
    std::unique_ptr<IAController> m_pController;
    MANToolsManager m_ToolsManager;
    IARecovery* m_pRecovery = nullptr;
    unsigned m_nImportedModel = 0; ///< the number of the last model that came whole from a file
};
}
