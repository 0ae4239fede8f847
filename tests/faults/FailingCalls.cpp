// The linker leads the calls of the program's own code here (CMakeLists.txt); those of shared libraries go past.
#include "FailedCalls.h"
#include "Faults.h"
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the linker's names

extern "C"
{
    void* __real_malloc(std::size_t size);
    int __real_open(const char* path, int flags, ...);
    ssize_t __real_read(int descriptor, void* bytes, std::size_t size);
    ssize_t __real_pread(int descriptor, void* bytes, std::size_t size, off_t at);
    ssize_t __real_write(int descriptor, const void* bytes, std::size_t size);
    int __real_fstat(int descriptor, struct stat* status);
    int __real_fchmod(int descriptor, mode_t mode);
    int __real_close(int descriptor);
    int __real_rename(const char* from, const char* to);
}

namespace
{
using namespace tessarine;

bool MustCallFail(int error)
{
    return MustFailWith(GetFaultPlan(FaultKind::FileCall), error);
}
}

extern "C"
{
    void* __wrap_malloc(std::size_t size)
    {
        return GetFaultPlan(FaultKind::Memory).MustFail() ? nullptr : __real_malloc(size);
    }

    int __wrap_open(const char* path, int flags, ...)
    {
        va_list rest;
        va_start(rest, flags);
        const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
        va_end(rest);
        return MustCallFail(EACCES) ? -1 : __real_open(path, flags, mode);
    }

    ssize_t __wrap_read(int descriptor, void* bytes, std::size_t size)
    {
        return MustCallFail(EIO) ? -1 : __real_read(descriptor, bytes, size);
    }

    ssize_t __wrap_pread(int descriptor, void* bytes, std::size_t size, off_t at)
    {
        return MustCallFail(EIO) ? -1 : __real_pread(descriptor, bytes, size, at);
    }

    ssize_t __wrap_write(int descriptor, const void* bytes, std::size_t size)
    {
        return WriteOrFail(GetFaultPlan(FaultKind::FileCall), __real_write, descriptor, bytes, size);
    }

    int __wrap_fstat(int descriptor, struct stat* status)
    {
        return MustCallFail(EIO) ? -1 : __real_fstat(descriptor, status);
    }

    int __wrap_fchmod(int descriptor, mode_t mode)
    {
        return MustCallFail(EPERM) ? -1 : __real_fchmod(descriptor, mode);
    }

    int __wrap_close(int descriptor)
    {
        return CloseOrFail(GetFaultPlan(FaultKind::FileCall), __real_close, descriptor);
    }

    int __wrap_rename(const char* from, const char* to)
    {
        return MustCallFail(EROFS) ? -1 : __real_rename(from, to);
    }
}

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
