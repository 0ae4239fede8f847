#pragma once
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace tessarine
{
/// A file could not be opened, read or written. what() is one sentence with the path and the system's reason.
class FileError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// How much is read of some files together.
struct ReadBudget
{
    std::size_t left; ///< bytes. What is read is taken from them, also of a file that is refused in the end.
    const char* refusal; ///< what is said of a file with more. Completes "cannot read NAME: ".
};

/// The whole of an ordinary file (no folder, device or pipe). Symbolic links are followed.
/// Throws FileError when it is not there, is none, cannot be read to its end, or has none: up to 64 MiB, or what its
/// size tells if that is more, and up to half of the machine's memory.
std::string ReadFile(const std::filesystem::path& path);

/// The same, and refused when it has more bytes than are left. Where none are left it is not opened.
std::string ReadFile(const std::filesystem::path& path, ReadBudget& budget);

/// What can be known of an ordinary file before it is read.
struct FileHead
{
    std::uintmax_t size = 0;
    std::string bytes; ///< the first ones, as many as were asked for if the file has them
};

/// Throws FileError as ReadFile does.
FileHead ReadFileHead(const std::filesystem::path& path, std::size_t bytes);

/// No stream gives more: a device may have no end.
inline constexpr std::size_t kMostStreamBytes = std::size_t{64} << 20U;

/// Everything that an ordinary file, a pipe or a device gives up to its end, which may have to be waited for.
/// Throws FileError when it cannot be opened or read, is a folder, or gives too much.
std::string ReadStream(const std::filesystem::path& path);

/// A file that appears under its name only when it is complete: it is written beside the target under a
/// temporary name and renamed by Commit. Without Commit nothing is left and an older file stays as it was.
class ReplacingFile
{
public:
    /// The new file has the permissions of the one that it replaces; a symbolic link is kept and its file
    /// replaced. Throws FileError when the folder cannot be written, or when the target is no ordinary file.
    explicit ReplacingFile(std::filesystem::path target);
    ~ReplacingFile();
    ReplacingFile(const ReplacingFile&) = delete;
    ReplacingFile& operator=(const ReplacingFile&) = delete;

    /// Buffered. Throws FileError.
    void Write(std::string_view bytes);

    /// Hands the system what is pending, behind which nothing can be written: what the disk has no room for has
    /// failed then. For files that are to take their names together. Throws FileError.
    void Finish();

    /// Finishes the file, and renames it. Throws FileError. It does not wait for the disk: a loss of power soon
    /// after can lose the new file.
    void Commit();

private:
    void CreateTemporary(unsigned permissions);
    void WritePending();
    void Discard() noexcept;

    std::filesystem::path m_Name;      ///< as it was asked for, for the messages
    std::filesystem::path m_Target;    ///< absolute, behind every symbolic link
    std::filesystem::path m_Temporary; ///< empty when there is none
    std::string m_Pending;
    int m_nDescriptor = -1;
};

/// Adds the names of a folder's entries, in no order. Unlike the library's iterators it can run out of memory.
/// @return whether they are all of them
bool ListFolder(const std::filesystem::path& folder, std::vector<std::string>& names);

/// Removes a file, or a folder with all that is in it, as far as that can be removed. Follows no symbolic link, and
/// needs no memory of its own.
void RemoveTree(const std::filesystem::path& path) noexcept;

/// Throws FileError: the path cannot be written, and why.
[[noreturn]] void RefuseWriting(const std::filesystem::path& path, const std::error_code& error);

/// Waits until the disk has what was written to a file, or the entries of a folder. Throws FileError.
void FlushToDisk(const std::filesystem::path& path);

/// Lets the signals that a user ends a program with take unfinished files along. For the start of a program that has
/// few of them in work at a time.
void RemoveTemporaryFilesOnSignals();

/// Throws FileError when the current folder is no longer there.
std::filesystem::path GetCurrentFolder();

/// Throws FileError.
void SetCurrentFolder(const std::filesystem::path& folder);

/// The same for the folder of a file that is going to be opened, which will say what is wrong with it.
///
/// Fails   The folder stays the one that it was.
void TrySetCurrentFolder(const std::filesystem::path& folder) noexcept;

/// Makes the current folder of its construction current again at its end, also one that was moved or removed.
class CurrentFolderGuard
{
public:
    /// Throws FileError when the folder could not be entered again.
    CurrentFolderGuard();
    ~CurrentFolderGuard();
    CurrentFolderGuard(const CurrentFolderGuard&) = delete;
    CurrentFolderGuard& operator=(const CurrentFolderGuard&) = delete;

private:
    int m_nFolder;
};
}
