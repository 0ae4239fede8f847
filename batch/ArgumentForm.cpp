#include "ArgumentForm.h"
#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace tessarine
{
namespace
{
constexpr long long kLeastInteger = std::numeric_limits<int>::min();
constexpr long long kMostInteger = std::numeric_limits<int>::max();

template <long long least, long long most>
bool IsInteger(std::string_view word)
{
    long long value = 0;
    return ReadInteger(word, least, most, value);
}

bool IsNumber(std::string_view word)
{
    double value = 0.0;
    return ReadNumber(word, value);
}

bool IsRatio(std::string_view word)
{
    double value = 0.0;
    return ReadNumber(word, value) && value >= 0.0 && value <= 1.0;
}

bool IsPositive(std::string_view word)
{
    double value = 0.0;
    return ReadNumber(word, value) && value > 0.0;
}

bool IsName(std::string_view word)
{
    return !word.empty();
}

bool IsCountOrAll(std::string_view word)
{
    return word == "all" || IsInteger<1, kMostInteger>(word);
}

constexpr auto IsAnyInteger = IsInteger<kLeastInteger, kMostInteger>;
constexpr auto IsIndex = IsInteger<0, kMostInteger>;

constexpr std::string_view kFileName = "the name of a file";
constexpr std::string_view kAnyNumber = "a number";
constexpr std::string_view kWholeNumber = "a whole number";

constexpr ArgumentForm kForms[] = {
    {"FILE", kFileName, IsName},
    {"IMAGE", kFileName, IsName},
    {"IN", kFileName, IsName},
    {"OUT", kFileName, IsName},
    {"A.mtx", kFileName, IsName},
    {"B.vec", kFileName, IsName},
    {"X.vec", kFileName, IsName},
    {"AREA", kAnyNumber, IsNumber},
    {"RATIO", "a number from 0 to 1", IsRatio},
    {"MODE", kWholeNumber, IsAnyInteger},
    {"LEVEL", kAnyNumber, IsNumber},
    {"N|all", "a whole number from 1, or all", IsCountOrAll},
    {"NMAX", "a whole number from 3", IsInteger<3, kMostInteger>},
    {"FACE", "a whole number from 0", IsIndex},
    {"ITOL", "a whole number from 1 to 4", IsInteger<1, 4>},
    {"TOL", "a number above 0", IsPositive},
    {"ITMAX", "a whole number from 1 to 2147483646", IsInteger<1, kMostInteger - 1>}, // one more is counted
    {"ID", "a whole number from 0", IsIndex},
    {"X", kWholeNumber, IsAnyInteger},
    {"Y", kWholeNumber, IsAnyInteger},
    {"V", kAnyNumber, IsNumber},
    {"W", kAnyNumber, IsNumber},
    {"EX", kAnyNumber, IsNumber},
    {"EY", kAnyNumber, IsNumber},
    {"EZ", kAnyNumber, IsNumber},
    {"TX", kAnyNumber, IsNumber},
    {"TY", kAnyNumber, IsNumber},
    {"TZ", kAnyNumber, IsNumber},
    {"UX", kAnyNumber, IsNumber},
    {"UY", kAnyNumber, IsNumber},
    {"UZ", kAnyNumber, IsNumber},
};
}

const ArgumentForm& FindArgumentForm(std::string_view name)
{
    const auto* found = std::find_if(std::begin(kForms), std::end(kForms),
                                     [name](const ArgumentForm& form) { return form.name == name; });
    if (found == std::end(kForms))
    {
        throw std::logic_error("no argument form is named " + std::string(name));
    }
    return *found;
}

namespace
{
/// A plus is taken as the C library takes it.
std::string_view WithoutPlus(std::string_view word)
{
    const bool hasPlus = word.size() > 1 && word[0] == '+' && word[1] != '-';
    return hasPlus ? word.substr(1) : word;
}
}

bool ReadInteger(std::string_view word, long long least, long long most, long long& value)
{
    word = WithoutPlus(word);
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    return error == std::errc() && stop == end && value >= least && value <= most;
}

bool ReadNumber(std::string_view word, double& value)
{
    word = WithoutPlus(word);
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    return error == std::errc() && stop == end && std::isfinite(value);
}
}
