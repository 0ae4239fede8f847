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
bool IsLocaleUtf8()
{
    std::setlocale(LC_ALL, "");
    const bool isUtf8 = std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
    RestoreNumberForm();
    return isUtf8;
}

/// The word behind the last such option, which Qt takes with one dash or two; null where there is none.
const char* FindOption(int argc, const char* const* argv, std::string_view option)
{
    const char* found = nullptr;
    for (int i = 1; i + 1 < argc; ++i)
    {
        const std::string_view word = argv[i];
        if (word == option || (word.starts_with("--") && word.substr(1) == option))
        {
            found = argv[++i];
        }
    }
    return found;
}
}

void PrepareForDisplay()
{
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    if (!IsLocaleUtf8())
    {
        setenv("LC_ALL", "C.UTF-8", 1);
    }
}

DisplayConnection::DisplayConnection(int argc, const char* const* argv)
{
    const char* const platform = FindOption(argc, argv, "-platform");
    if (platform != nullptr && std::string_view(platform) != "xcb")
    {
        m_strProblem = "the window is drawn on an X display alone; leave out -platform";
    }
    else if (Display* display = XOpenDisplay(FindOption(argc, argv, "-display")))
    {
        m_pDisplay = std::shared_ptr<void>(display, [display](void*) { XCloseDisplay(display); });
    }
    else
    {
        m_strProblem = "there is no display to show a window on (DISPLAY); tessarine-batch works without one";
    }
}

void RestoreNumberForm()
{
    std::setlocale(LC_ALL, "C");
}
}
