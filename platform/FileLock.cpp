#include "FileLock.h"
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tessarine
{
namespace
{
constexpr mode_t kOwnerOnly = 0600;

/// An ordinary file that its folder still has.
bool IsThere(int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink > 0;
}
}

std::optional<FileLock> FileLock::Take(const std::filesystem::path& path)
{
    const int descriptor =
        ::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, kOwnerOnly);
    if (descriptor < 0)
    {
        return std::nullopt;
    }
    FileLock lock(descriptor);
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0 || !IsThere(descriptor))
    {
        return std::nullopt;
    }
    return lock;
}

FileLock::~FileLock()
{
    if (m_nDescriptor >= 0)
    {
        ::close(m_nDescriptor);
    }
}

FileLock::FileLock(FileLock&& other) noexcept : m_nDescriptor(std::exchange(other.m_nDescriptor, -1)) {}

FileLock& FileLock::operator=(FileLock&& other) noexcept
{
    std::swap(m_nDescriptor, other.m_nDescriptor);
    return *this;
}
}
