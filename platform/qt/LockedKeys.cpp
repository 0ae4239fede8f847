#include "LockedKeys.h"
#include <QGuiApplication>
// The display's header takes common words for macros: it comes last.
#include <X11/XKBlib.h>

namespace tessarine
{
namespace
{
// The lamps of a keyboard, in the order that every keyboard map keeps.
constexpr unsigned kCapitalsLamp = 1U << 0U;
constexpr unsigned kNumbersLamp = 1U << 1U;
constexpr unsigned kScrollingLamp = 1U << 2U;
}

LockedKeys ReadLockedKeys()
{
    const auto* display = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    unsigned lamps = 0;
    if (display == nullptr || XkbGetIndicatorState(display->display(), XkbUseCoreKbd, &lamps) != Success)
    {
        return {};
    }
    return {(lamps & kCapitalsLamp) != 0, (lamps & kNumbersLamp) != 0, (lamps & kScrollingLamp) != 0};
}
}
