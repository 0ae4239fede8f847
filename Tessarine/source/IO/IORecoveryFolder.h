#pragma once
#include "FileLock.h"
#include <cstdint>
#include <filesystem>
#include <functional>
#include <vector>

namespace tessarine
{
/// The folder in which one window keeps its model for the case that its process is ended.
///
/// Its name has the process's number, and a lock in it tells whether that process still lives. A model is written into
/// a sub-folder of its own under a temporary name, flushed and renamed, and only then goes the one before it: there is
/// always one that is whole, even if the machine goes off.
class IORecoveryFolder
{
public:
    /// A new one in a folder that is made if it is not there, for this user alone. Throws FileError.
    static IORecoveryFolder Create(const std::filesystem::path& parent);

    /// Those of processes that have ended, the latest first, and nobody else's from now on. What such a process left
    /// without a model, or half made or half removed, is removed; what cannot be looked through, or has something of
    /// somebody else beside the models, stays as it is.
    static std::vector<IORecoveryFolder> FindAbandoned(const std::filesystem::path& parent);

    /// Has a model written in place of the one before. Throws what `write` throws, and FileError; the one before
    /// stays then.
    /// @param write gets the name of the file that is to hold the model; others may lie beside it
    void Replace(const std::function<void(const std::filesystem::path&)>& write);

    /// Whether nobody has removed it meanwhile.
    bool IsThere() const noexcept;

    /// The file of the last model that is whole; empty where there is none.
    std::filesystem::path GetModel() const;
    /// When it was written.
    std::filesystem::file_time_type GetTime() const;

    /// Removes the folder, as far as it can be removed; where somebody else has put something beside the models, these
    /// alone, and it stays under another name. Without that it stays, as if the process were killed.
    void Remove() noexcept;

private:
    /// @param last the number of the last model that it has; 0 for none
    IORecoveryFolder(std::filesystem::path path, FileLock lock, std::uint64_t last);
    std::filesystem::path GetFolder(std::uint64_t number) const;
    void RemoveUnlessShared();

    std::filesystem::path m_Path;
    std::filesystem::path m_Unlisted; ///< its name while it is removed
    FileLock m_Lock;
    std::uint64_t m_nLast = 0; ///< the number of the last model; 0 for none
};
}
