#pragma once
#include "FaultPlan.h"

namespace tessarine
{
/// What can be made to fail.
enum class FaultKind
{
    Memory,    ///< operator new, and the blocks of platform/Memory
    Assertion, ///< an ASSERT whose condition holds; only where the build asks at them, see CanFail
    FileCall   ///< a call of platform/File to the system that opens, reads, writes, closes or renames
};

/// The plan that the places of a kind ask.
FaultPlan& GetFaultPlan(FaultKind kind);

/// Whether this build asks at the places of a kind.
bool CanFail(FaultKind kind);

/// Has the assertions ask from now on, where the build does.
void AskAtAssertions();
}
