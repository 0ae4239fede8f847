#pragma once
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessarine
{
class BatchRun;

/// The parts of the list of operations that --help shows.
enum class OperationGroup
{
    Document,
    MenuCommand,
    KeptCommand,
    ViewAndInput
};

/// One row of the table of operations.
struct Operation
{
    std::string_view name;
    std::string_view
        arguments; ///< forms by name; those that can be left out together stand in brackets, last
    OperationGroup group = OperationGroup::Document;
    std::string_view purpose; ///< one line for the help
    std::string_view example; ///< the words of a whole run, in the sample workspace
    /// Runs it through the workbench's boundary, so that its user is told when it fails, and says whether it
    /// ran. The arguments have the right number and form.
    bool (*handler)(BatchRun& run, const std::vector<std::string>& arguments) = nullptr;
};

/// All operations, in the order of the help.
std::span<const Operation> GetOperations();

/// Null where the word names none.
const Operation* FindOperation(std::string_view name);

/// Whether what it gives depends on GL: pictures, or the lines that the textures of a frame print.
/// @param arguments of the right number and form
bool LooksAtFrames(const Operation& operation, const std::vector<std::string>& arguments);

/// "simplify RATIO"
std::string GetUsage(const Operation& operation);
}
