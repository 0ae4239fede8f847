#pragma once
#include <filesystem>

namespace tessarine
{
/// Where the program keeps, for this user, what is to outlive a run without being a setting: "tessarine" below
/// $XDG_STATE_HOME, or else below ~/.local/state. It need not exist.
/// @return empty where the user has neither
std::filesystem::path FindStateFolder();
}
