#include "IORecoveryFolder.h"
#include "File.h"
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>

namespace tessarine
{
namespace
{
namespace fs = std::filesystem;

constexpr char kModelName[] = "recovered.obj";
constexpr char kLockName[] = "lock";
constexpr std::string_view kPrefix = "window-";
constexpr char kUnfinished[] = ".part";
constexpr char kUnlisted = '.'; ///< before the name of one that is being made or removed
constexpr std::chrono::hours kLongestMaking{1};

/// With those that lead to it, so that a loss of power leaves them there.
void MakeFolder(const fs::path& folder)
{
    std::error_code error;
    std::vector<fs::path> holders;
    for (fs::path missing = folder;
         missing.has_relative_path() && missing.has_parent_path() && !fs::exists(missing, error);
         missing = missing.parent_path())
    {
        holders.push_back(missing.parent_path());
    }
    fs::create_directories(folder, error);
    if (error)
    {
        RefuseWriting(folder, error);
    }
    for (const fs::path& holder : holders)
    {
        FlushToDisk(holder);
    }
}

/// Until it is locked nobody may take it for an abandoned one.
fs::path MakeUnlisted(const fs::path& parent)
{
    std::string name =
        (parent / (kUnlisted + std::string(kPrefix) + std::to_string(::getpid()) + "-XXXXXX")).string();
    if (::mkdtemp(name.data()) == nullptr) // for its owner alone
    {
        RefuseWriting(parent, std::error_code(errno, std::generic_category()));
    }
    return name;
}

/// The number that is the name of a model's folder; 0 for any other name.
std::uint64_t NumberOf(std::string_view name)
{
    std::uint64_t number = 0;
    const char* const end = name.data() + name.size();
    const auto [last, error] = std::from_chars(name.data(), end, number);
    return error == std::errc() && last == end ? number : 0;
}

/// What a folder has in it; nothing where it cannot be read.
std::vector<fs::path> ListEntries(const fs::path& folder)
{
    std::vector<std::string> names;
    ListFolder(folder, names);
    std::vector<fs::path> entries;
    entries.reserve(names.size());
    for (const std::string& name : names)
    {
        entries.push_back(folder / name);
    }
    return entries;
}

/// The number of the last model; 0 for none, nothing where that cannot be told.
std::optional<std::uint64_t> FindLast(const fs::path& folder)
{
    std::uint64_t last = 0;
    std::vector<std::string> names;
    if (!ListFolder(folder, names))
    {
        return std::nullopt;
    }
    for (const std::string& name : names)
    {
        const std::uint64_t number = NumberOf(name);
        std::error_code error;
        const auto type =
            number > last ? fs::status(folder / name / kModelName, error).type() : fs::file_type::not_found;
        if (type == fs::file_type::none)
        {
            return std::nullopt;
        }
        last = type == fs::file_type::regular ? number : last;
    }
    return last;
}

/// A process's number, and what the system has completed it with.
bool IsWindowName(std::string_view name)
{
    constexpr std::size_t kCompletion = std::string_view("-XXXXXX").size();
    if (!name.starts_with(kPrefix) || name.size() <= kPrefix.size() + kCompletion)
    {
        return false;
    }
    const std::size_t dash = name.size() - kCompletion;
    return name[dash] == '-' && NumberOf(name.substr(kPrefix.size(), dash - kPrefix.size())) != 0;
}

bool IsFolder(const fs::path& path)
{
    std::error_code error;
    return fs::is_directory(fs::symlink_status(path, error));
}

bool IsWindowFolder(const fs::path& path)
{
    return IsWindowName(path.filename().string()) && IsFolder(path);
}

/// One whose process was ended while it was made or removed.
bool IsLeftover(const fs::path& path)
{
    const std::string name = path.filename().string();
    std::error_code error;
    return name.front() == kUnlisted && IsWindowName(std::string_view(name).substr(1)) && IsFolder(path) &&
           fs::last_write_time(path, error) < fs::file_time_type::clock::now() - kLongestMaking && !error;
}

/// Something that a window makes in its folder.
bool IsOwnEntry(std::string name)
{
    if (name.ends_with(kUnfinished))
    {
        name.resize(name.size() - std::string_view(kUnfinished).size());
    }
    return name == kLockName || NumberOf(name) != 0;
}

/// With something that somebody else has put there, which is not this program's to remove, or may have where it cannot be
/// looked through.
bool IsShared(const fs::path& folder)
{
    std::vector<std::string> names;
    return !ListFolder(folder, names) || !std::all_of(names.begin(), names.end(), IsOwnEntry);
}

void RemoveModelsBut(std::uint64_t number, const fs::path& folder)
{
    for (const fs::path& entry : ListEntries(folder))
    {
        const std::string name = entry.filename().string();
        if (IsOwnEntry(name) && name != kLockName && name != std::to_string(number))
        {
            RemoveTree(entry);
        }
    }
}

void RemoveLeftover(const fs::path& path)
{
    const auto lock = IsShared(path) ? std::nullopt : FileLock::Take(path / kLockName);
    if (lock)
    {
        RemoveTree(path);
    }
}
}

IORecoveryFolder::IORecoveryFolder(fs::path path, FileLock lock, std::uint64_t last)
    : m_Path(std::move(path)),
      m_Unlisted(m_Path.parent_path() / (kUnlisted + m_Path.filename().string())),
      m_Lock(std::move(lock)),
      m_nLast(last)
{
}

IORecoveryFolder IORecoveryFolder::Create(const fs::path& parent)
{
    MakeFolder(parent);
    const fs::path unlisted = MakeUnlisted(parent);
    const fs::path listed = parent / unlisted.filename().string().substr(1);
    const fs::path* pThere = &unlisted;
    try
    {
        auto lock = FileLock::Take(unlisted / kLockName);
        if (!lock)
        {
            RefuseWriting(listed, std::make_error_code(std::errc::no_lock_available));
        }
        IORecoveryFolder folder(listed, std::move(*lock), 0);
        std::error_code error;
        fs::rename(unlisted, listed, error);
        if (error)
        {
            RefuseWriting(listed, error);
        }
        pThere = &listed;
        FlushToDisk(parent);
        return folder;
    }
    catch (...)
    {
        RemoveTree(*pThere);
        throw;
    }
}

std::vector<IORecoveryFolder> IORecoveryFolder::FindAbandoned(const fs::path& parent)
{
    std::vector<IORecoveryFolder> found;
    for (const fs::path& path : ListEntries(parent))
    {
        if (IsLeftover(path))
        {
            RemoveLeftover(path);
        }
        auto lock = IsWindowFolder(path) ? FileLock::Take(path / kLockName) : std::nullopt;
        const auto last = lock ? FindLast(path) : std::nullopt;
        if (!last)
        {
            continue;
        }
        IORecoveryFolder folder(path, std::move(*lock), *last);
        if (folder.m_nLast == 0)
        {
            folder.RemoveUnlessShared();
            continue;
        }
        RemoveModelsBut(folder.m_nLast, path);
        found.push_back(std::move(folder));
    }
    std::sort(found.begin(), found.end(),
              [](const IORecoveryFolder& a, const IORecoveryFolder& b) { return a.GetTime() > b.GetTime(); });
    return found;
}

fs::path IORecoveryFolder::GetFolder(std::uint64_t number) const
{
    return m_Path / std::to_string(number);
}

/// What has to be removed is named before: there may be no memory for it afterwards.
void IORecoveryFolder::Replace(const std::function<void(const fs::path&)>& write)
{
    const fs::path before = GetFolder(m_nLast);
    const fs::path whole = GetFolder(m_nLast + 1);
    const fs::path unfinished = whole.string() + kUnfinished;
    RemoveTree(unfinished);
    RemoveTree(whole); // one that could be neither flushed nor removed
    try
    {
        std::error_code error;
        if (!fs::create_directory(unfinished, error))
        {
            RefuseWriting(unfinished, error);
        }
        write(unfinished / kModelName);
        FlushToDisk(unfinished);
        fs::rename(unfinished, whole, error);
        if (error)
        {
            RefuseWriting(whole, error);
        }
        FlushToDisk(m_Path);
    }
    catch (...)
    {
        RemoveTree(unfinished);
        RemoveTree(whole);
        throw;
    }
    ++m_nLast;
    RemoveTree(before);
}

fs::path IORecoveryFolder::GetModel() const
{
    return m_nLast != 0 ? GetFolder(m_nLast) / kModelName : fs::path();
}

fs::file_time_type IORecoveryFolder::GetTime() const
{
    std::error_code gone;
    return fs::last_write_time(GetModel(), gone);
}

void IORecoveryFolder::RemoveUnlessShared()
{
    if (!IsShared(m_Path))
    {
        Remove();
    }
}

bool IORecoveryFolder::IsThere() const noexcept
{
    std::error_code error;
    return fs::status(m_Path, error).type() != fs::file_type::not_found;
}

/// Its name goes first: the lock may go before the model, which somebody else would be offered then.
void IORecoveryFolder::Remove() noexcept
{
    const bool isUnlisted = std::rename(m_Path.c_str(), m_Unlisted.c_str()) == 0;
    const fs::path& path = isUnlisted ? m_Unlisted : m_Path;
    try
    {
        if (IsShared(path))
        {
            RemoveModelsBut(0, path);
        }
        else
        {
            RemoveTree(path);
        }
    }
    catch (const std::bad_alloc&) // NOLINT(bugprone-empty-catch): nobody is offered it any more
    {
    }
}
}
