#pragma once
#include "ImageDecoding.h"
#include <csetjmp>
#include <cstdio>

namespace tessarine
{
/// Runs calls of a C library whose error handler must not return: a failure inside becomes an ImageFault.
class LibraryCall
{
public:
    /// `step` is left by a jump when the library fails, so neither it nor what it calls may own anything.
    template <class TStep>
    void Run(TStep step)
    {
        if (setjmp(m_Jump) == 0)
        {
            step();
            return;
        }
        throw ImageFault(m_szReason);
    }

    /// For the library's error handler, inside Run only.
    [[noreturn]] void Fail(const char* reason, const char* detail = "")
    {
        const bool detailed = detail[0] != '\0';
        std::snprintf(m_szReason, sizeof m_szReason, "%s%s%s%s", reason, detailed ? " (" : "", detail,
                      detailed ? ")" : "");
        std::longjmp(m_Jump, 1);
    }

private:
    std::jmp_buf m_Jump = {};
    char m_szReason[300] = "";
};
}
