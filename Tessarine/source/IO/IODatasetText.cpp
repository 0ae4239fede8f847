#include "IODatasetText.h"
#include "Failure.h"
#include "File.h"
#include "Path.h"
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <locale.h>
#include <utility>

namespace tessarine
{
namespace
{
bool IsSeparator(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

float ConvertSlowly(const char* begin, char** end, locale_t locale, float /*kind*/)
{
    return ::strtof_l(begin, end, locale);
}

double ConvertSlowly(const char* begin, char** end, locale_t locale, double /*kind*/)
{
    return ::strtod_l(begin, end, locale);
}

/// Where there is none, the name that it would have in the folder that is there.
std::filesystem::path FindDatasetFile(const std::string& name)
{
    std::error_code error;
    const std::filesystem::path path = ResolveForReading(name);
    return std::filesystem::exists(path, error) ? path : ResolveForWriting(name);
}

/// As the C library reads it in the C locale.
template <class T>
const char* ParseRealSlowly(const char* begin, T& value)
{
    static const locale_t kCLocale = ::newlocale(LC_ALL_MASK, "C", nullptr);
    char* end = nullptr;
    value = ConvertSlowly(begin, &end, kCLocale, T());
    return end;
}

/// The same. @return behind the number; `begin` where there is none
template <class T>
const char* ParseReal(const char* begin, const char* end, T& value)
{
    const auto [stop, error] = std::from_chars(begin, end, value);
    const bool isPlain = error == std::errc() && *stop != 'x' && *stop != 'X';
    return isPlain ? stop : ParseRealSlowly(begin, value); // a plus, a hexadecimal number, one out of range
}
}

IODatasetText::IODatasetText(const std::string& name) : m_strName(name)
{
    try
    {
        const std::filesystem::path path = FindDatasetFile(name);
        m_strName = path.string();
        m_strText = ReadFile(path);
    }
    catch (const FileError& error)
    {
        m_strError = error.what();
    }
    m_pAt = m_strText.c_str();
}

IODatasetText::IODatasetText(std::string name, std::string text)
    : m_strName(std::move(name)), m_strText(std::move(text)), m_pAt(m_strText.c_str())
{
}

float IODatasetText::ReadFloat(const char* meaning)
{
    return ReadReal<float>(meaning);
}

double IODatasetText::ReadDouble(const char* meaning)
{
    return ReadReal<double>(meaning);
}

template <class T>
T IODatasetText::ReadReal(const char* meaning)
{
    const char* const begin = FindValue(meaning);
    T value{};
    m_pAt = ParseReal(begin, m_strText.c_str() + m_strText.size(), value);
    if (m_pAt == begin)
    {
        RefuseValue(meaning);
    }
    if (!std::isfinite(value))
    {
        Refuse(std::string(meaning) + " is not finite");
    }
    return value;
}

int IODatasetText::ReadWhole(const char* meaning, int base)
{
    const char* const begin = FindValue(meaning);
    char* end = nullptr;
    errno = 0;
    const long long value = std::strtoll(begin, &end, base);
    if (end == begin)
    {
        RefuseValue(meaning);
    }
    if (errno == ERANGE || value > std::numeric_limits<int>::max() || value < std::numeric_limits<int>::min())
    {
        Refuse(std::string(meaning) + " is beyond 32 bits");
    }
    m_pAt = end;
    return static_cast<int>(value);
}

void IODatasetText::SkipWord(const char* meaning)
{
    const char* const end = m_strText.c_str() + m_strText.size();
    m_pAt = std::find_if(FindValue(meaning), end, IsSeparator);
}

bool IODatasetText::IsAtEnd()
{
    SkipWhiteSpace();
    return m_pAt == m_strText.c_str() + m_strText.size();
}

void IODatasetText::Refuse(const std::string& reason) const
{
    throw Failure(m_strName + ", line " + std::to_string(m_nLine) + ": " + reason);
}

void IODatasetText::SkipWhiteSpace()
{
    for (; IsSeparator(*m_pAt); ++m_pAt)
    {
        m_nLine += *m_pAt == '\n' ? 1 : 0;
    }
}

const char* IODatasetText::FindValue(const char* meaning)
{
    if (!IsOpen())
    {
        throw FileError(m_strError);
    }
    if (IsAtEnd())
    {
        Refuse(std::string("the file ends before ") + meaning);
    }
    return m_pAt;
}

void IODatasetText::RefuseValue(const char* meaning) const
{
    constexpr std::ptrdiff_t kMostShown = 20;
    const char* const end = m_strText.c_str() + m_strText.size();
    const char* const word =
        std::find_if(m_pAt, std::min(end, m_pAt + std::min(end - m_pAt, kMostShown)), IsSeparator);
    Refuse("\"" + std::string(m_pAt, word) + "\" stands where " + meaning + " should be");
}
}
