#pragma once
#include <string>

namespace tessarine
{
class IAWorkbench;

/// Everything in the stores of a window, as the batch tool writes it.
std::string DumpWindow(const IAWorkbench& bench);
}
