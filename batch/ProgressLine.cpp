#include "ProgressLine.h"
#include "Streams.h"
#include <utility>

namespace tessarine
{
namespace
{
bool g_bShown = false;
}

ProgressLine::ProgressLine(const std::string& operation)
{
    if (IsErrorStreamTerminal())
    {
        // The cursor goes back to the start: an error line, which is longer, simply covers this one.
        WriteStandardError(operation + " ...\r");
        g_bShown = true;
    }
}

void ProgressLine::Erase()
{
    if (std::exchange(g_bShown, false))
    {
        WriteStandardError("\r\033[K");
    }
}
}
