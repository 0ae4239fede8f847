#pragma once
#include <atomic>
#include <limits>
#include <thread>

namespace tessarine
{
enum class FaultMode
{
    Once,
    FromThenOn
};

/// Which of the many places of one kind that a run passes is to fail. Every place asks once; those of other threads than
/// the one that has armed it pass.
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
        m_Thread = std::this_thread::get_id();
    }
    void Disarm() { m_Thread = std::thread::id(); }
    bool IsArmed() const { return m_Thread.load() == std::this_thread::get_id(); }

    bool MustFail()
    {
        if (!IsArmed())
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
    std::atomic<std::thread::id> m_Thread; ///< that it is armed in, if any
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
