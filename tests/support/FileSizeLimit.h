#pragma once
#include <sys/resource.h>

namespace tessarine
{
/// Lets no file grow beyond `bytes`: what a full disk looks like.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        ::getrlimit(RLIMIT_FSIZE, &m_Before);
        rlimit lower = m_Before;
        lower.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &lower);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &m_Before); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_Before{};
};
}
