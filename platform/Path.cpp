#include "Path.h"
#include "File.h"
#include <algorithm>
#include <optional>
#include <string_view>
#include <sys/stat.h>
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

bool DiffersOnlyInCase(std::string_view a, std::string_view b)
{
    const auto fold = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char left, char right) { return fold(left) == fold(right); });
}

bool IsEntry(const std::string& path)
{
    struct stat status = {};
    return ::lstat(path.c_str(), &status) == 0;
}

/// The entries of a folder ("" is the current one) that differ from `part` only in case.
std::vector<std::string> FindInAnyCase(const std::string& folder, std::string_view part)
{
    std::vector<std::string> found;
    std::error_code error;
    fs::directory_iterator entry(folder.empty() ? "." : folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error))
    {
        if (std::string name = entry->path().filename().string(); DiffersOnlyInCase(name, part))
        {
            found.push_back(std::move(name));
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
