// A large model through the batch tool: imported, subdivided once, simplified, exported. Times and peak memory of each
// step, and the bound that all of it keeps. The model has the noise of a scanner: without any, the costs of a
// simplification are nothing but rounding, and a few vertices swallow thousands of others, which takes hours.
//   bench-load [FACES [GIBIBYTES]]
#include "Models.h"
#include "Timing.h"
#include <fstream>
#include <sys/resource.h>

using namespace tessarine::bench;

namespace
{
constexpr double kGibibyte = 1024.0 * 1024.0 * 1024.0;
constexpr double kNoise = 0.002; ///< of a model 2.8 across, whatever the number of faces
constexpr int kPanes = 7;        ///< lines that `status` prints

/// The batch tool at work, in no more memory than it is given.
class BatchTool
{
public:
    BatchTool(std::vector<std::string> words, double bytes)
    {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0)
        {
            throw std::runtime_error("no pipe");
        }
        m_nProcess = fork();
        if (m_nProcess == 0)
        {
            dup2(ends[1], STDOUT_FILENO);
            close(ends[0]);
            close(ends[1]);
            Become(words, static_cast<rlim_t>(bytes));
        }
        close(ends[1]);
        m_pOutput = fdopen(ends[0], "r");
    }
    ~BatchTool() { std::fclose(m_pOutput); }
    BatchTool(const BatchTool&) = delete;
    BatchTool& operator=(const BatchTool&) = delete;

    /// @return whether the step came to its end; else the tool has ended, or is about to
    bool WaitForStatus()
    {
        int lines = 0;
        for (int c = std::fgetc(m_pOutput); c != EOF; c = std::fgetc(m_pOutput))
        {
            if (c == '\n' && ++lines == kPanes)
            {
                return true;
            }
        }
        return false;
    }

    /// The most memory since the last call.
    double TakePeak()
    {
        const std::string folder = "/proc/" + std::to_string(m_nProcess) + "/";
        double peak = 0.0;
        std::ifstream status(folder + "status");
        for (std::string line; std::getline(status, line);)
        {
            if (line.starts_with("VmHWM:"))
            {
                peak = 1024.0 * std::stod(line.substr(6));
            }
        }
        std::ofstream(folder + "clear_refs") << 5; // the high-water mark starts anew
        return peak;
    }

    /// @return its exit status
    int Wait()
    {
        int status = 0;
        waitpid(m_nProcess, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

private:
    [[noreturn]] static void Become(std::vector<std::string>& words, rlim_t bytes)
    {
        const rlimit limit{bytes, bytes};
        setrlimit(RLIMIT_AS, &limit);
        std::vector<char*> pointers;
        for (std::string& word : words)
        {
            pointers.push_back(word.data());
        }
        pointers.push_back(nullptr);
        execv(TESSARINE_BATCH, pointers.data());
        _exit(127);
    }

    pid_t m_nProcess = -1;
    std::FILE* m_pOutput = nullptr;
};
}

int main(int argc, char** argv)
{
    const int faces = argc > 1 ? std::stoi(argv[1]) : 5000000;
    const double limit = argc > 2 ? std::stod(argv[2]) : 20.0;
    const TemporaryFolder folder;
    const std::string model = WriteNoisyModel(folder.GetPath(), faces, kNoise).string();
    const std::string result = (folder.GetPath() / "result.obj").string();
    const std::vector<std::string> steps{"import", "subdivide-loop", "simplify 0.5", "export"};
    std::printf("A model of %d faces through the batch tool, in %.0f GiB of address space\n", faces, limit);
    std::fflush(stdout);

    BatchTool tool({TESSARINE_BATCH, "-q", "import", model, "status", "subdivide-loop", "status", "simplify",
                    "0.5", "status", "export", result, "status"},
                   limit * kGibibyte);
    double most = 0.0;
    double begin = ReadClock(CLOCK_MONOTONIC);
    for (const std::string& step : steps)
    {
        if (!tool.WaitForStatus())
        {
            std::printf("  %-16s failed: exit status %d\n", step.c_str(), tool.Wait());
            return 1;
        }
        const double peak = tool.TakePeak();
        const double now = ReadClock(CLOCK_MONOTONIC);
        std::printf("  %-16s %8.1f s   at most %6.2f GiB\n", step.c_str(), now - begin, peak / kGibibyte);
        std::fflush(stdout);
        most = std::max(most, peak);
        begin = now;
    }
    const bool isDone = tool.Wait() == 0;
    return Judge("load: most memory of any step, in GiB", most / kGibibyte, limit) && isDone ? 0 : 1;
}
