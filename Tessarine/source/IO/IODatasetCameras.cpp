#include "IODatasetCameras.h"
#include "CExcp.h"
#include "Failure.h"
#include "IODatasetText.h"
#include "IOTextOutput.h"
#include "Image.h"
#include "Path.h"
#include <algorithm>

namespace tessarine
{
namespace
{
int ReadSide(IODatasetText& text, const char* meaning)
{
    const int side = text.ReadDecimal(meaning);
    if (side < 1 || side > kMostPixelsASide)
    {
        text.Refuse(std::string(meaning) + " is " + std::to_string(side) + "; it must be 1 to " +
                    std::to_string(kMostPixelsASide));
    }
    return side;
}

int ReadViewCount(IODatasetText& text)
{
    const int count = text.ReadDecimal("the number of views");
    if (count < 1)
    {
        text.Refuse("the number of views is " + std::to_string(count) + "; there must be one at least");
    }
    return count;
}

smMatrix44d ReadView(IODatasetText& text)
{
    constexpr int kLast = 15;
    smMatrix44d view(true);
    for (int i = 0; i <= kLast; ++i)
    {
        const double entry = double{text.ReadFloat("an entry of a view's matrix")};
        if (i != kLast)
        {
            view.At(i / 4, i % 4) = entry;
        }
    }
    return view;
}
}

std::string IODatasetCameras::GetSizeSource() const
{
    return m_strFile + ", line " + std::to_string(m_nSizeLine);
}

smMatrix44d IODatasetCameras::GetInverse(int view) const
{
    const auto index = static_cast<std::size_t>(view);
    smMatrix44d inverse = m_Views.at(index);
    try
    {
        inverse.Invert();
    }
    catch (const CExcpSingularMatrix&)
    {
        throw Failure(
            m_strFile + ", line " + std::to_string(m_Lines.at(index)) + ": the camera of image " +
            std::to_string(view + 1) +
            " has no inverse (a singular matrix), which the markers of the image need: mend the line, or "
            "take the markers away");
    }
    return inverse;
}

IODatasetCameras ReadCameras(const std::string& name)
{
    IODatasetText text(name);
    return ReadCameras(text);
}

IODatasetCameras ReadCameras(IODatasetText& text)
{
    IODatasetCameras cameras;
    cameras.m_strFile = text.GetName();
    const int count = ReadViewCount(text);
    cameras.m_nImageWidth = ReadSide(text, "the width of the images");
    cameras.m_nImageHeight = ReadSide(text, "the height of the images");
    cameras.m_nSizeLine = text.GetLine();
    for (int i = 0; i < count; ++i)
    {
        if (text.IsAtEnd())
        {
            text.Refuse("the file ends after " + std::to_string(i) + " of " + std::to_string(count) +
                        " views");
        }
        cameras.m_Lines.push_back(text.GetLine());
        cameras.m_Views.push_back(ReadView(text));
    }
    return cameras;
}

IOViewFile::IOViewFile(const std::string& name, int imageWidth, int imageHeight)
    : m_File(ResolveForWriting(name)),
      m_strText("0\n" + std::to_string(imageWidth) + " " + std::to_string(imageHeight) + "\n")
{
}

void IOViewFile::AddView(const smMatrix44d& view)
{
    IOTextOutput line([this](std::string_view piece) { m_strText += piece; });
    for (int row = 0; row < 4; ++row)
    {
        for (int column = 0; column < 4; ++column)
        {
            line << view.At(row, column) << " ";
        }
    }
    line << "\n";
    line.Flush();
}

void IOViewFile::Commit(int viewCount)
{
    const std::string count = std::to_string(viewCount);
    std::copy(count.begin(), count.end(), m_strText.begin());
    m_File.Write(m_strText);
    m_File.Commit();
}
}
