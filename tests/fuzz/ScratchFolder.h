#pragma once
#include "File.h"
#include <cstdlib>
#include <filesystem>
#include <string>

namespace tessarine
{
/// A folder of the process's own, made the current one and removed at its end, for targets that read files.
class ScratchFolder
{
public:
    ScratchFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "tessarine-fuzz-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr)
        {
            std::abort();
        }
        m_Path = name;
        SetCurrentFolder(m_Path);
    }
    ~ScratchFolder()
    {
        std::error_code error;
        std::filesystem::remove_all(m_Path, error);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

private:
    std::filesystem::path m_Path;
};
}
