#pragma once
#include <filesystem>
#include <string>

namespace tessarine::bench
{
/// A folder that goes with the program.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    const std::filesystem::path& GetPath() const { return m_Path; }

private:
    std::filesystem::path m_Path;
};

/// Writes a closed triangle mesh, a bumpy torus of about `faces` triangles, and reads it once into the page
/// cache.
/// @return its path
std::filesystem::path WriteClosedModel(const std::filesystem::path& folder, int faces);

/// The same torus with the noise that a scan has: each vertex moves along the tube's radius, by a tenth of an edge's
/// length on the average.
std::filesystem::path WriteScannedModel(const std::filesystem::path& folder, int faces);

/// The same with a standard deviation that is told: the noise of a scanner does not shrink where its samples lie closer.
/// The tube's radius is 0.4.
std::filesystem::path WriteNoisyModel(const std::filesystem::path& folder, int faces, double deviation);
}
