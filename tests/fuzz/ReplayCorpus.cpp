// Feeds every file of the folder that is named on the command line to a fuzz target, in the order of their
// names.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace
{
std::vector<std::filesystem::path> ListFiles(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::path> files;
    // A target may have a current folder of its own.
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::absolute(folder)))
    {
        if (entry.is_regular_file())
        {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

void Replay(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> read{std::istreambuf_iterator<char>(stream), {}};
    const std::vector<std::uint8_t> bytes(read.begin(), read.end());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}
}

int main(int argc, char** argv)
{
    const std::vector<std::filesystem::path> files =
        argc == 2 ? ListFiles(argv[1]) : std::vector<std::filesystem::path>();
    for (const auto& file : files)
    {
        std::printf("%s\n", file.filename().c_str());
        std::fflush(stdout); // the name of the file that ends the program must be seen
        Replay(file);
    }
    std::printf("corpus: %s, %zu files\n", std::filesystem::path(argv[0]).filename().c_str(), files.size());
    return files.empty() ? 1 : 0;
}
