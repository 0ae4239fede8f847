#pragma once
#include "ErrorLine.h"
#include <string_view>

namespace tessarine
{
/// Whether the boundary has been entered and not come to its last step: what is thrown then should have been caught there.
bool IsInsideBoundary();

/// Whatever was left open has been judged.
void LeaveBoundary();

/// Counts the failures that a user is told about while it lives, and keeps what the last one says. Needs no memory.
class ToldFailures
{
public:
    ToldFailures();
    ~ToldFailures();
    ToldFailures(const ToldFailures&) = delete;
    ToldFailures& operator=(const ToldFailures&) = delete;

    static int Count();
    /// As it is printed, or the beginning of it.
    static std::string_view GetLast();

private:
    ErrorListener m_Before;
};
}
