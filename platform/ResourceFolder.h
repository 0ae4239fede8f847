#pragma once
#include <filesystem>
#include <string>

namespace tessarine
{
/// The real path of one of the program's own files, whose name is in the form of the dataset names
/// ("res\\Orbit.CUR"): below the current folder, or, where it is not there, below the resource folder.
///
/// Throws FileError as ResolveForReading does.
/// @return the name with slashes where it is in neither
std::filesystem::path ResolveResource(const std::string& name);

/// Where the program's own files are; none to begin with.
void SetResourceFolder(std::filesystem::path folder);

/// The folder with the files of the program that runs: its own folder in a build tree, ../share/tessarine from
/// there once installed; the one that has a folder "res". Empty where there is none.
std::filesystem::path FindResourceFolder();

/// The same for a program in this folder.
std::filesystem::path FindResourceFolder(const std::filesystem::path& programFolder);
}
