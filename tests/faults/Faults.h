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

enum class FaultMode
{
    Once,
    FromThenOn
};

/// Lets one place of a kind fail while it lives: the one before which `spared` others are passed; or that and all
/// behind it. FaultPlan::kNone only counts. One at a time.
class InjectedFault
{
public:
    InjectedFault(FaultKind kind, long spared, FaultMode mode);
    ~InjectedFault();
    InjectedFault(const InjectedFault&) = delete;
    InjectedFault& operator=(const InjectedFault&) = delete;

    bool HasFailed() const { return m_Plan.HasFailed(); }
    /// How many places of the kind have been passed.
    long CountPassed() const { return m_Plan.CountPassed(); }

    /// Whether this build asks at the places of a kind.
    static bool CanFail(FaultKind kind);

private:
    FaultPlan& m_Plan;
};

/// The plan that the places of a kind ask.
FaultPlan& GetFaultPlan(FaultKind kind);
}
