#pragma once

namespace tessarine
{
/// Says on standard error and on the console which exception, the one that is being handled, has ended an answer.
void TellLostAnswer() noexcept;

/// Runs what an event or an action of the user leads to: no exception may pass Qt's own code, which hands them over. The
/// operations of the model pass the boundary besides. Needs no memory itself.
/// @return whether it ran to its end; if not, the user has been told
template <class TAction>
bool Answer(const TAction& action) noexcept
{
    try
    {
        action();
        return true;
    }
    catch (...)
    {
        TellLostAnswer();
        return false;
    }
}
}
