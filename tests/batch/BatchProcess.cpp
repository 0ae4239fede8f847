#include "BatchProcess.h"
#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace tessarine
{
namespace
{
/// The streams of a process that is to be started.
class Streams
{
public:
    Streams() { posix_spawn_file_actions_init(&m_Actions); }
    ~Streams()
    {
        posix_spawn_file_actions_destroy(&m_Actions);
        if (m_nPipe != -1)
        {
            close(m_nPipe);
        }
    }
    Streams(const Streams&) = delete;
    Streams& operator=(const Streams&) = delete;

    void Connect(int stream, const std::filesystem::path& file, int mode)
    {
        posix_spawn_file_actions_addopen(&m_Actions, stream, file.c_str(), mode, 0600);
    }

    void ConnectOutput(OutputTo outputTo, const std::filesystem::path& file)
    {
        switch (outputTo)
        {
        case OutputTo::Test: return Connect(STDOUT_FILENO, file, O_WRONLY | O_CREAT | O_TRUNC);
        case OutputTo::FullDisk: return Connect(STDOUT_FILENO, "/dev/full", O_WRONLY);
        case OutputTo::ClosedPipe: return ConnectToClosedPipe();
        case OutputTo::Nowhere: posix_spawn_file_actions_addclose(&m_Actions, STDOUT_FILENO); return;
        }
    }

    void ConnectToTerminal(int stream, const std::string& name)
    {
        posix_spawn_file_actions_addopen(&m_Actions, stream, name.c_str(), O_RDWR | O_NOCTTY, 0);
    }

    void StartIn(const std::filesystem::path& folder)
    {
        posix_spawn_file_actions_addchdir_np(&m_Actions, folder.c_str());
    }

    const posix_spawn_file_actions_t* Get() const { return &m_Actions; }

private:
    void ConnectToClosedPipe()
    {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
        {
            throw std::runtime_error("no pipe");
        }
        close(ends[0]);
        m_nPipe = ends[1];
        posix_spawn_file_actions_adddup2(&m_Actions, m_nPipe, STDOUT_FILENO);
    }

    posix_spawn_file_actions_t m_Actions{};
    int m_nPipe = -1;
};

pid_t Start(const std::string& program, const std::vector<std::string>& arguments, const Streams& streams)
{
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    std::transform(words.begin(), words.end(), std::back_inserter(pointers),
                   [](std::string& word) { return word.data(); });
    pointers.push_back(nullptr);

    pid_t process = 0;
    if (posix_spawn(&process, program.c_str(), streams.Get(), nullptr, pointers.data(), environ) != 0)
    {
        throw std::runtime_error("cannot start " + program);
    }
    return process;
}

/// The reader's end of a terminal.
class Terminal
{
public:
    Terminal() : m_nMaster(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        if (m_nMaster == -1 || grantpt(m_nMaster) != 0 || unlockpt(m_nMaster) != 0)
        {
            throw std::runtime_error("no terminal");
        }
    }
    ~Terminal() { close(m_nMaster); }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    std::string GetName() const
    {
        const char* name = ptsname(m_nMaster); // none where they are not mounted
        return name != nullptr ? name : "";
    }

    /// Until nobody writes to it any more.
    std::string ReadAll() const
    {
        std::string text;
        std::array<char, 4096> piece{};
        for (ssize_t count = 0; (count = read(m_nMaster, piece.data(), piece.size())) > 0;)
        {
            text.append(piece.data(), static_cast<std::size_t>(count));
        }
        return text;
    }

private:
    int m_nMaster;
};

int WaitFor(pid_t process)
{
    int status = 0;
    if (waitpid(process, &status, 0) != process)
    {
        throw std::runtime_error("the process is lost");
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
}

ProcessResult RunBatch(const TemporaryFolder& folder, const std::vector<std::string>& arguments,
                       const std::string& input, OutputTo outputTo)
{
    return RunProgram(TESSARINE_BATCH, folder, arguments, input, outputTo);
}

ProcessResult RunProgram(const std::string& program, const TemporaryFolder& folder,
                         const std::vector<std::string>& arguments, const std::string& input,
                         OutputTo outputTo)
{
    const TemporaryFolder streamFolder;
    streamFolder.Write("input", input);
    Streams streams;
    streams.Connect(STDIN_FILENO, streamFolder.GetPath() / "input", O_RDONLY);
    streams.ConnectOutput(outputTo, streamFolder.GetPath() / "output");
    streams.Connect(STDERR_FILENO, streamFolder.GetPath() / "errors", O_WRONLY | O_CREAT | O_TRUNC);
    streams.StartIn(folder.GetPath());

    ProcessResult result;
    result.status = WaitFor(Start(program, arguments, streams));
    result.output = streamFolder.Read("output");
    result.errors = streamFolder.Read("errors");
    return result;
}

bool HasTerminals()
{
    try
    {
        return access(Terminal().GetName().c_str(), F_OK) == 0;
    }
    catch (const std::runtime_error&)
    {
        return false;
    }
}

ProcessResult RunBatchAtTerminal(const TemporaryFolder& folder, const std::vector<std::string>& arguments,
                                 bool isOutputThere)
{
    const TemporaryFolder streamFolder;
    const Terminal terminal;
    Streams streams;
    streams.Connect(STDIN_FILENO, "/dev/null", O_RDONLY);
    streams.ConnectOutput(OutputTo::Test, streamFolder.GetPath() / "output");
    if (isOutputThere)
    {
        streams.ConnectToTerminal(STDOUT_FILENO, terminal.GetName());
    }
    streams.ConnectToTerminal(STDERR_FILENO, terminal.GetName());
    streams.StartIn(folder.GetPath());

    const pid_t process = Start(TESSARINE_BATCH, arguments, streams);
    ProcessResult result;
    result.errors = terminal.ReadAll();
    result.status = WaitFor(process);
    result.output = streamFolder.Read("output");
    return result;
}
}
