#pragma once
#include <filesystem>

namespace tessarine
{
/// How fine the samples are; tests make coarser ones.
struct WorkspaceSize
{
    double coarseness = 1.0; ///< times the length of the models' edges
    int imageWidth = 800;
    int imageHeight = 600;
};

/// Writes a folder to work in, with everything that the reconstruction reads; the same bytes everywhere.
///
/// NAME.obj                   closed models in the unit cube: box, bunny (textured), dragon, horse, man
/// data/NAME.txta             points of all but the man, in the same boxes
/// data/lpdata50NT.dat        the table for the limit surface, up to valence 50
/// data/bunny                 cameras and silhouettes of 90 views, on a plane from -1.2 to 1.2
/// data/man.data              labelled points, in a frame of their own, to be sampled into the folder data1
/// data/man                   four silhouettes, three with the line of a cut, on a plane from -2 to 2
/// data1                      an empty folder
/// pebble.obj                 a stone with two materials
///
/// Where there are folders of these names in another case (Data) it writes into them, as the reconstruction reads them.
///
/// Throws FileError.
void WriteWorkspace(const std::filesystem::path& folder, const WorkspaceSize& size = {});
}
