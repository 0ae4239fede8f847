#pragma once
#include <filesystem>
#include <string>

namespace tessarine
{
/// With six digits behind the point.
std::string Decimal(double value);

/// The file appears when it is complete. Throws FileError.
void WriteText(const std::filesystem::path& path, const std::string& text);
}
