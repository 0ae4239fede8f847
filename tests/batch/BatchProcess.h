#pragma once
#include <filesystem>
#include <string>
#include <vector>

namespace tessarine
{
/// A folder of its own for one test, removed with all that is in it.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& GetPath() const { return m_Path; }
    void Write(const std::string& name, const std::string& text) const;
    std::string Read(const std::string& name) const;
    bool Has(const std::string& name) const;
    /// The names in it, sorted.
    std::vector<std::string> GetNames() const;

private:
    std::filesystem::path m_Path;
};

/// Where a process's standard output goes, when the test does not read it.
enum class OutputTo
{
    Test,
    FullDisk,
    ClosedPipe,
    Nowhere ///< the stream is closed from the start
};

/// What a process left behind.
struct ProcessResult
{
    int status = -1; ///< the exit status; 128 + N when signal N ended it
    std::string output;
    std::string errors;
};

/// Runs tessarine-batch in the folder and waits for its end.
ProcessResult RunBatch(const TemporaryFolder& folder, const std::vector<std::string>& arguments,
                       const std::string& input = "", OutputTo outputTo = OutputTo::Test);

/// (1,1,1), (1,-1,-1), (-1,1,-1), (-1,-1,1): centred, of extent 2, so that it stands as it is in the unit
/// cube.
inline constexpr char kTetrahedron[] = "v 1 1 1\nv 1 -1 -1\nv -1 1 -1\nv -1 -1 1\n"
                                       "f 1 2 3\nf 1 4 2\nf 1 3 4\nf 2 4 3\n";
}
