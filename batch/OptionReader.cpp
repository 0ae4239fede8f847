#include "OptionReader.h"
#include "ArgumentForm.h"
#include "CommandLine.h"
#include <algorithm>
#include <limits>

namespace tessarine
{
namespace
{
constexpr int kMostPixelsOfView = 16384;
constexpr std::string_view kGiven = "given"; // what the parser notes for a switch without a value

void ReadViewSize(const std::string& text, BatchOptions& options)
{
    const std::size_t cross = text.find('x');
    long long width = 0;
    long long height = 0;
    if (cross == std::string::npos ||
        !ReadInteger(std::string_view(text).substr(0, cross), 1, kMostPixelsOfView, width) ||
        !ReadInteger(std::string_view(text).substr(cross + 1), 1, kMostPixelsOfView, height))
    {
        throw UsageError("--window: \"" + text + "\" is no WxH, as 800x600, from 1x1 to 16384x16384");
    }
    options.viewWidth = static_cast<int>(width);
    options.viewHeight = static_cast<int>(height);
}

void ReadThreadCount(const std::string& text, BatchOptions& options)
{
    long long threads = 0;
    if (!ReadInteger(text, 1, std::numeric_limits<int>::max(), threads))
    {
        throw UsageError("--threads: \"" + text + "\" is no whole number from 1");
    }
    options.threads = static_cast<int>(threads);
}

/// What the options leave over starts with those that are unknown.
void RefuseUnknownOption(const std::vector<std::string>& rest)
{
    if (rest.empty() || rest.front().size() < 2 || rest.front().front() != '-' || rest.front() == "--")
    {
        return;
    }
    if (rest.front().starts_with("-=")) // left of "-q=1"
    {
        throw UsageError("a switch takes no value; leave out " + rest.front().substr(1));
    }
    throw UsageError("unknown option " + rest.front());
}

/// As the help writes them: "-C, --directory".
std::string NamesOf(const CLI::Option& option)
{
    std::string names;
    for (const std::string& letter : option.get_snames())
    {
        names += "-" + letter + ", ";
    }
    return names + "--" + option.get_lnames().front();
}

void RefuseRepetition(const CLI::Option& option)
{
    if (option.count() > 1)
    {
        throw UsageError("option " + NamesOf(option) + " is given more than once; give it once");
    }
}

std::optional<std::string> GetValue(const CLI::Option& option)
{
    RefuseRepetition(option);
    return option.count() > 0 ? std::optional(option.results().front()) : std::nullopt;
}

bool IsSwitchedOn(const CLI::Option& option)
{
    RefuseRepetition(option);
    if (option.count() > 0 && option.results().front() != kGiven)
    {
        throw UsageError("option " + NamesOf(option) +
                         " takes no value; leave out =" + option.results().front());
    }
    return option.count() > 0;
}
}

OptionReader::OptionReader()
{
    m_Parser.set_help_flag(); // its own would print and end
    m_Parser.prefix_command();
    m_pFolder = AddValued("-C,--directory");
    m_pScript = AddValued("-s,--script");
    m_pQuiet = AddSwitch("-q{given},--quiet{given}");
    m_pWindow = AddValued("--window");
    m_pThreads = AddValued("--threads");
    m_pHelp = AddSwitch("--help{given}");
    m_pVersion = AddSwitch("--version{given}");
}

CLI::Option* OptionReader::AddValued(const std::string& names)
{
    return m_Parser.add_option(names)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

CLI::Option* OptionReader::AddSwitch(const std::string& names)
{
    return m_Parser.add_flag(names)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void OptionReader::Parse(std::vector<std::string> arguments)
{
    const std::string last = arguments.empty() ? "" : arguments.back();
    std::reverse(arguments.begin(), arguments.end()); // the parser takes words from the end
    try
    {
        m_Parser.parse(std::move(arguments));
    }
    catch (const CLI::ArgumentMismatch&) // how often an option may come is not the parser's to say
    {
        throw UsageError("nothing stands behind " + last + ", which takes a value");
    }
}

BatchOptions OptionReader::Read(std::vector<std::string> arguments)
{
    Parse(std::move(arguments));
    BatchOptions options;
    options.words = m_Parser.remaining();
    RefuseUnknownOption(options.words);
    options.folder = GetValue(*m_pFolder);
    options.script = GetValue(*m_pScript);
    options.quiet = IsSwitchedOn(*m_pQuiet);
    options.help = IsSwitchedOn(*m_pHelp);
    options.version = IsSwitchedOn(*m_pVersion);
    if (const auto size = GetValue(*m_pWindow))
    {
        ReadViewSize(*size, options);
    }
    if (const auto threads = GetValue(*m_pThreads))
    {
        ReadThreadCount(*threads, options);
    }
    return options;
}
}
