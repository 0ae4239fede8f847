#pragma once

namespace tessarine
{
/// Runs what is no reason to fail where it fails, whatever it lacks.
template <class TAction>
void TryTo(const TAction& action) noexcept
{
    try
    {
        action();
    }
    catch (...) // NOLINT(bugprone-empty-catch): that is the point
    {
    }
}
}
