#pragma once
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tessarine
{
class ImageBudget;

/// One image in memory, decoded. Row 0 is the bottom line. All but a pixmap are brought to sides that are
/// powers of two, see ChooseTextureSize.
class DSTexture
{
public:
    enum class ResampleMode
    {
        Nearest = 0,
        Bilinear = 1,
        Cubic = 2
    };

    virtual ~DSTexture() = default;

    /// Reads a picture by the tail of its name, all upper or all lower case: ppm as it is, and bmp, png, jpg,
    /// gif, tga, tiff resampled by Resample(Nearest). Any other ending leaves the record empty.
    /// A picture that is missing, refused or broken leaves the record with its name and no image.
    void LoadImage(const std::string& fileName);

    /// The same out of a budget that the textures of a model share: a picture that is too large for it is refused.
    void LoadImage(const std::string& fileName, ImageBudget& budget);

    /// Reads a raw (P6) portable pixmap, whatever its maximum is.
    ///
    /// Says    On standard error what is wrong with it.
    /// Kept    The count of components is not set.
    void ReadPPM(const std::string& fileName);

    /// The same from memory.
    void DecodePPM(const std::string& fileName, std::string_view bytes);

    /// The nearer power of two of each side, with a bias downward. The larger side, the width where both are
    /// equal, is at most 512.
    ///
    /// Needs   Sides from 1 to 2^30.
    /// Kept    The other side is neither scaled in proportion nor held below 512, and only it is raised
    ///         to 16.
    static void ChooseTextureSize(int width, int height, int& newWidth, int& newHeight);

    /// Brings the image into the resampled buffers at the size of ChooseTextureSize.
    ///
    /// Source  P. Bourke, bicubic interpolation, for Cubic.
    /// Kept    Nearest and Bilinear take the first pixel of the next line where they pass the end of one;
    ///         Cubic scales by whole numbers.
    /// @return false when the size does not change
    bool Resample(ResampleMode mode);

    const std::string& GetFileName() const { return m_strFileName; }
    /// Where the image was read from, whatever the current folder is by now; empty without an image.
    const std::filesystem::path& GetPath() const { return m_Path; }
    int GetWidth() const { return m_nWidth; }
    int GetHeight() const { return m_nHeight; }
    int GetComponents() const { return m_nComponents; }
    const std::vector<std::uint8_t>& GetData() const { return m_pData; }
    int GetNewWidth() const { return m_nNewWidth; }
    int GetNewHeight() const { return m_nNewHeight; }
    const std::vector<std::uint8_t>& GetNewData() const { return m_pNewData; }
    bool HasImage() const { return !m_pData.empty(); }
    /// Another one with each image that the record is given, and never that of another record's image.
    std::uint64_t GetImageNumber() const { return m_nImageNumber; }

    /// Gives the record an image of its own: width * height * components bytes.
    void SetImage(int width, int height, int components, std::vector<std::uint8_t> pixels);

private:
    void ReadPPM(const std::string& fileName, ImageBudget& budget);
    void DecodePPM(const std::string& fileName, std::string_view bytes, ImageBudget& budget);
    void ReadPicture(const std::string& fileName, ImageBudget& budget);
    void NotePath(const std::filesystem::path& path);
    void TakeResampled();

    std::string m_strFileName;
    std::filesystem::path m_Path; ///< absolute, behind every symbolic link
    int m_nWidth = 0;
    int m_nHeight = 0;
    std::vector<std::uint8_t> m_pData;
    int m_nNewWidth = 0;
    int m_nNewHeight = 0;
    std::vector<std::uint8_t> m_pNewData;
    int m_nComponents = 0;
    std::uint64_t m_nImageNumber = 0;
};
}
