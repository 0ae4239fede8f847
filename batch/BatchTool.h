#pragma once
#include <string>
#include <vector>

namespace tessarine
{
/// The exit statuses of the tool.
namespace ExitStatus
{
inline constexpr int Done = 0;   ///< every operation ran
inline constexpr int Failed = 1; ///< an operation failed, and nothing behind it was run
inline constexpr int Usage =
    2; ///< the command line or the script says nothing that can be run; nothing was run
}

/// The whole tool. Nothing is thrown: whatever goes wrong is a line on standard error.
/// @param arguments without the program's name
int RunBatchTool(const std::vector<std::string>& arguments) noexcept;
}
