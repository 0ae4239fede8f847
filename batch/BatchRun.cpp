#include "BatchRun.h"
#include "CommandLine.h"
#include "File.h"
#include "Operations.h"
#include "Streams.h"
#include <algorithm>

namespace tessarine
{
BatchRun::BatchRun(const BatchOptions& options)
    : m_pPlatformBefore(SetPlatform(&m_Platform)),
      m_SinkBefore(DebugConsole().SetSink([this](std::string_view text) { TakeConsoleText(text); })),
      m_bHeardBefore(DebugConsole().SetHeard(!options.quiet)),
      m_ErrorListenerBefore(SetErrorListener([this](std::string_view line) { TakeErrorLine(line); }))
{
    m_Platform.SetViewSize(options.viewWidth, options.viewHeight);
    m_Platform.SetWatched(false); // a picture is a frame of its own
    m_Workbench.GetView().Resize(0, 0, options.viewWidth, options.viewHeight);
}

BatchRun::~BatchRun()
{
    SetErrorListener(m_ErrorListenerBefore);
    DebugConsole().SetSink(m_SinkBefore);
    DebugConsole().SetHeard(m_bHeardBefore);
    SetPlatform(m_pPlatformBefore);
}

bool BatchRun::RunAll(const std::vector<OperationCall>& calls)
{
    CreateViewFor(calls);
    return std::all_of(calls.begin(), calls.end(),
                       [this](const OperationCall& call) { return RunOne(call); });
}

/// All frames of a run are drawn in one context, as each starts from what the one before has left there.
/// A run that never looks at one needs no GL. Where there is none, the operation that looks says so.
void BatchRun::CreateViewFor(const std::vector<OperationCall>& calls)
{
    const bool looks = std::any_of(calls.begin(), calls.end(),
                                   [](const OperationCall& call)
                                   { return LooksAtFrames(*call.pOperation, call.arguments); });
    if (looks && !m_Workbench.GetView().HasSurface())
    {
        m_Workbench.CreateView();
    }
}

bool BatchRun::RunOne(const OperationCall& call)
{
    m_strOperation = call.pOperation->name;
    m_Platform.SetFailurePlace(call.place);
    const bool done = RunWithProgress(call);
    return done && TellLostConsoleText();
}

bool BatchRun::RunWithProgress(const OperationCall& call)
{
    const ProgressLine::Run run(m_Progress, m_strOperation);
    const bool done = call.pOperation->handler(*this, call.arguments);
    DebugConsole().Flush();
    return done;
}

bool BatchRun::Perform(Effect effect, const std::function<void()>& action)
{
    return m_Workbench.Perform(m_strOperation, effect, action);
}

BatchDocument BatchRun::GetDocument() const
{
    const IAController& controller = m_Workbench.GetController();
    return {controller.GetElementManager(), controller.GetSceneManager(), m_Workbench.GetView(),
            m_Workbench.GetCommandManager().GetHistorySize(),
            m_Workbench.GetToolsManager().GetCurrentTool()->GetToolID()};
}

void BatchRun::WriteOutput(std::string_view text)
{
    DebugConsole().Flush();
    WriteAboveProgress(text);
}

/// The console is flushed from anywhere, and a command must not end for the sake of its lines: a line that
/// cannot be written fails the operation at its end.
void BatchRun::TakeConsoleText(std::string_view text)
{
    try
    {
        WriteAboveProgress(text);
    }
    catch (const FileError& error)
    {
        m_strLostConsole = error.what();
        DebugConsole().SetHeard(false);
    }
}

/// Behind half a line there is no place for the progress.
void BatchRun::WriteAboveProgress(std::string_view text)
{
    m_Progress.Hide();
    WriteStandardOutput(text);
    if (text.ends_with('\n'))
    {
        m_Progress.Show();
    }
}

void BatchRun::TakeErrorLine(std::string_view line)
{
    if (m_ErrorListenerBefore)
    {
        m_ErrorListenerBefore(line);
    }
    m_Progress.Show();
}

bool BatchRun::TellLostConsoleText()
{
    if (m_strLostConsole.empty())
    {
        return true;
    }
    m_Platform.ShowFailure(m_strOperation, m_strLostConsole, false);
    return false;
}
}
