#include "WindowDump.h"
#include "BatchDocument.h"
#include "Dump.h"
#include "IAWorkbench.h"

namespace tessarine
{
std::string DumpWindow(const IAWorkbench& bench)
{
    std::string dump;
    const IAController& controller = bench.GetController();
    WriteDump({controller.GetElementManager(), controller.GetSceneManager(), bench.GetView(),
               bench.GetCommandManager().GetHistorySize(),
               bench.GetToolsManager().GetCurrentTool()->GetToolID()},
              [&dump](std::string_view text) { dump += text; });
    return dump;
}
}
