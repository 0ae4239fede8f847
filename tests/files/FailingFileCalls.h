#pragma once
#include <string>
#include <vector>

namespace tessarine
{
/// While it lives, one of the program's calls to the system for its files and folders fails: the one before which
/// `spared` others succeed. Or that and all after it. Those of shared libraries are among them, as far as they are made
/// by name: std::filesystem's are, a stream's are not.
class FailingFileCalls
{
public:
    enum class Mode
    {
        Once,
        FromThenOn
    };

    FailingFileCalls(long spared, Mode mode);
    ~FailingFileCalls();
    FailingFileCalls(const FailingFileCalls&) = delete;
    FailingFileCalls& operator=(const FailingFileCalls&) = delete;

    /// Whether a call has failed since the last one began to live.
    static bool HasFailed();
};

/// While it lives, notes what is renamed and what is flushed to the disk: "rename TO", "fsync PATH".
class FlushLog
{
public:
    FlushLog();
    ~FlushLog();
    FlushLog(const FlushLog&) = delete;
    FlushLog& operator=(const FlushLog&) = delete;

    const std::vector<std::string>& GetLines() const { return m_Lines; }

private:
    std::vector<std::string> m_Lines;
};
}
