#pragma once
#include <string>
#include <string_view>

namespace tessarine
{
/// What a word must be to stand for one argument of an operation.
struct ArgumentForm
{
    std::string_view name;        ///< as the operation's pattern writes it: "RATIO"
    std::string_view description; ///< "a number from 0 to 1"
    bool (*accepts)(std::string_view word);
};

/// The form of that name. An unknown name is a mistake in a pattern (std::logic_error).
const ArgumentForm& FindArgumentForm(std::string_view name);

/// A whole decimal number from `least` to `most`. False where the word is anything else.
bool ReadInteger(std::string_view word, long long least, long long most, long long& value);

/// A finite decimal number. False where the word is anything else.
bool ReadNumber(std::string_view word, double& value);
}
