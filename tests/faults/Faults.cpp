#include "Faults.h"
#include "Assert.h"
#include "FailingMemory.h"

namespace tessarine
{
namespace
{
FaultPlan g_AssertionPlan;
FaultPlan g_FilePlan;

#if TESSARINE_ASSERTION_FAULTS
constexpr bool kAsksAtAssertions = true;
#else
constexpr bool kAsksAtAssertions = false;
#endif
}

FaultPlan& GetFaultPlan(FaultKind kind)
{
    switch (kind)
    {
    case FaultKind::Memory: return GetMemoryPlan();
    case FaultKind::Assertion: return g_AssertionPlan;
    case FaultKind::FileCall: break;
    }
    return g_FilePlan;
}

bool CanFail(FaultKind kind)
{
    return kind != FaultKind::Assertion || kAsksAtAssertions;
}

void AskAtAssertions()
{
#if TESSARINE_ASSERTION_FAULTS
    SetAssertionFault([] { return g_AssertionPlan.MustFail(); });
#endif
}
}
