#pragma once
#include "BatchRun.h"
#include "CommandLine.h"
#include "FaultCases.h"
#include <string>
#include <vector>

namespace tessarine
{
/// Whether a case draws a frame, in which the libraries below GL ask for memory in threads of their own.
bool LooksAtFrame(const FaultCase& faultCase);

/// A document in the state that a case starts from.
class FaultStage
{
public:
    /// Throws std::runtime_error when what leads to the state fails.
    explicit FaultStage(const FaultCase& faultCase);
    FaultStage(const FaultStage&) = delete;
    FaultStage& operator=(const FaultStage&) = delete;

    /// Runs the case's operation.
    /// @return whether it ran to its end; what it throws is a failure
    bool Run();

    /// The whole dump, the stack of tools and the size of the history.
    std::string Describe() const;
    std::string MakeDump() const;
    /// The part of a description that is no view of the model.
    static std::string TakeRecords(const std::string& description);

private:
    BatchRun m_Run;
    std::vector<OperationCall> m_Operation;
};
}
