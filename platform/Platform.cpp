#include "Platform.h"
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

Platform* SetPlatform(Platform* platform)
{
    return std::exchange(g_pPlatform, platform);
}

void ShowMessage(const std::string& text)
{
    GetPlatform().ShowMessage("Tessarine", text);
}
}
