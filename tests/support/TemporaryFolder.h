#pragma once
#include "File.h"
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tessarine
{
/// An empty folder of its own for a test, removed with all that is in it.
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "tessarine-test-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr)
        {
            throw std::runtime_error("no temporary folder could be made");
        }
        m_Path = std::filesystem::canonical(name);
    }
    ~TemporaryFolder()
    {
        std::error_code error;
        std::filesystem::remove_all(m_Path, error);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& GetPath() const { return m_Path; }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return m_Path / name; }

    /// Writes a file, and the folders that lead to it.
    std::filesystem::path Write(const std::filesystem::path& name, std::string_view bytes) const
    {
        std::filesystem::path path = m_Path / name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }

    /// The whole of a file; empty where there is none.
    std::string Read(const std::filesystem::path& name) const
    {
        std::ostringstream text;
        text << std::ifstream(m_Path / name, std::ios::binary).rdbuf();
        return text.str();
    }

    bool Has(const std::filesystem::path& name) const { return std::filesystem::exists(m_Path / name); }

    /// The names of all entries, to see that nothing was left behind; or of those of a folder in it.
    std::set<std::string> List(const std::filesystem::path& folder = {}) const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_Path / folder))
        {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

private:
    std::filesystem::path m_Path;
};

/// A temporary folder that is the current one while it lives.
class TemporaryCurrentFolder : public TemporaryFolder
{
public:
    TemporaryCurrentFolder() { SetCurrentFolder(GetPath()); }

private:
    CurrentFolderGuard m_Guard;
};
}
