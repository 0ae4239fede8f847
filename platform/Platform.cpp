#include "Platform.h"
#include <chrono>
#include <stdexcept>
#include <utility>

namespace tessarine
{
namespace
{
Platform* g_pPlatform = nullptr;
}

Platform& GetPlatform()
{
    if (g_pPlatform == nullptr)
    {
        throw std::logic_error("no platform was set");
    }
    return *g_pPlatform;
}

std::uint64_t Platform::GetTickCount()
{
    using std::chrono::milliseconds;
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<milliseconds>(now).count());
}

Platform* SetPlatform(Platform* platform)
{
    return std::exchange(g_pPlatform, platform);
}

void ShowMessage(const std::string& text)
{
    GetPlatform().ShowMessage("Tessarine", text);
}

void ShowRepeatingMessage(const std::string& text)
{
    GetPlatform().ShowRepeatingMessage("Tessarine", text);
}
}
