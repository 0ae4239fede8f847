// The boundary begins and ends the reports of assertions, as its first and its last step. The linker leads both calls here
// (CMakeLists.txt).
#include "BoundaryWatch.h"
#include <array>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the linker's names

extern "C"
{
    void __real__ZN9tessarine21BeginAssertionReportsEv();
    void __real__ZN9tessarine19EndAssertionReportsEv();
}

namespace
{
bool g_bInside = false;
}

extern "C"
{
    void __wrap__ZN9tessarine21BeginAssertionReportsEv()
    {
        g_bInside = true;
        __real__ZN9tessarine21BeginAssertionReportsEv();
    }

    void __wrap__ZN9tessarine19EndAssertionReportsEv()
    {
        g_bInside = false;
        __real__ZN9tessarine19EndAssertionReportsEv();
    }
}

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

namespace tessarine
{
namespace
{
constexpr std::string_view kLead = "tessarine-batch: ";

int g_nTold = 0;
std::array<char, 512> g_LastTold;
std::size_t g_nLastLength = 0;

void Hear(std::string_view line)
{
    if (line.starts_with(kLead))
    {
        ++g_nTold;
        g_nLastLength = line.copy(g_LastTold.data(), g_LastTold.size());
    }
}
}

bool IsInsideBoundary()
{
    return g_bInside;
}

void LeaveBoundary()
{
    g_bInside = false;
}

ToldFailures::ToldFailures() : m_Before(SetErrorListener(&Hear))
{
    g_nTold = 0;
    g_nLastLength = 0;
}

ToldFailures::~ToldFailures()
{
    SetErrorListener(m_Before);
}

int ToldFailures::Count()
{
    return g_nTold;
}

std::string_view ToldFailures::GetLast()
{
    return {g_LastTold.data(), g_nLastLength};
}
}
