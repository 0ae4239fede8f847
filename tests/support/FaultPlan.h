#pragma once
#include <limits>

namespace tessarine
{
enum class FaultMode
{
    Once,
    FromThenOn
};

/// Which of the many places of one kind that a run passes is to fail. Every place asks once.
class FaultPlan
{
public:
    static constexpr long kNone = std::numeric_limits<long>::max();

    /// @param spared how many places are passed before the one that fails; kNone only counts
    /// @param mode whether all places behind that one fail as well
    void Arm(long spared, FaultMode mode)
    {
        m_nSpared = spared;
        m_Mode = mode;
        m_nPassed = 0;
        m_bArmed = true;
    }
    void Disarm() { m_bArmed = false; }
    bool IsArmed() const { return m_bArmed; }

    bool MustFail()
    {
        if (!m_bArmed)
        {
            return false;
        }
        const long place = m_nPassed++;
        return m_Mode == FaultMode::Once ? place == m_nSpared : place >= m_nSpared;
    }

    /// Since it was armed, until it is armed again.
    bool HasFailed() const { return m_nPassed > m_nSpared; }
    long CountPassed() const { return m_nPassed; }

private:
    bool m_bArmed = false;
    FaultMode m_Mode = FaultMode::Once;
    long m_nSpared = kNone;
    long m_nPassed = 0;
};

/// Arms a plan while it lives.
class InjectedFault
{
public:
    InjectedFault(FaultPlan& plan, long spared, FaultMode mode) : m_Plan(plan) { m_Plan.Arm(spared, mode); }
    ~InjectedFault() { m_Plan.Disarm(); }
    InjectedFault(const InjectedFault&) = delete;
    InjectedFault& operator=(const InjectedFault&) = delete;

private:
    FaultPlan& m_Plan;
};
}
