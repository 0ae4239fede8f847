#pragma once
#include <filesystem>
#include <optional>

namespace tessarine
{
/// A lock that one process holds at a time, and that ends with the process however it ends.
class FileLock
{
public:
    /// Makes the file if it is not there.
    /// @return nothing while another holds it, or where the file cannot be had or locked, or was removed meanwhile
    static std::optional<FileLock> Take(const std::filesystem::path& path);

    ~FileLock();
    FileLock(FileLock&& other) noexcept;
    FileLock& operator=(FileLock&& other) noexcept;
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

private:
    explicit FileLock(int descriptor) : m_nDescriptor(descriptor) {}

    int m_nDescriptor;
};
}
