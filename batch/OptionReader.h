#pragma once
#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

namespace tessarine
{
struct BatchOptions;

/// Takes the options off the front of a command line. The parser only sorts the words; what is wrong with them is
/// found and said here. Serves one command line.
class OptionReader
{
public:
    OptionReader();
    OptionReader(const OptionReader&) = delete;
    OptionReader& operator=(const OptionReader&) = delete;

    /// `arguments` without the program's name. Throws UsageError.
    BatchOptions Read(std::vector<std::string> arguments);

private:
    CLI::Option* AddValued(const std::string& names);
    /// Each name with what the parser notes for it in braces.
    CLI::Option* AddSwitch(const std::string& names);
    void Parse(std::vector<std::string> arguments);

    CLI::App m_Parser;
    CLI::Option* m_pFolder = nullptr;
    CLI::Option* m_pScript = nullptr;
    CLI::Option* m_pQuiet = nullptr;
    CLI::Option* m_pWindow = nullptr;
    CLI::Option* m_pThreads = nullptr;
    CLI::Option* m_pHelp = nullptr;
    CLI::Option* m_pVersion = nullptr;
};
}
