#include "OwnCode.h"
#include <algorithm>
#include <cstdint>
#include <link.h>
#include <string_view>
#include <unwind.h>
#include <vector>

namespace tessarine
{
namespace
{
struct CodeRange
{
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
};

bool IsOfLanguage(std::string_view library)
{
    const auto isIn = [library](const char* name) { return library.find(name) != std::string_view::npos; };
    return library.empty() || isIn("/libstdc++.") || isIn("/libc.so"); // the program has no name
}

std::vector<CodeRange> FindOwnCode()
{
    std::vector<CodeRange> ranges;
    const auto addRanges = [](dl_phdr_info* info, std::size_t, void* found)
    {
        for (int i = 0; i < info->dlpi_phnum && IsOfLanguage(info->dlpi_name); ++i)
        {
            const auto& segment = info->dlpi_phdr[i];
            if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0)
            {
                const std::uintptr_t begin = info->dlpi_addr + segment.p_vaddr;
                static_cast<std::vector<CodeRange>*>(found)->push_back({begin, begin + segment.p_memsz});
            }
        }
        return 0;
    };
    dl_iterate_phdr(addRanges, &ranges);
    return ranges;
}

/// Goes on to the caller as long as its code is the program's own.
_Unwind_Reason_Code LookAtFrame(_Unwind_Context* context, void* isOwn)
{
    static const std::vector<CodeRange> ranges = FindOwnCode();
    const std::uintptr_t at = _Unwind_GetIP(context);
    const bool isHere =
        std::any_of(ranges.begin(), ranges.end(),
                    [at](const CodeRange& range) { return at >= range.begin && at < range.end; });
    *static_cast<bool*>(isOwn) = isHere || at == 0; // the end of the stack has none
    return isHere ? _URC_NO_REASON : _URC_END_OF_STACK;
}
}

bool IsOwnCodeRunning()
{
    bool isOwn = true;
    _Unwind_Backtrace(LookAtFrame, &isOwn);
    return isOwn;
}
}
