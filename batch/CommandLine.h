#pragma once
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// The language of the batch tool: its options, and the words that name operations and their arguments,
/// on the command line and in scripts alike.
namespace tessarine
{
struct Operation;

/// The words say nothing that can be run. what() is one clause that says which of them and why.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The options, as given.
struct BatchOptions
{
    std::optional<std::string> folder; ///< to work in
    std::optional<std::string> script; ///< "-" is standard input
    bool quiet = false;
    int viewWidth = 800;  ///< pixels
    int viewHeight = 600; ///< pixels
    int threads = 1;
    bool help = false;
    bool version = false;
    std::vector<std::string> words; ///< what stands behind the options
};

/// An operation with arguments of the right number and form.
struct OperationCall
{
    const Operation* pOperation = nullptr;
    std::vector<std::string> arguments;
    std::string place; ///< script and line; empty on the command line
};

/// `arguments` without the program's name. Options end at the first word that is none.
/// Throws UsageError.
BatchOptions ParseOptions(std::vector<std::string> arguments);

/// A word that names an operation starts the next one; the word behind "--" is always an argument.
/// Throws UsageError.
std::vector<OperationCall> ParseOperations(const std::vector<std::string>& words);

/// The operations of a script, line by line: an operation and its arguments stand on one line, and a line may
/// hold several. '#' outside double quotes starts a comment; double quotes keep blanks together, and nothing
/// in them is special but the next double quote. Lines end with LF or CR-LF. Throws UsageError, its text led
/// by `name` and the line's number.
std::vector<OperationCall> ParseScript(std::string_view text, const std::string& name);

/// What --help prints: with the prompt below it a screen of 24 lines and 80 columns at most.
std::string GetHelpText();

/// What --help prints when operations are named behind it: the form, the purpose and an example of each.
/// Throws UsageError where a word names no operation.
std::string GetHelpText(const std::vector<std::string>& names);
}
