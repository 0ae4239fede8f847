#include "Display.h"
#include <X11/Xlib.h>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>

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
}

void PrepareForDisplay()
{
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    if (!IsLocaleUtf8())
    {
        setenv("LC_ALL", "C.UTF-8", 1);
    }
}

bool IsDisplayThere()
{
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
