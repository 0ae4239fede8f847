#pragma once
#include "TemporaryFolder.h"
#include <map>
#include <string>

namespace tessarine
{
/// What every file of the current folder and below holds, by name; of a large one only its size, as of those that are as
/// the workspace was made.
std::map<std::string, std::string> ReadAllFiles();

/// A folder with a model, and with data for every operation that reads some. The current one while it lives.
///
///     model.obj    a tetrahedron with a material library and a picture: so small that every place can fail
///     torus.obj    2000 faces
///     data, data1  clouds, silhouettes with their cameras, labelled points, the table of the limit surfaces
///     out          for what is written
class FaultWorkspace : public TemporaryCurrentFolder
{
public:
    FaultWorkspace();

private:
    void WriteModels() const;
    void WriteClouds() const;
    void WriteSmallData() const;
};
}
