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

using LibraryTest = bool (*)(std::string_view path);

bool IsOwn(std::string_view path)
{
    const auto isIn = [path](const char* name) { return path.find(name) != std::string_view::npos; };
    return path.empty() || isIn("/libstdc++.") || isIn("/libc.so"); // the program has no name
}

bool IsForgetful(std::string_view path)
{
    return path.find("/libann.so") != std::string_view::npos;
}

std::vector<CodeRange> FindCode(LibraryTest isMeant)
{
    struct Search
    {
        LibraryTest isMeant;
        std::vector<CodeRange> found;
    };
    const auto addRanges = [](dl_phdr_info* info, std::size_t, void* data)
    {
        auto& search = *static_cast<Search*>(data);
        for (int i = 0; i < info->dlpi_phnum && search.isMeant(info->dlpi_name); ++i)
        {
            const auto& segment = info->dlpi_phdr[i];
            if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0)
            {
                const std::uintptr_t begin = info->dlpi_addr + segment.p_vaddr;
                search.found.push_back({begin, begin + segment.p_memsz});
            }
        }
        return 0;
    };
    Search search = {isMeant, {}};
    dl_iterate_phdr(addRanges, &search);
    return search.found;
}

bool IsIn(const std::vector<CodeRange>& ranges, std::uintptr_t at)
{
    return std::any_of(ranges.begin(), ranges.end(),
                       [at](const CodeRange& range) { return at >= range.begin && at < range.end; });
}

/// Goes on to the caller as long as its code is the program's own.
_Unwind_Reason_Code LookAtFrame(_Unwind_Context* context, void* isOwn)
{
    static const std::vector<CodeRange> ranges = FindCode(IsOwn);
    const std::uintptr_t at = _Unwind_GetIP(context);
    const bool isHere = IsIn(ranges, at);
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

bool IsForgetfulCode(const void* address)
{
    static const std::vector<CodeRange> ranges = FindCode(IsForgetful);
    return IsIn(ranges, reinterpret_cast<std::uintptr_t>(address));
}
}
