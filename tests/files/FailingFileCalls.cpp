// These functions stand before those of the C library, also for the C++ library.
#include "FailingFileCalls.h"
#include "FailedCalls.h"
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessarine
{
namespace
{
FaultPlan g_FileCallPlan;
std::vector<std::string>* g_pFlushes = nullptr;

bool MustCallFail(int error)
{
    return MustFailWith(g_FileCallPlan, error);
}

void NoteRenaming(const char* to)
{
    if (g_pFlushes != nullptr)
    {
        g_pFlushes->push_back(std::string("rename ") + to);
    }
}

void NoteFlush(int descriptor)
{
    if (g_pFlushes != nullptr)
    {
        const std::filesystem::path link = "/proc/self/fd/" + std::to_string(descriptor);
        g_pFlushes->push_back("fsync " + std::filesystem::read_symlink(link).string());
    }
}

/// The one that is hidden here.
template <class TFunction>
TFunction* FindReal(const char* name)
{
    return reinterpret_cast<TFunction*>(::dlsym(RTLD_NEXT, name));
}
}

FaultPlan& GetFileCallPlan()
{
    return g_FileCallPlan;
}

FlushLog::FlushLog()
{
    g_pFlushes = &m_Lines;
}

FlushLog::~FlushLog()
{
    g_pFlushes = nullptr;
}
}

using tessarine::FindReal;
using tessarine::MustCallFail;
using tessarine::NoteFlush;
using tessarine::NoteRenaming;

extern "C"
{
    int open(const char* path, int flags, ...)
    {
        static auto* const real = FindReal<int(const char*, int, ...)>("open");
        va_list rest;
        va_start(rest, flags);
        const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
        va_end(rest);
        return MustCallFail(EMFILE) ? -1 : real(path, flags, mode);
    }

    ssize_t write(int descriptor, const void* bytes, size_t size)
    {
        static auto* const real = FindReal<ssize_t(int, const void*, size_t)>("write");
        return tessarine::WriteOrFail(tessarine::GetFileCallPlan(), real, descriptor, bytes, size);
    }

    int close(int descriptor)
    {
        static auto* const real = FindReal<int(int)>("close");
        return tessarine::CloseOrFail(tessarine::GetFileCallPlan(), real, descriptor);
    }

    /// Waiting for the disk, often for a hundredth of a second, would show nothing more.
    int fsync(int descriptor)
    {
        NoteFlush(descriptor);
        return MustCallFail(EIO) ? -1 : 0;
    }

    int flock(int descriptor, int operation) noexcept
    {
        static auto* const real = FindReal<int(int, int)>("flock");
        return MustCallFail(ENOLCK) ? -1 : real(descriptor, operation);
    }

    int fstat(int descriptor, struct stat* status) noexcept
    {
        static auto* const real = FindReal<int(int, struct stat*)>("fstat");
        return MustCallFail(EIO) ? -1 : real(descriptor, status);
    }

    int stat(const char* path, struct stat* status) noexcept
    {
        static auto* const real = FindReal<int(const char*, struct stat*)>("stat");
        return MustCallFail(EIO) ? -1 : real(path, status);
    }

    int lstat(const char* path, struct stat* status) noexcept
    {
        static auto* const real = FindReal<int(const char*, struct stat*)>("lstat");
        return MustCallFail(EIO) ? -1 : real(path, status);
    }

    int mkdir(const char* path, mode_t mode) noexcept
    {
        static auto* const real = FindReal<int(const char*, mode_t)>("mkdir");
        return MustCallFail(ENOSPC) ? -1 : real(path, mode);
    }

    char* mkdtemp(char* path) noexcept
    {
        static auto* const real = FindReal<char*(char*)>("mkdtemp");
        return MustCallFail(ENOSPC) ? nullptr : real(path);
    }

    int symlink(const char* target, const char* path) noexcept
    {
        static auto* const real = FindReal<int(const char*, const char*)>("symlink");
        return MustCallFail(EPERM) ? -1 : real(target, path);
    }

    int rename(const char* from, const char* to) noexcept
    {
        static auto* const real = FindReal<int(const char*, const char*)>("rename");
        NoteRenaming(to);
        return MustCallFail(EROFS) ? -1 : real(from, to);
    }

    int remove(const char* path) noexcept
    {
        static auto* const real = FindReal<int(const char*)>("remove");
        return MustCallFail(EIO) ? -1 : real(path);
    }

    DIR* opendir(const char* path)
    {
        static auto* const real = FindReal<DIR*(const char*)>("opendir");
        return MustCallFail(EMFILE) ? nullptr : real(path);
    }

    dirent* readdir(DIR* folder)
    {
        static auto* const real = FindReal<dirent*(DIR*)>("readdir");
        return MustCallFail(EIO) ? nullptr : real(folder);
    }
}
