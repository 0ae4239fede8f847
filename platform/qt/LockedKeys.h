#pragma once

namespace tessarine
{
/// The keys that stay down until they are pressed again.
struct LockedKeys
{
    bool capitals = false;
    bool numbers = false;
    bool scrolling = false;
};

/// None where the display does not tell.
LockedKeys ReadLockedKeys();
}
