#include "FaultStage.h"
#include "BoundaryWatch.h"
#include "Cursor.h"
#include "Dump.h"
#include "File.h"
#include "IAMoveTool.h"
#include "Operations.h"
#include <cstdio>
#include <stdexcept>

namespace tessarine
{
namespace
{
BatchOptions SmallView()
{
    BatchOptions options;
    options.viewWidth = 100;
    options.viewHeight = 100;
    return options;
}

/// Nobody sees what is printed while it lives. The descriptors stay: a sanitizer's report is seen.
class QuietStreams
{
public:
    QuietStreams() : m_pOutput(stdout), m_pErrors(stderr)
    {
        static FILE* const pNowhere = std::fopen("/dev/null", "w");
        stdout = stderr = pNowhere; // glibc lets a program set them
    }
    ~QuietStreams()
    {
        stdout = m_pOutput;
        stderr = m_pErrors;
    }
    QuietStreams(const QuietStreams&) = delete;
    QuietStreams& operator=(const QuietStreams&) = delete;

private:
    FILE* m_pOutput;
    FILE* m_pErrors;
};
}

bool LooksAtFrame(const FaultCase& faultCase)
{
    if (faultCase.event)
    {
        return false;
    }
    const OperationCall call = ParseScript(faultCase.operation, faultCase.name).front();
    return LooksAtFrames(*call.pOperation, call.arguments);
}

FaultStage::FaultStage(const FaultCase& faultCase) : m_Run(SmallView()), m_Event(faultCase.event)
{
    if (!m_Event)
    {
        m_Operation = ParseScript(faultCase.operation, faultCase.name);
    }
    DebugConsole().SetSink([](std::string_view) {}); // the run puts the one before back
    const QuietStreams quiet;
    if (!m_Run.RunAll(ParseScript(faultCase.setup, faultCase.name)))
    {
        throw std::runtime_error("the setup failed: " + faultCase.setup);
    }
}

template <class TAction>
FaultEnd FaultStage::Watch(const TAction& action)
{
    const QuietStreams quiet;
    LeaveBoundary();
    try
    {
        return action() ? FaultEnd::Done : FaultEnd::Failed;
    }
    catch (...)
    {
        return IsInsideBoundary() ? FaultEnd::Leaked : FaultEnd::FailedOutside;
    }
}

FaultEnd FaultStage::Run()
{
    return Watch([this] { return m_Event ? Send(*m_Event) : m_Run.RunAll(m_Operation); });
}

FaultEnd FaultStage::Move()
{
    return Watch([this] { return Send({.kind = ToolEvent::Kind::MouseMove, .x = 45, .y = 55}); });
}

bool FaultStage::Send(const ToolEvent& event)
{
    if (event.kind != ToolEvent::Kind::SetCursor)
    {
        return m_Run.GetWorkbench().SendEvent(event);
    }
    Platform* before = SetPlatform(&m_CursorPlatform);
    const bool done = m_Run.GetWorkbench().SendEvent(event);
    SetPlatform(before);
    return done;
}

void CursorPlatform::SetCursorFromFile(const std::string& name)
{
    try
    {
        ReadCursor(name);
    }
    catch (const FileError&) // NOLINT(bugprone-empty-catch): no cursor is shown
    {
    }
}

std::string FaultStage::MakeDump() const
{
    std::string text;
    WriteDump(m_Run.GetDocument(), [&text](std::string_view piece) { text += piece; });
    return text;
}

std::string FaultStage::Describe() const
{
    std::string text = MakeDump() + "\ntools:";
    const BatchDocument document = m_Run.GetDocument();
    for (const IATool* tool : m_Run.GetWorkbench().GetToolsManager().GetToolStack())
    {
        const auto* move = dynamic_cast<const IAMoveTool*>(tool);
        text += ' ' + std::to_string(tool->GetToolID());
        text += move != nullptr && move->IsUnderWay() ? " moving" : "";
    }
    return text + "\nhistory: " + std::to_string(document.historySize) + '\n';
}

std::string FaultStage::TakeShape(const std::string& description)
{
    const std::size_t solids = description.find("\"solids\"");
    const std::size_t faces = description.find("\"faces\"", description.find("\"halfedges\""));
    return description.substr(solids, faces - solids);
}

std::string FaultStage::TakeRecords(const std::string& description)
{
    const std::size_t selection = description.find("\"selection\"");
    const std::size_t cutFaces = description.rfind("\"cutFaces\"");
    const std::size_t end = description.rfind("\ntools:");
    return description.substr(0, selection) + description.substr(cutFaces, end - cutFaces);
}
}
