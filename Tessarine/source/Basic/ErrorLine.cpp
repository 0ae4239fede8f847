#include "ErrorLine.h"
#include "Console.h"
#include <cstdio>

namespace tessarine
{
void PrintErrorLine(const std::string& text)
{
    DebugConsole().Flush();
    std::fprintf(stderr, "%s\n", text.c_str());
}
}
