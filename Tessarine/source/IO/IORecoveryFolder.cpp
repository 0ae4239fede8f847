#include "IORecoveryFolder.h"
#include "File.h"
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace tessarine
{
namespace
{
namespace fs = std::filesystem;

constexpr char kModelName[] = "recovered.obj";
constexpr char kLockName[] = "lock";
constexpr char kPrefix[] = "window-";
constexpr char kUnfinished[] = ".part";

/// Until it is locked nobody may take it for an abandoned one.
fs::path MakeUnlisted(const fs::path& parent)
{
    std::error_code error;
    fs::create_directories(parent, error);
    std::string name = (parent / ".new-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) // for its owner alone
    {
        RefuseWriting(parent, error ? error : std::error_code(errno, std::generic_category()));
    }
    return name;
}

std::string GetListedName(const fs::path& unlisted)
{
    const std::string name = unlisted.filename().string();
    return kPrefix + std::to_string(::getpid()) + name.substr(name.rfind('-'));
}

/// The number that a sub-folder has for its name; 0 for any other name.
std::uint64_t NumberOf(const fs::path& path)
{
    const std::string name = path.filename().string();
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

std::uint64_t FindLast(const fs::path& folder)
{
    std::uint64_t last = 0;
    for (const fs::path& entry : ListEntries(folder))
    {
        std::error_code error;
        const std::uint64_t number = NumberOf(entry);
        if (number > last && fs::is_regular_file(entry / kModelName, error))
        {
            last = number;
        }
    }
    return last;
}

bool IsWindowFolder(const fs::path& path)
{
    std::error_code error;
    return path.filename().string().starts_with(kPrefix) && fs::is_directory(fs::symlink_status(path, error));
}
}

IORecoveryFolder::IORecoveryFolder(fs::path path, FileLock lock)
    : m_Path(std::move(path)), m_Lock(std::move(lock)), m_nLast(FindLast(m_Path))
{
}

IORecoveryFolder IORecoveryFolder::Create(const fs::path& parent)
{
    const fs::path unlisted = MakeUnlisted(parent);
    auto lock = FileLock::Take(unlisted / kLockName);
    const fs::path listed = parent / GetListedName(unlisted);
    std::error_code error;
    if (lock)
    {
        fs::rename(unlisted, listed, error);
    }
    else
    {
        error = std::make_error_code(std::errc::no_lock_available);
    }
    if (error)
    {
        RemoveTree(unlisted);
        RefuseWriting(listed, error);
    }
    return {listed, std::move(*lock)};
}

std::vector<IORecoveryFolder> IORecoveryFolder::FindAbandoned(const fs::path& parent)
{
    std::vector<IORecoveryFolder> found;
    for (const fs::path& path : ListEntries(parent))
    {
        auto lock = IsWindowFolder(path) ? FileLock::Take(path / kLockName) : std::nullopt;
        if (!lock)
        {
            continue;
        }
        IORecoveryFolder folder(path, std::move(*lock));
        if (folder.m_nLast == 0)
        {
            folder.Remove();
            continue;
        }
        folder.RemoveAllBut(folder.m_nLast);
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

void IORecoveryFolder::RemoveAllBut(std::uint64_t number) const
{
    for (const fs::path& entry : ListEntries(m_Path))
    {
        if (entry.filename() != kLockName && entry.filename() != std::to_string(number))
        {
            RemoveTree(entry);
        }
    }
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

void IORecoveryFolder::Remove() noexcept
{
    RemoveTree(m_Path);
}
}
