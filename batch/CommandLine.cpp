#include "CommandLine.h"
#include "ArgumentForm.h"
#include "Operations.h"
#include "OptionReader.h"
#include <algorithm>

namespace tessarine
{
namespace
{
constexpr std::string_view kBlanks = " \t\r";

// --- operations

/// The names in a pattern, and how many of them cannot be left out.
struct Pattern
{
    std::vector<std::string_view> names;
    std::size_t required = 0;
};

Pattern ReadPattern(std::string_view text)
{
    Pattern pattern;
    bool required = true;
    while (!text.empty())
    {
        const std::size_t end = std::min(text.find(' '), text.size());
        std::string_view name = text.substr(0, end);
        required = required && name.front() != '[';
        name.remove_prefix(name.front() == '[' ? 1 : 0);
        name.remove_suffix(name.back() == ']' ? 1 : 0);
        pattern.names.push_back(name);
        pattern.required += required ? 1 : 0;
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return pattern;
}

std::string Quoted(const std::string& word)
{
    return '"' + word + '"';
}

void CheckCount(const OperationCall& call, const Pattern& pattern)
{
    const std::size_t count = call.arguments.size();
    if (count == pattern.required || count == pattern.names.size())
    {
        return;
    }
    std::string text(call.pOperation->name);
    text += count > pattern.names.size()
                ? ": " + Quoted(call.arguments[pattern.names.size()]) +
                      " is neither its argument nor an operation"
                : ": " + std::to_string(count) + (count == 1 ? " argument" : " arguments") + " given";
    throw UsageError(text + "; its form is: " + GetUsage(*call.pOperation));
}

void CheckCall(const OperationCall& call)
{
    const Pattern pattern = ReadPattern(call.pOperation->arguments);
    CheckCount(call, pattern);
    for (std::size_t i = 0; i < call.arguments.size(); ++i)
    {
        const ArgumentForm& form = FindArgumentForm(pattern.names[i]);
        if (!form.accepts(call.arguments[i]))
        {
            throw UsageError(std::string(call.pOperation->name) + ": " + Quoted(call.arguments[i]) +
                             " is no " + std::string(form.name) + " (" + std::string(form.description) + ")");
        }
    }
}

/// Gathers words into calls.
class CallList
{
public:
    void AddWord(const std::string& word)
    {
        if (const Operation* pOperation = FindOperation(word))
        {
            m_Calls.push_back({pOperation, {}, {}});
        }
        else if (m_Calls.empty())
        {
            throw UsageError("unknown operation " + Quoted(word));
        }
        else if (word.starts_with("--"))
        {
            throw UsageError("option " + word + " stands behind an operation; options come first");
        }
        else
        {
            m_Calls.back().arguments.push_back(word);
        }
    }

    void AddArgument(const std::string& word)
    {
        if (m_Calls.empty())
        {
            throw UsageError("-- stands in front of an argument, and " + Quoted(word) + " has no operation");
        }
        m_Calls.back().arguments.push_back(word);
    }

    std::vector<OperationCall> Take()
    {
        std::for_each(m_Calls.begin(), m_Calls.end(), CheckCall);
        return std::move(m_Calls);
    }

private:
    std::vector<OperationCall> m_Calls;
};

// --- scripts

/// Splits a line into words. Throws UsageError for an open quotation.
std::vector<std::string> SplitLine(std::string_view line)
{
    std::vector<std::string> words;
    bool quoted = false;
    bool inWord = false;
    for (const char character : line)
    {
        if (!quoted && character == '#')
        {
            break;
        }
        if (!quoted && kBlanks.find(character) != std::string_view::npos)
        {
            inWord = false;
            continue;
        }
        if (!inWord)
        {
            words.emplace_back();
            inWord = true;
        }
        if (character == '"')
        {
            quoted = !quoted;
        }
        else
        {
            words.back() += character;
        }
    }
    if (quoted)
    {
        throw UsageError("a double quote is not closed on its line");
    }
    return words;
}

// --- help

constexpr std::size_t kPageWidth = 80;
constexpr std::size_t kLabelWidth = 6;

constexpr std::string_view kHelpHead =
    "Usage: tessarine-batch [OPTION]... OPERATION [ARGUMENT]... [OPERATION ...]...\n"
    "  -C, --directory DIR  work in DIR: every path is relative to it\n"
    "  -s, --script FILE    run the operations of FILE first (- is standard input)\n"
    "  -q, --quiet          no console lines on standard output\n"
    "      --window WxH     size of the off-screen view, 800x600 if not given\n"
    "      --threads N      taken; as yet one thread does all the work, same result\n"
    "      --version, --help [OPERATION]...  as usual; single operations, by example\n"
    "Operations, run in the order given, on one document:\n";

constexpr std::string_view kHelpFoot =
    "Example, in which -- keeps the name of a file from being an operation:\n"
    "  tessarine-batch import a.obj simplify 0.8 export b.obj report -- report\n";

constexpr std::string_view kExamplePlace =
    "The examples' files are made by tessarine-samples FOLDER; matrices are yours.\n";

constexpr std::pair<OperationGroup, std::string_view> kGroupLabels[] = {
    {OperationGroup::Document, "file"},
    {OperationGroup::MenuCommand, "menu"},
    {OperationGroup::KeptCommand, "more"},
    {OperationGroup::ViewAndInput, "view"},
};

std::string GetGroupText(OperationGroup group, std::string_view label)
{
    std::string text = "  " + std::string(label);
    text.resize(kLabelWidth, ' ');
    std::size_t column = kLabelWidth;
    std::string_view separator = " ";
    for (const Operation& operation : GetOperations())
    {
        if (operation.group != group)
        {
            continue;
        }
        const std::string entry = GetUsage(operation);
        if (column + separator.size() + entry.size() >= kPageWidth)
        {
            text += ",\n" + std::string(kLabelWidth, ' ');
            column = kLabelWidth;
            separator = " ";
        }
        text += std::string(separator) + entry;
        column += separator.size() + entry.size();
        separator = ", ";
    }
    return text + "\n";
}
}

BatchOptions ParseOptions(std::vector<std::string> arguments)
{
    return OptionReader().Read(std::move(arguments));
}

std::vector<OperationCall> ParseOperations(const std::vector<std::string>& words)
{
    CallList calls;
    for (std::size_t i = 0; i < words.size(); ++i)
    {
        if (words[i] != "--")
        {
            calls.AddWord(words[i]);
        }
        else if (++i < words.size())
        {
            calls.AddArgument(words[i]);
        }
        else
        {
            throw UsageError("nothing stands behind the last --");
        }
    }
    return calls.Take();
}

std::vector<OperationCall> ParseScript(std::string_view text, const std::string& name)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.find('\0') != std::string_view::npos)
    {
        throw UsageError(name + ": it has zero bytes, so it is no script; save it as UTF-8");
    }
    text.remove_prefix(text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0);
    std::vector<OperationCall> calls;
    for (int number = 1; !text.empty(); ++number)
    {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string place = name + ", line " + std::to_string(number);
        try
        {
            for (OperationCall& call : ParseOperations(SplitLine(text.substr(0, end))))
            {
                call.place = place;
                calls.push_back(std::move(call));
            }
        }
        catch (const UsageError& error)
        {
            throw UsageError(place + ": " + error.what());
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return calls;
}

std::string GetHelpText()
{
    std::string text(kHelpHead);
    for (const auto& [group, label] : kGroupLabels)
    {
        text += GetGroupText(group, label);
    }
    return text += kHelpFoot;
}

std::string GetHelpText(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names)
    {
        const Operation* pOperation = FindOperation(name);
        if (pOperation == nullptr)
        {
            throw UsageError("unknown operation " + Quoted(name));
        }
        text += GetUsage(*pOperation) + "\n    " + std::string(pOperation->purpose) +
                "\n    tessarine-batch " + std::string(pOperation->example) + "\n";
    }
    return text += kExamplePlace;
}
}
