#pragma once
#include "IException.h"
#include <functional>
#include <string>

/// Assertions, on in every build that is shipped.
///
/// ASSERT(expression)        a broken rule ends the command: reports, then throws AssertionFailure.
/// ASSERT_VALUE(expression)  the value types' form: reports and goes on.
///
/// A report is the line "Assertion failed: EXPRESSION, file PATH, line N" on standard error, with the
/// expression as written. With TESSARINE_ASSERTIONS=0 nothing is reported; ASSERT throws all the same.

#ifndef TESSARINE_ASSERTIONS
#define TESSARINE_ASSERTIONS 1
#endif

/// Whether a test can let an ASSERT fail whose condition holds. It costs time at each of them: sanitizer builds only.
#ifndef TESSARINE_ASSERTION_FAULTS
#define TESSARINE_ASSERTION_FAULTS 0
#endif

namespace tessarine
{
/// Where an assertion stands, and what it demands.
struct AssertionSite
{
    const char* expression;
    const char* path;
    int line;
};

/// Thrown by a failed ASSERT.
class AssertionFailure : public IException
{
public:
    explicit AssertionFailure(const AssertionSite& site);
    const AssertionSite& GetSite() const { return m_Site; }

private:
    AssertionSite m_Site;
};

using AssertionHandler = std::function<void(const AssertionSite&)>;

/// Takes over the reports and gives back the handler before it. An empty handler means standard error.
AssertionHandler SetAssertionHandler(AssertionHandler handler);

/// Reports of one place are printed at most this often in a command.
inline constexpr int kMostReportsOfOnePlace = 10;

/// Starts the count of reports anew: a command begins.
void BeginAssertionReports();

/// Prints, for every place that was held back, its line once more with the number of times: a command ends.
void EndAssertionReports();

/// Reports a failed assertion. Never throws.
void ReportAssertion(const AssertionSite& site) noexcept;

[[noreturn]] void FailAssertion(const AssertionSite& site);

#if TESSARINE_ASSERTION_FAULTS
/// Asked at every ASSERT whose condition holds: whether it shall fail all the same. Null means that none does.
using AssertionFault = bool (*)();
void SetAssertionFault(AssertionFault fault);
bool MustAssertionFail();
#endif
}

#if TESSARINE_ASSERTIONS
#define ASSERT_VALUE(condition)                                                                              \
    ((condition) ? static_cast<void>(0)                                                                      \
                 : ::tessarine::ReportAssertion(::tessarine::AssertionSite{#condition, __FILE__, __LINE__}))
#else
#define ASSERT_VALUE(condition) static_cast<void>(sizeof(!(condition))) // looked at by the compiler alone
#endif

#if TESSARINE_ASSERTION_FAULTS
#define ASSERT(condition)                                                                                    \
    ((condition) && !::tessarine::MustAssertionFail()                                                        \
         ? static_cast<void>(0)                                                                              \
         : ::tessarine::FailAssertion(::tessarine::AssertionSite{#condition, __FILE__, __LINE__}))
#else
#define ASSERT(condition)                                                                                    \
    ((condition) ? static_cast<void>(0)                                                                      \
                 : ::tessarine::FailAssertion(::tessarine::AssertionSite{#condition, __FILE__, __LINE__}))
#endif
