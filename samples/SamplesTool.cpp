#include "SamplesTool.h"
#include "ErrorLine.h"
#include "Workspace.h"
#include <cstdio>
#include <exception>

namespace tessarine
{
namespace
{
constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kUsage = 2;

constexpr char kHelp[] = "Usage: tessarine-samples FOLDER\n"
                         "Makes FOLDER, and in it models, clouds, cameras and silhouettes for all\n"
                         "operations that read a dataset (56 MB). Files of these names are replaced.\n"
                         "A name that begins with a dash is given as ./-NAME.\n";

/// What is wrong with the words; empty where nothing is.
std::string FindFault(const std::vector<std::string>& arguments)
{
    if (arguments.size() != 1)
    {
        return std::to_string(arguments.size()) + " words are given, and one is needed, the folder's name";
    }
    if (arguments[0].empty())
    {
        return "the folder's name is empty";
    }
    return arguments[0][0] == '-' ? "unknown option " + arguments[0] : "";
}

int RunTool(const std::vector<std::string>& arguments)
{
    if (arguments.size() == 1 && (arguments[0] == "--help" || arguments[0] == "-h"))
    {
        std::fputs(kHelp, stdout);
        return std::fflush(stdout) == 0 ? kDone : kFailed;
    }
    if (const std::string fault = FindFault(arguments); !fault.empty())
    {
        PrintErrorLine("tessarine-samples: " + fault + "; usage: tessarine-samples FOLDER");
        return kUsage;
    }
    WriteWorkspace(arguments[0]);
    return kDone;
}
}

int RunSamplesTool(const std::vector<std::string>& arguments) noexcept
{
    try
    {
        return RunTool(arguments);
    }
    catch (const std::exception& error)
    {
        PrintErrorLine(std::string("tessarine-samples: ") + error.what());
        return kFailed;
    }
}
}
