#pragma once
#include "BatchRun.h"
#include "CommandLine.h"
#include "FaultCases.h"
#include "HeadlessPlatform.h"
#include <optional>
#include <string>
#include <vector>

namespace tessarine
{
/// Whether a case draws a frame, in which the libraries below GL ask for memory in threads of their own.
bool LooksAtFrame(const FaultCase& faultCase);

/// How a run of a case ended.
enum class FaultEnd
{
    Done,
    Failed,        ///< the boundary has stopped the failure
    FailedOutside, ///< before or behind the boundary, in the batch tool's own code, which ends with a line
    Leaked         ///< the boundary has let the failure through: a window would end
};

/// Reads the cursors that the tools name, as a window does.
class CursorPlatform : public HeadlessPlatform
{
public:
    void SetCursorFromFile(const std::string& name) override;
};

/// A document in the state that a case starts from.
class FaultStage
{
public:
    /// Throws std::runtime_error when what leads to the state fails.
    explicit FaultStage(const FaultCase& faultCase);
    FaultStage(const FaultStage&) = delete;
    FaultStage& operator=(const FaultStage&) = delete;

    /// Runs the case's operation, or sends its event.
    FaultEnd Run();
    /// Moves the mouse, which every tool answers.
    FaultEnd Move();

    /// The whole dump, the stack of tools, whether one of them is moving something, and the size of the history.
    std::string Describe() const;
    std::string MakeDump() const;
    /// The solids down to the loops: what hangs on no file but the model.
    static std::string TakeShape(const std::string& description);
    /// The part of a description that is no view of the model.
    static std::string TakeRecords(const std::string& description);

private:
    template <class TAction>
    FaultEnd Watch(const TAction& action);
    bool Send(const ToolEvent& event);

    BatchRun m_Run;
    CursorPlatform m_CursorPlatform;
    std::vector<OperationCall> m_Operation;
    std::optional<ToolEvent> m_Event;
};
}
