#pragma once
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace tessarine
{
class IACommand;
class IAFittingCommand;
class IAReconstructionCommand;
class IASmoothCommand;
class IAReconstructionSmoothCommand;
class IncrementalConnection;
class IAReconstructionSmoothTwoStepCommand;
class MANCommandManager;
class Open3DView;

/// Holds the two stores of one document, and is the only door to the commands on them: an operation here is
/// one entry of the menu, or one word of a batch run.
///
/// Every command operation follows one recipe: create a command by id, hand it what it needs, run it, keep it
/// in the history, redraw. An operation throws what ends its command; the stores are then in no defined
/// state, and whoever runs the operation for the user puts them back (IAWorkbench::Perform).
class IAController
{
public:
    IAController() = default;
    IAController(const IAController&) = delete;
    IAController& operator=(const IAController&) = delete;

    /// Joins the controller to a view, and the view to the controller and its stores.
    void SetView(Open3DView* view);
    void SetCommandManager(MANCommandManager* manager) { m_pCommandManager = manager; }

    /// Empties the stores before an import. Lights, cut faces, materials and the list of the selection stay.
    void ResetModels();
    /// Empties the stores of a new document, and of a model that is built anew.
    void ClearModels();
    /// How often the stores have been emptied: another number means another model.
    unsigned GetModelNumber() const { return m_nModelNumber; }
    void Redraw();

    MANSceneManager& GetSceneManager() { return m_SceneManager; }
    const MANSceneManager& GetSceneManager() const { return m_SceneManager; }
    MANBrepElementManager& GetElementManager() { return m_ElementManager; }
    const MANBrepElementManager& GetElementManager() const { return m_ElementManager; }
    MANSceneGroup* GetRootGroup() const { return m_SceneManager.GetRootGroup(); }

    /// Asks for an OBJ file and puts its model in the place of the current one. Nothing when the user
    /// cancels.
    ///
    /// Fails   A name that ends in neither ".obj" nor ".OBJ" gives a message box; the models are untouched.
    void ImportObj();
    /// Asks for a name and writes the visible solids there.
    ///
    /// Kept    The file lands in the folder that the dialog made the current one.
    void ExportObj();

    void SubdivideLoop();
    /// Asks for the threshold. Nothing when the user cancels.
    void SubdivideAdaptive();
    void ProjectSamples();
    void BuildInitialMesh();
    /// On the command that the last BuildInitialMesh kept: its surface at a level as a new solid, and its field as
    /// coloured points. Failure where there is none.
    void GenerateMesh(float level);
    void ShowField();
    void RefineHierarchical();
    /// A fresh hierarchical command: takes solid and cloud as its run does, and fits to the cloud the vertices, or the
    /// limit surface of Loop subdivision.
    void FitVertices();
    void FitLimitSurface();
    void RefineIncremental();
    /// On the command that the last RefineIncremental kept: so many edges of its front, or all; and its state as a
    /// file. Failure where there is none for this model.
    void ConnectNext(std::uint64_t steps);
    void ConnectAll();
    void SaveEnvironment();
    void RefineTwoStep();
    void RefineEnergy();
    /// Divides the space of a cloud; no entry of the menu leads here.
    void BuildOctree();
    /// @param mode 1 and 3 swap edges, 2 removes those without length
    void OptimizeMesh(int mode);
    /// @param ratio the share of the faces that goes, 0 to 1: the menu's "20%" is 0.8
    void Simplify(float ratio);
    /// Opens the material dialog for a copy of the first selected solid's material.
    void SetMaterialOfSelection();
    void GenerateSplats();
    /// The steps of the command that the last RefineTwoStep on this model kept: one that brings further points into the
    /// mesh, one that puts the vertices back, and one that moves them again. A step that fails leaves the command's own
    /// state as it was. Where none is kept, a line on the console and a failure say what to run first.
    void TwoStepFirst();
    void TwoStepSecond();
    void TwoStepThird();

    /// The last command of its kind, which the history owns; null before the first, and for
    /// another model than it ran on.
    IAReconstructionSmoothCommand* GetIncrementalCommand() const { return m_pIncrementalCommand; }
    IAReconstructionSmoothTwoStepCommand* GetTwoStepCommand() const { return m_pTwoStepCommand; }
    /// Failure, saying what to do, before the first.
    IAReconstructionCommand& GetReconstructionCommand() const;

    using ElementCheckpoint = std::optional<MANBrepElementManager::Checkpoint>;

    /// Where the next ResetModels or ClearModels moves the elements instead of destroying them, as long as nothing
    /// is there; null ends it.
    void SetElementsAside(ElementCheckpoint* place) { m_pElementsAside = place; }

    /// What a command can change here, beside the stores.
    struct Checkpoint
    {
        IAReconstructionSmoothCommand* incrementalCommand = nullptr;
        std::shared_ptr<const IncrementalConnection> connection; ///< of the incremental command
        IAReconstructionSmoothTwoStepCommand* twoStepCommand = nullptr;
        IAReconstructionCommand* reconstructionCommand = nullptr;
    };
    Checkpoint Save() const;
    void Restore(const Checkpoint& checkpoint) noexcept;

private:
    template <class TCommand, class THandOver>
    TCommand* Run(unsigned nCommandID, THandOver handOver);
    template <class TCommand, class THandOver, class TRun>
    TCommand* Run(unsigned nCommandID, THandOver handOver, TRun run);
    void KeepAndRedraw(std::unique_ptr<IACommand> command);
    void HandStores(IAFittingCommand& command);
    void RunHierarchical(const std::function<void(IASmoothCommand&)>& run);
    IAReconstructionSmoothCommand& GetLiveIncrementalCommand() const;
    void RunTwoStep(const char* name, void (IAReconstructionSmoothTwoStepCommand::*step)());
    void EmptyElements();

    MANCommandManager* m_pCommandManager = nullptr;
    Open3DView* m_pView = nullptr;
    MANSceneManager m_SceneManager;
    MANBrepElementManager m_ElementManager;
    IAReconstructionSmoothCommand* m_pIncrementalCommand = nullptr;
    IAReconstructionSmoothTwoStepCommand* m_pTwoStepCommand = nullptr; ///< of the model that it ran on
    IAReconstructionCommand* m_pReconstructionCommand = nullptr;
    ElementCheckpoint* m_pElementsAside = nullptr;
    unsigned m_nModelNumber = 0;
};
}
