#pragma once
#include "TemporaryFolder.h"
#include <string>
#include <vector>

namespace tessarine
{
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

/// Whether the machine gives terminals: a bare root may have none.
bool HasTerminals();

/// Runs it with standard error at a terminal, and standard output there too or where the test reads it.
/// `errors` are what the terminal was sent: its lines end with CR-LF.
ProcessResult RunBatchAtTerminal(const TemporaryFolder& folder, const std::vector<std::string>& arguments,
                                 bool isOutputThere);

/// Runs any program.
ProcessResult RunProgram(const std::string& program, const TemporaryFolder& folder,
                         const std::vector<std::string>& arguments, const std::string& input = "",
                         OutputTo outputTo = OutputTo::Test);

/// (1,1,1), (1,-1,-1), (-1,1,-1), (-1,-1,1): centred, of extent 2, so that it stands as it is in the unit
/// cube.
inline constexpr char kTetrahedron[] = "v 1 1 1\nv 1 -1 -1\nv -1 1 -1\nv -1 -1 1\n"
                                       "f 1 2 3\nf 1 4 2\nf 1 3 4\nf 2 4 3\n";
}
