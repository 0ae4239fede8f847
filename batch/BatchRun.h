#pragma once
#include "BatchDocument.h"
#include "Console.h"
#include "ErrorLine.h"
#include "HeadlessPlatform.h"
#include "IAWorkbench.h"
#include "ProgressLine.h"
#include <string>
#include <string_view>
#include <vector>

namespace tessarine
{
struct BatchOptions;
struct OperationCall;

/// One run of operations on one document: the machine without a window, the workbench on it, and the streams.
class BatchRun
{
public:
    explicit BatchRun(const BatchOptions& options);
    ~BatchRun();
    BatchRun(const BatchRun&) = delete;
    BatchRun& operator=(const BatchRun&) = delete;

    /// Runs them in order, until one fails.
    /// @return whether all ran
    bool RunAll(const std::vector<OperationCall>& calls);

    // For the operations themselves.

    IAWorkbench& GetWorkbench() { return m_Workbench; }
    const IAWorkbench& GetWorkbench() const { return m_Workbench; }
    HeadlessPlatform& GetPlatform() { return m_Platform; }
    BatchDocument GetDocument() const;

    /// The workbench's boundary, under the name of the operation that runs.
    bool Perform(Effect effect, const std::function<void()>& action);

    const std::string& GetOperationName() const { return m_strOperation; }

    /// Behind what the console holds back. Throws FileError.
    void WriteOutput(std::string_view text);

private:
    void CreateViewFor(const std::vector<OperationCall>& calls);
    bool RunOne(const OperationCall& call);
    bool RunWithProgress(const OperationCall& call);
    void TakeConsoleText(std::string_view text);
    void WriteAboveProgress(std::string_view text);
    void TakeErrorLine(std::string_view line);
    bool TellLostConsoleText();

    HeadlessPlatform m_Platform;
    Platform* m_pPlatformBefore;
    Console::Sink m_SinkBefore;
    bool m_bHeardBefore;
    ErrorListener m_ErrorListenerBefore;
    ProgressLine m_Progress;
    std::string m_strLostConsole; ///< why console text could not be written; empty while all is well
    std::string m_strOperation;
    IAWorkbench m_Workbench;
};
}
