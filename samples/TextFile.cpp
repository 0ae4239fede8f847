#include "TextFile.h"
#include "File.h"
#include <charconv>

namespace tessarine
{
std::string Decimal(double value)
{
    char digits[32];
    return {digits, std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, 6).ptr};
}

void WriteText(const std::filesystem::path& path, const std::string& text)
{
    ReplacingFile file(path);
    file.Write(text);
    file.Commit();
}
}
