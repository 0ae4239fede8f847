#pragma once
#include "File.h"
#include "smMatrix44d.h"
#include <string>
#include <vector>

namespace tessarine
{
class IODatasetText;

/// The cameras of a dataset ("data\bunny\param.dat"). View k belongs to image k + 1. A world point as a row
/// vector times a view gives its place on the plane of the image (x, y), which spans -1.2 to 1.2 both ways,
/// and its depth.
struct IODatasetCameras
{
    std::vector<smMatrix44d> m_Views;
    int m_nImageWidth = 0;
    int m_nImageHeight = 0;
    std::string m_strFile;    ///< where they come from, for the messages
    int m_nSizeLine = 0;      ///< on which the size of the images stands there
    std::vector<int> m_Lines; ///< on which each view starts there

    int GetImageCount() const { return static_cast<int>(m_Views.size()); }

    /// "data/bunny/param.dat, line 2"
    std::string GetSizeSource() const;

    /// For what is given on the plane of an image.
    /// Throws Failure, which names the file and the line, where the view has no inverse.
    smMatrix44d GetInverse(int view) const;
};

/// Sixteen entries a view, row by row, of which the last is read and dropped: it stays 1.
///
/// Fails   FileError without the file. Failure naming file and line: too few numbers, some that are not
///         finite, no view, images without area or larger than any picture.
IODatasetCameras ReadCameras(const std::string& name);
IODatasetCameras ReadCameras(IODatasetText& text);

/// The views of a sampling run ("data1\param.data"): a camera file but for its count, which comes last. It is
/// written over the start of the text, so that a count of two digits runs into the second line.
///
/// Fails   FileError, at once where the folder is missing. The file appears when it is complete.
class IOViewFile
{
public:
    IOViewFile(const std::string& name, int imageWidth, int imageHeight);

    void AddView(const smMatrix44d& view);
    void Commit(int viewCount);

private:
    ReplacingFile m_File;
    std::string m_strText;
};
}
