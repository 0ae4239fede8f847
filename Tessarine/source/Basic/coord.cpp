#include "coord.h"
#include "Console.h"

namespace tessarine
{
void SayCoordError(const char* line)
{
    DebugConsole() << line << '\n';
}
}
