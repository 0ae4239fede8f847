#include "StateFolder.h"
#include <cstdlib>

namespace tessarine
{
namespace
{
/// A relative one counts as none, as the rule for these variables wants it.
std::filesystem::path GetFolderFrom(const char* variable)
{
    const char* value = std::getenv(variable);
    const std::filesystem::path folder = value != nullptr ? value : "";
    return folder.is_absolute() ? folder : std::filesystem::path();
}
}

std::filesystem::path FindStateFolder()
{
    if (const std::filesystem::path state = GetFolderFrom("XDG_STATE_HOME"); !state.empty())
    {
        return state / "tessarine";
    }
    const std::filesystem::path home = GetFolderFrom("HOME");
    return home.empty() ? home : home / ".local/state/tessarine";
}
}
