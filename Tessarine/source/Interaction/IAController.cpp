#include "IAController.h"
#include "Assert.h"
#include "Console.h"
#include "Failure.h"
#include "IACommand.h"
#include "IAGenerateSplatCommand.h"
#include "IAProjectionCommand.h"
#include "IAReconstructionCommand.h"
#include "IAReconstructionSmoothCommand.h"
#include "IAReconstructionSmoothEnergyFunctionCommand.h"
#include "IAReconstructionSmoothOctreeCommand.h"
#include "IAReconstructionSmoothTwoStepCommand.h"
#include "IARefineMeshCommand.h"
#include "IASetMaterialCommand.h"
#include "IASimplifyCommand.h"
#include "IASmoothCommand.h"
#include "IASubAdaptiveCommand.h"
#include "IASubLOOPCommand.h"
#include "IOLoadObj.h"
#include "IOSaveObj.h"
#include "MANCommandManager.h"
#include "Open3DView.h"
#include "Platform.h"
#include <filesystem>
#include <memory>
#include <string>
#include <utility>

namespace tessarine
{
namespace
{
constexpr char kObjExtension[] = ".obj";

/// Kept: these two spellings and no other.
bool HasObjExtension(const std::string& fileName)
{
    return fileName.ends_with(".obj") || fileName.ends_with(".OBJ");
}

/// Puts back what a step does to its command, unless the step comes to its end.
class TwoStepRollback
{
public:
    explicit TwoStepRollback(IAReconstructionSmoothTwoStepCommand& command)
        : m_Command(command), m_Before(command.SaveState())
    {
    }
    ~TwoStepRollback()
    {
        if (m_bArmed)
        {
            m_Command.RestoreState(std::move(m_Before));
        }
    }
    TwoStepRollback(const TwoStepRollback&) = delete;
    TwoStepRollback& operator=(const TwoStepRollback&) = delete;

    void Dismiss() { m_bArmed = false; }

private:
    IAReconstructionSmoothTwoStepCommand& m_Command;
    IAReconstructionSmoothTwoStepCommand::State m_Before;
    bool m_bArmed = true;
};

/// Shows the box that refuses a file's type, and ends the operation.
[[noreturn]] void RefuseFile(const std::string& text, const std::filesystem::path& path)
{
    GetPlatform().ShowMessage("错误", text);
    const std::string name = (path.has_filename() ? path.filename() : path).string();
    throw Failure::AfterMessageBox("the name of a model must end in .obj or .OBJ: " + name);
}
}

void IAController::SetView(Open3DView* view)
{
    m_pView = view;
    view->SetController(this, &m_SceneManager, &m_ElementManager);
}

void IAController::ResetModels()
{
    m_SceneManager.Reset();
    EmptyElements();
}

void IAController::ClearModels()
{
    m_SceneManager.Clear();
    EmptyElements();
}

void IAController::EmptyElements()
{
    ++m_nModelNumber;
    m_pIncrementalCommand = nullptr; // it holds records
    m_pTwoStepCommand = nullptr;     // its solid goes
    if (m_pView != nullptr)
    {
        m_pView->SetNewMesh(nullptr); // its solid goes as well
    }
    if (m_pElementsAside != nullptr && !m_pElementsAside->has_value())
    {
        m_pElementsAside->emplace(m_ElementManager.Take());
    }
    else
    {
        m_ElementManager.Clear();
    }
}

void IAController::Redraw()
{
    ASSERT(m_pView != nullptr);
    m_pView->Redraw();
}

void IAController::ImportObj()
{
    const auto path =
        GetPlatform().AskOpenFile({"Wavefront OBJ(*.obj)|*.obj||所有文件(*.*)|*.*||", kObjExtension});
    if (!path)
    {
        return;
    }
    if (!HasObjExtension(path->filename().string()))
    {
        RefuseFile("不能导入此类型文件!", *path);
    }
    IOLoadObj reader(&m_SceneManager, &m_ElementManager);
    ResetModels();
    reader.Load(path->string());
}

void IAController::ExportObj()
{
    const auto path = GetPlatform().AskSaveFile({"Obj Files(*.obj)|*.obj||", kObjExtension});
    if (!path)
    {
        return;
    }
    const std::string fileName = path->filename().string();
    if (!HasObjExtension(fileName))
    {
        RefuseFile("不能保存成此类型文件!", *path);
    }
    IOSaveObj(&m_SceneManager, &m_ElementManager).SaveObj(fileName);
}

template <class TCommand, class THandOver>
TCommand* IAController::Run(unsigned nCommandID, THandOver handOver)
{
    return Run<TCommand>(nCommandID, handOver, [](TCommand& command) { command.Execute(); });
}

/// Create, hand over, run, keep, redraw.
template <class TCommand, class THandOver, class TRun>
TCommand* IAController::Run(unsigned nCommandID, THandOver handOver, TRun run)
{
    ASSERT(m_pCommandManager != nullptr);
    std::unique_ptr<IACommand> command = m_pCommandManager->CreateCommand(nCommandID);
    ASSERT(command != nullptr);
    auto* pCommand = static_cast<TCommand*>(command.get());
    handOver(*pCommand);
    run(*pCommand);
    KeepAndRedraw(std::move(command));
    return pCommand;
}

void IAController::KeepAndRedraw(std::unique_ptr<IACommand> command)
{
    m_pCommandManager->StoreCommand(std::move(command));
    const bool isKept = command == nullptr; // a command that cannot be undone would go at the end of this
    ASSERT(isKept);
    Redraw();
}

void IAController::HandStores(IAFittingCommand& command)
{
    command.SetElementManager(&m_ElementManager);
    command.SetSceneManager(&m_SceneManager);
    command.SetView(m_pView);
}

void IAController::SubdivideLoop()
{
    Run<IASubLOOPCommand>(CommandID::SubLOOP,
                          [this](IASubLOOPCommand& command)
                          {
                              command.SetElementManager(&m_ElementManager);
                              command.SetSceneManager(&m_SceneManager);
                          });
}

void IAController::SubdivideAdaptive()
{
    Run<IASubAdaptiveCommand>(CommandID::SubAdaptive,
                              [this](IASubAdaptiveCommand& command)
                              {
                                  command.SetElementManager(&m_ElementManager);
                                  command.SetSceneManager(&m_SceneManager);
                                  command.SetClearModels([this] { ClearModels(); });
                              });
}

void IAController::ProjectSamples()
{
    Run<IAProjectionCommand>(CommandID::Projection,
                             [this](IAProjectionCommand& command) { command.SetView(m_pView); });
}

void IAController::BuildInitialMesh()
{
    m_pReconstructionCommand = Run<IAReconstructionCommand>(CommandID::Reconstruction,
                                                            [this](IAReconstructionCommand& command)
                                                            {
                                                                command.SetElementManager(&m_ElementManager);
                                                                command.SetSceneManager(&m_SceneManager);
                                                                command.SetView(m_pView);
                                                            });
}

void IAController::GenerateMesh(float level)
{
    IAReconstructionCommand& command = GetReconstructionCommand();
    command.GenerateMesh(level);
    command.BuildSolid();
    Redraw();
}

void IAController::ShowField()
{
    GetReconstructionCommand().ShowField();
    Redraw();
}

IAReconstructionCommand& IAController::GetReconstructionCommand() const
{
    if (m_pReconstructionCommand == nullptr)
    {
        throw Failure("there is no distance field: build the initial mesh first (\"构造初始网格\")");
    }
    return *m_pReconstructionCommand;
}

void IAController::RefineHierarchical()
{
    RunHierarchical([](IASmoothCommand& command) { command.Execute(); });
}

void IAController::FitVertices()
{
    RunHierarchical(
        [](IASmoothCommand& command)
        {
            command.TakeSolidAndCloud();
            command.FitVertices();
        });
}

void IAController::FitLimitSurface()
{
    RunHierarchical(
        [](IASmoothCommand& command)
        {
            command.TakeSolidAndCloud();
            command.FitLimitSurface();
        });
}

void IAController::RunHierarchical(const std::function<void(IASmoothCommand&)>& run)
{
    Run<IASmoothCommand>(
        CommandID::Smooth, [this](IASmoothCommand& command) { HandStores(command); },
        [&run](IASmoothCommand& command)
        {
            run(command);
            command.Release();
        });
}

void IAController::BuildOctree()
{
    ASSERT(m_pCommandManager != nullptr);
    auto command =
        std::make_unique<IAReconstructionSmoothOctreeCommand>(); // the factory has no number for it
    HandStores(*command);
    command->Execute();
    KeepAndRedraw(std::move(command));
}

void IAController::RefineIncremental()
{
    m_pIncrementalCommand = Run<IAReconstructionSmoothCommand>(CommandID::ReconstructionSmooth,
                                                               [this](IAReconstructionSmoothCommand& command)
                                                               { HandStores(command); });
}

void IAController::ConnectNext(std::uint64_t steps)
{
    GetLiveIncrementalCommand().ConnectNext(steps);
    Redraw();
}

void IAController::ConnectAll()
{
    GetLiveIncrementalCommand().ConnectAll();
    Redraw();
}

void IAController::SaveEnvironment()
{
    GetLiveIncrementalCommand().SaveEnvironment();
}

IAReconstructionSmoothCommand& IAController::GetLiveIncrementalCommand() const
{
    if (m_pIncrementalCommand == nullptr)
    {
        throw Failure("no new mesh has been started on this model: run incremental refinement first "
                      "(\"递增连接算法\")");
    }
    return *m_pIncrementalCommand;
}

void IAController::RefineTwoStep()
{
    m_pTwoStepCommand = Run<IAReconstructionSmoothTwoStepCommand>(
        CommandID::ReconstructionSmoothTwoStep,
        [this](IAReconstructionSmoothTwoStepCommand& command) { HandStores(command); });
}

void IAController::RefineEnergy()
{
    Run<IAReconstructionSmoothEnergyFunctionCommand>(
        CommandID::ReconstructionSmoothEnergyFunction,
        [this](IAReconstructionSmoothEnergyFunctionCommand& command) { HandStores(command); });
}

void IAController::OptimizeMesh(int mode)
{
    Run<IARefineMeshCommand>(CommandID::RefineMesh,
                             [this, mode](IARefineMeshCommand& command)
                             {
                                 command.SetElementManager(&m_ElementManager);
                                 command.SetSceneManager(&m_SceneManager);
                                 command.SetMode(mode);
                             });
}

void IAController::Simplify(float ratio)
{
    Run<IASimplifyCommand>(CommandID::Simplify,
                           [this, ratio](IASimplifyCommand& command)
                           {
                               command.SetElementManager(&m_ElementManager);
                               command.SetSceneManager(&m_SceneManager);
                               command.SetRatio(ratio);
                           });
}

void IAController::SetMaterialOfSelection()
{
    Run<IASetMaterialCommand>(CommandID::SetMaterial,
                              [this](IASetMaterialCommand& command)
                              {
                                  command.SetElementManager(&m_ElementManager);
                                  command.SetKind(ElementKind::Solid);
                              });
}

void IAController::GenerateSplats()
{
    Run<IAGenerateSplatCommand>(CommandID::GenerateSplat,
                                [this](IAGenerateSplatCommand& command)
                                {
                                    ASSERT(m_pView != nullptr);
                                    command.SetSceneManager(&m_SceneManager);
                                    m_pView->SetDisplayFlags(m_pView->GetDisplayFlags() |
                                                             DisplayFlag::CutFaces);
                                });
}

void IAController::TwoStepFirst()
{
    RunTwoStep("first", &IAReconstructionSmoothTwoStepCommand::Step);
}

void IAController::TwoStepSecond()
{
    RunTwoStep("second", &IAReconstructionSmoothTwoStepCommand::Restore);
}

void IAController::TwoStepThird()
{
    RunTwoStep("third", &IAReconstructionSmoothTwoStepCommand::Update);
}

void IAController::RunTwoStep(const char* name, void (IAReconstructionSmoothTwoStepCommand::*step)())
{
    if (m_pTwoStepCommand == nullptr)
    {
        const std::string reason = std::string("the ") + name +
                                   " step needs a two-step refinement that has run on this model: run it "
                                   "first (\"两步对应算法\", refine-two-step)";
        DebugConsole() << reason << '\n';
        throw Failure::AfterConsoleLine(reason);
    }
    TwoStepRollback rollback(*m_pTwoStepCommand);
    (m_pTwoStepCommand->*step)();
    Redraw();
    rollback.Dismiss();
}

IAController::Checkpoint IAController::Save() const
{
    return {m_pIncrementalCommand, m_pIncrementalCommand != nullptr ? m_pIncrementalCommand->Save() : nullptr,
            m_pTwoStepCommand, m_pReconstructionCommand};
}

void IAController::Restore(const Checkpoint& checkpoint) noexcept
{
    m_pIncrementalCommand = checkpoint.incrementalCommand;
    if (m_pIncrementalCommand != nullptr)
    {
        m_pIncrementalCommand->Restore(checkpoint.connection);
    }
    m_pTwoStepCommand = checkpoint.twoStepCommand;
    m_pReconstructionCommand = checkpoint.reconstructionCommand;
}
}
