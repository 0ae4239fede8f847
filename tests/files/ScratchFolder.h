#pragma once
#include "File.h"
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <unistd.h>

namespace tessarine
{
/// An empty folder that is the current one while this lives, and gone afterwards.
class ScratchFolder
{
public:
    ScratchFolder() : m_Path(MakeName())
    {
        std::filesystem::create_directories(m_Path);
        std::filesystem::current_path(m_Path);
    }
    ~ScratchFolder()
    {
        std::error_code error;
        std::filesystem::current_path(m_Path.parent_path(), error);
        std::filesystem::remove_all(m_Path, error);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& GetPath() const { return m_Path; }

    void Write(const std::string& name, std::string_view text) const
    {
        std::ofstream(m_Path / name, std::ios::binary) << text;
    }
    std::string Read(const std::string& name) const { return ReadFile(m_Path / name); }

private:
    static std::filesystem::path MakeName()
    {
        static std::atomic<int> counter{0};
        return std::filesystem::temp_directory_path() /
               ("tessarine-files-" + std::to_string(::getpid()) + "-" + std::to_string(++counter));
    }

    CurrentFolderGuard m_Before;
    std::filesystem::path m_Path;
};
}
