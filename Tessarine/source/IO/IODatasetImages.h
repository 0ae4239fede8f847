#pragma once
#include "Image.h"
#include <string>

namespace tessarine
{
/// "%s%i%s" of the folder with its last separator, the number from 1, and ".bmp".
std::string GetDatasetImageName(const std::string& folder, int number);

/// Image `number` of a dataset, with three components, whatever its file has: row 0 is the bottom line.
/// Throws FileError; Failure, naming both, where its size is not the one that the camera file tells.
/// @param sizeSource where the size stands
Image ReadDatasetImage(const std::string& folder, int number, int width, int height,
                       const std::string& sizeSource = "its camera file");

/// A picture of any form with three components.
/// Throws FileError, also where it would take more than pictures may once it has three.
Image ReadColourImage(const std::filesystem::path& path);

/// The image with three components: grey three times, and no alpha.
Image WithThreeComponents(Image image);

/// Throws FileError.
void WriteDatasetImage(const Image& image, const std::string& folder, int number);
}
