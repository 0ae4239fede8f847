#include "Path.h"
#include "File.h"
#include <algorithm>
#include <ctime>
#include <iterator>
#include <list>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <unordered_map>
#include <vector>

namespace tessarine
{
namespace
{
namespace fs = std::filesystem;

std::string WithSlashes(std::string name)
{
    std::replace(name.begin(), name.end(), '\\', '/');
    return name;
}

std::string Fold(std::string_view name)
{
    std::string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return folded;
}

bool IsEntry(const std::string& path)
{
    struct stat status = {};
    return ::lstat(path.c_str(), &status) == 0;
}

bool IsSameTime(const timespec& a, const timespec& b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

/// The names of a folder's entries by their folded form.
class FolderListing
{
public:
    /// @param status the folder's, asked for before
    FolderListing(const std::string& folder, const struct stat& status)
        : m_nListed(std::time(nullptr)), m_Status(status)
    {
        std::vector<std::string> names;
        m_bWhole = ListFolder(folder, names);
        for (std::string& name : names)
        {
            std::string folded = Fold(name);
            m_Names.emplace(std::move(folded), std::move(name));
        }
    }

    /// Whether it serves as long as the folder has the same time of change. Soon after a change the next one
    /// can have the same time: file systems count in up to two seconds.
    bool MayBeKept() const
    {
        constexpr std::time_t kCoarsestClock = 2;
        return m_bWhole && m_Status.st_mtim.tv_sec + kCoarsestClock < m_nListed;
    }

    /// Whether the folder with this status holds what was listed.
    bool IsOf(const struct stat& now) const
    {
        return now.st_dev == m_Status.st_dev && now.st_ino == m_Status.st_ino &&
               IsSameTime(now.st_mtim, m_Status.st_mtim) && IsSameTime(now.st_ctim, m_Status.st_ctim);
    }

    /// The entries that differ from `part` only in case.
    std::vector<std::string> Find(std::string_view part) const
    {
        std::vector<std::string> found;
        const auto [first, last] = m_Names.equal_range(Fold(part));
        std::transform(first, last, std::back_inserter(found), [](const auto& name) { return name.second; });
        return found;
    }

private:
    std::time_t m_nListed;
    struct stat m_Status;
    bool m_bWhole = false;
    std::unordered_multimap<std::string, std::string> m_Names;
};

/// The entries of a folder ("" is the current one) that differ from `part` only in case. The folders that
/// were listed last are kept, as a model asks for picture after picture.
std::vector<std::string> FindInAnyCase(const std::string& folder, std::string_view part)
{
    constexpr std::size_t kMostFolders = 8;
    thread_local std::list<FolderListing> listings; // the latest first
    const std::string path = folder.empty() ? "." : folder;
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
    {
        return {};
    }
    const auto known = std::find_if(listings.begin(), listings.end(),
                                    [&](const FolderListing& listing) { return listing.IsOf(status); });
    if (known != listings.end())
    {
        listings.splice(listings.begin(), listings, known);
        return known->Find(part);
    }
    FolderListing listing(path, status);
    auto found = listing.Find(part);
    if (listing.MayBeKept())
    {
        listings.push_front(std::move(listing));
        if (listings.size() > kMostFolders)
        {
            listings.pop_back();
        }
    }
    return found;
}

/// The entry that `part` means in `folder`, or nothing.
std::optional<std::string> FindPart(const std::string& folder, std::string_view part)
{
    if (part == "." || part == ".." || IsEntry(folder + std::string(part)))
    {
        return std::string(part);
    }
    auto found = FindInAnyCase(folder, part);
    if (found.size() > 1)
    {
        std::sort(found.begin(), found.end());
        throw FileError("cannot tell which file " + folder + std::string(part) + " means: there are " +
                        folder + found[0] + " and " + folder + found[1] + "; rename one of them");
    }
    return found.empty() ? std::nullopt : std::optional(found.front());
}

/// Looks up folder by folder. A part without an entry leaves nothing.
std::optional<std::string> Find(std::string_view name)
{
    std::string real;
    while (!name.empty())
    {
        const std::size_t slash = std::min(name.find('/'), name.size());
        if (slash > 0)
        {
            const auto entry = FindPart(real, name.substr(0, slash));
            if (!entry)
            {
                return std::nullopt;
            }
            real += *entry;
        }
        if (slash < name.size() && !real.ends_with('/'))
        {
            real += '/';
        }
        name.remove_prefix(std::min(slash + 1, name.size()));
    }
    return real;
}
}

fs::path ResolveForReading(const std::string& name)
{
    const std::string asked = WithSlashes(name);
    return Find(asked).value_or(asked);
}

fs::path ResolveForWriting(const std::string& name)
{
    const std::string asked = WithSlashes(name);
    const std::size_t lastPart = asked.rfind('/') + 1; // 0 where there is no folder
    const auto folder = Find(std::string_view(asked).substr(0, lastPart));
    return folder ? *folder + asked.substr(lastPart) : asked;
}
}
