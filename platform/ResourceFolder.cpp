#include "ResourceFolder.h"
#include "Path.h"
#include <system_error>
#include <utility>

namespace tessarine
{
namespace
{
namespace fs = std::filesystem;

constexpr const char* kFolderOfResources = "res";

fs::path& GetResourceFolder()
{
    static fs::path folder;
    return folder;
}

bool Exists(const fs::path& path)
{
    std::error_code error;
    return fs::exists(path, error);
}
}

fs::path ResolveResource(const std::string& name)
{
    fs::path path = ResolveForReading(name);
    const fs::path& own = GetResourceFolder();
    if (own.empty() || path.is_absolute() || Exists(path))
    {
        return path;
    }
    fs::path ownPath = ResolveForReading((own / name).string());
    return Exists(ownPath) ? ownPath : path;
}

void SetResourceFolder(fs::path folder)
{
    GetResourceFolder() = std::move(folder);
}

fs::path FindResourceFolder()
{
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    return error ? fs::path() : FindResourceFolder(program.parent_path());
}

fs::path FindResourceFolder(const fs::path& programFolder)
{
    for (const fs::path& folder : {programFolder, programFolder.parent_path() / "share" / "tessarine"})
    {
        if (Exists(folder / kFolderOfResources))
        {
            return folder;
        }
    }
    return {};
}
}
