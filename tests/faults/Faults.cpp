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

void AskAtAssertions()
{
    SetAssertionFault([] { return g_AssertionPlan.MustFail(); });
}
#else
constexpr bool kAsksAtAssertions = false;

void AskAtAssertions() {}
#endif
}

FaultPlan& GetFaultPlan(FaultKind kind)
{
    switch (kind)
    {
    case FaultKind::Memory: return FailingMemory::GetPlan();
    case FaultKind::Assertion: return g_AssertionPlan;
    case FaultKind::FileCall: break;
    }
    return g_FilePlan;
}

InjectedFault::InjectedFault(FaultKind kind, long spared, FaultMode mode) : m_Plan(GetFaultPlan(kind))
{
    AskAtAssertions();
    m_Plan.Arm(spared, mode == FaultMode::FromThenOn);
}

InjectedFault::~InjectedFault()
{
    m_Plan.Disarm();
}

bool InjectedFault::CanFail(FaultKind kind)
{
    return kind != FaultKind::Assertion || kAsksAtAssertions;
}
}
