#include "Display.h"
#include <X11/Xlib.h>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>
#include <string_view>

namespace tessarine
{
namespace
{
constexpr char kPlatformVariable[] = "QT_QPA_PLATFORM";
constexpr char kXWindows[] = "xcb";

bool IsLocaleUtf8()
{
    std::setlocale(LC_ALL, "");
    const bool isUtf8 = std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
    RestoreNumberForm();
    return isUtf8;
}
}

void PrepareForDisplay()
{
    setenv(kPlatformVariable, kXWindows, 0);
    if (!IsLocaleUtf8())
    {
        setenv("LC_ALL", "C.UTF-8", 1);
    }
}

bool IsDisplayThere()
{
    const char* platform = std::getenv(kPlatformVariable);
    if (platform != nullptr && std::string_view(platform) != kXWindows)
    {
        return true; // whoever names another knows it to be there
    }
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr)
    {
        return false;
    }
    XCloseDisplay(display);
    return true;
}

void RestoreNumberForm()
{
    std::setlocale(LC_ALL, "C");
}
}
