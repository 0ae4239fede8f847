#pragma once
#include "FaultPlan.h"
#include <string>
#include <vector>

namespace tessarine
{
/// What the program's calls to the system for its files and folders ask. Those of shared libraries are among them, as far
/// as they are made by name: std::filesystem's are, a stream's are not.
FaultPlan& GetFileCallPlan();

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
