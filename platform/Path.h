#pragma once
#include <filesystem>
#include <string>

namespace tessarine
{
/// The real path of a dataset name. Names are fixed strings with backslashes and mixed spelling that meant
/// one folder on the system they were made for: a backslash counts as a slash, and every part is the exact
/// entry if there is one, else the one entry that differs only in case.
///
/// Throws FileError (see File.h) naming both, when two entries differ only in case and neither is exact.
/// @return the name with slashes where nothing matches, so that opening it reports what was asked for
std::filesystem::path ResolveForReading(const std::string& name);

/// The same for a file to be written: its folders are looked up, its own last part is kept.
std::filesystem::path ResolveForWriting(const std::string& name);
}
