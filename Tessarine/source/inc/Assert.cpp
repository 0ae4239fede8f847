#include "Assert.h"
#include "Console.h"
#include "ErrorLine.h"
#include <cstdio>
#include <map>
#include <string_view>
#include <utility>

namespace tessarine
{
namespace
{
std::string ReportText(const AssertionSite& site)
{
    return std::string("Assertion failed: ") + site.expression + ", file " + site.path + ", line " +
           std::to_string(site.line);
}

/// The reports of one command, counted by place.
struct ReportBook
{
    AssertionHandler handler;
    std::map<std::pair<std::string_view, int>, std::pair<AssertionSite, long>> counts;
};

ReportBook& GetBook()
{
    static ReportBook book;
    return book;
}

}

AssertionFailure::AssertionFailure(const AssertionSite& site) : IException(ReportText(site)), m_Site(site) {}

AssertionHandler SetAssertionHandler(AssertionHandler handler)
{
    return std::exchange(GetBook().handler, std::move(handler));
}

void BeginAssertionReports()
{
    GetBook().counts.clear();
}

void EndAssertionReports()
{
    for (const auto& [place, entry] : GetBook().counts)
    {
        const auto& [site, count] = entry;
        if (count > kMostReportsOfOnePlace)
        {
            PrintErrorLine(ReportText(site) + " (" + std::to_string(count) + " times)");
        }
    }
    GetBook().counts.clear();
}

void ReportAssertion(const AssertionSite& site) noexcept
{
    try
    {
        ReportBook& book = GetBook();
        if (book.handler)
        {
            book.handler(site);
            return;
        }
        auto& entry = book.counts.try_emplace({site.path, site.line}, site, 0).first->second;
        if (++entry.second <= kMostReportsOfOnePlace)
        {
            PrintErrorLine(ReportText(site));
        }
    }
    catch (...) // out of memory while reporting: the assertion's own effect is what counts
    {
        std::fputs("Assertion failed\n", stderr);
    }
}

void FailAssertion(const AssertionSite& site)
{
#if TESSARINE_ASSERTIONS
    ReportAssertion(site);
#endif
    throw AssertionFailure(site);
}

#if TESSARINE_ASSERTION_FAULTS
namespace
{
AssertionFault g_pAssertionFault = nullptr;
}

void SetAssertionFault(AssertionFault fault)
{
    g_pAssertionFault = fault;
}

bool MustAssertionFail()
{
    return g_pAssertionFault != nullptr && g_pAssertionFault();
}
#endif
}
