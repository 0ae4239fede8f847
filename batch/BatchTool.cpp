#include "BatchTool.h"
#include "BatchRun.h"
#include "CommandLine.h"
#include "ErrorLine.h"
#include "FailureText.h"
#include "File.h"
#include "Streams.h"
#include <new>

namespace tessarine
{
namespace
{
constexpr const char* kVersion = "tessarine-batch " TESSARINE_VERSION "\n";

std::vector<OperationCall> ReadScript(const std::string& name)
{
    return name == "-" ? ParseScript(ReadStandardInput(), "standard input")
                       : ParseScript(ReadStream(name), name);
}

/// Those of the script come first.
std::vector<OperationCall> ReadOperations(const BatchOptions& options)
{
    std::vector<OperationCall> calls;
    if (options.script)
    {
        calls = ReadScript(*options.script);
    }
    for (OperationCall& call : ParseOperations(options.words))
    {
        calls.push_back(std::move(call));
    }
    if (calls.empty())
    {
        throw UsageError("no operation is given");
    }
    return calls;
}

/// Goes to the folder and reads all operations. A file that cannot be read is a usage error here: nothing has
/// run.
std::vector<OperationCall> Prepare(const BatchOptions& options)
{
    try
    {
        if (options.folder)
        {
            SetCurrentFolder(*options.folder);
        }
        return ReadOperations(options);
    }
    catch (const FileError& error)
    {
        throw UsageError(error.what());
    }
}

int RunTool(const std::vector<std::string>& arguments)
{
    const BatchOptions options = ParseOptions(arguments);
    if (options.help)
    {
        WriteStandardOutput(options.words.empty() ? GetHelpText() : GetHelpText(options.words));
        return ExitStatus::Done;
    }
    if (options.version)
    {
        WriteStandardOutput(kVersion);
        return ExitStatus::Done;
    }
    const std::vector<OperationCall> calls = Prepare(options);
    BatchRun run(options);
    return run.RunAll(calls) ? ExitStatus::Done : ExitStatus::Failed;
}

void Complain(const std::string& text)
{
    PrintErrorLine("tessarine-batch: " + text);
}
}

int RunBatchTool(const std::vector<std::string>& arguments) noexcept
{
    try
    {
        PrepareStreams();
        return RunTool(arguments);
    }
    catch (const UsageError& error)
    {
        Complain(error.what() + std::string("; see tessarine-batch --help"));
        return ExitStatus::Usage;
    }
    catch (const std::bad_alloc&)
    {
        WriteStandardError("tessarine-batch: not enough memory\n");
    }
    catch (...) // from outside of every operation
    {
        Complain(DescribeFailure());
    }
    return ExitStatus::Failed;
}
}
