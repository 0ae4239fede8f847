#include "FaultStage.h"
#include "Dump.h"
#include "IException.h"
#include "Operations.h"
#include <cstdio>
#include <exception>
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
    const OperationCall call = ParseScript(faultCase.operation, faultCase.name).front();
    return LooksAtFrames(*call.pOperation, call.arguments);
}

FaultStage::FaultStage(const FaultCase& faultCase)
    : m_Run(SmallView()), m_Operation(ParseScript(faultCase.operation, faultCase.name))
{
    DebugConsole().SetSink([](std::string_view) {}); // the run puts the one before back
    const QuietStreams quiet;
    if (!m_Run.RunAll(ParseScript(faultCase.setup, faultCase.name)))
    {
        throw std::runtime_error("the setup failed: " + faultCase.setup);
    }
}

bool FaultStage::Run()
{
    const QuietStreams quiet;
    try
    {
        return m_Run.RunAll(m_Operation);
    }
    catch (const std::exception&) // from outside of the boundary: the tool ends with a line
    {
        return false;
    }
    catch (const IException&)
    {
        return false;
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
        text += ' ' + std::to_string(tool->GetToolID());
    }
    return text + "\nhistory: " + std::to_string(document.historySize) + '\n';
}

std::string FaultStage::TakeRecords(const std::string& description)
{
    const std::size_t selection = description.find("\"selection\"");
    const std::size_t cutFaces = description.rfind("\"cutFaces\"");
    const std::size_t end = description.rfind("\ntools:");
    return description.substr(0, selection) + description.substr(cutFaces, end - cutFaces);
}
}
