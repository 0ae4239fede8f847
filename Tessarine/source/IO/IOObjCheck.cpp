#include "IOObjCheck.h"
#include "Failure.h"
#include "IOTextLines.h"
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace tessarine
{
namespace
{
bool IsFace(const IOLineCursor& line)
{
    return line.Peek() == 'f' || line.Peek() == 'F';
}

bool IsPosition(const IOLineCursor& line)
{
    return (line.Peek() == 'v' || line.Peek() == 'V') && line.Peek(1) == ' ';
}

bool IsFinite(const smVec3d& position)
{
    return std::isfinite(position.x) && std::isfinite(position.y) && std::isfinite(position.z);
}

/// The line of the index-th record of a kind, counted from 0.
template <class TIsKind>
IOLineCursor FindLine(IOTextLines& lines, std::size_t index, TIsKind isKind)
{
    IOLineCursor line;
    for (std::size_t left = index + 1; left > 0 && !lines.IsAtEnd();)
    {
        line = lines.Next();
        left -= isKind(line) ? 1 : 0;
        if (IsFace(line))
        {
            lines.OpenFace(line); // a continuation is no line of its own
        }
    }
    return line;
}

std::size_t FindFaceOfCorner(const IndexList& faceSizes, std::ptrdiff_t corner)
{
    std::size_t face = 0;
    for (std::ptrdiff_t end = faceSizes.front(); end <= corner; end += faceSizes[face])
    {
        ++face;
    }
    return face;
}

std::string Refuse(const std::string& what, std::int32_t number, std::size_t count)
{
    if (number == 0)
    {
        return "the " + what +
               " number of a corner is 0 or missing; numbers start at 1, and a corner is written 1, 1/1, "
               "1//1 or 1/1/1";
    }
    if (number < 0)
    {
        return "the relative " + what + " number " + std::to_string(number) +
               " is not understood; number from the start of the file";
    }
    const bool isCut = number == std::numeric_limits<std::int32_t>::max();
    return "there is no " + what + " " + std::to_string(number) + (isCut ? " or above" : "") +
           ", the file has " + std::to_string(count);
}
}

void IOObjCheck::CheckPositions(const PositionList& positions) const
{
    const auto wrong = std::find_if_not(positions.begin(), positions.end(), IsFinite);
    if (wrong != positions.end())
    {
        FailAt(FindPosition(static_cast<std::size_t>(wrong - positions.begin())),
               "a coordinate is too large, or has too many digits, for single precision");
    }
}

void IOObjCheck::CheckFaceSizes(const IndexList& faceSizes) const
{
    const auto wrong = std::find(faceSizes.begin(), faceSizes.end(), 0);
    if (wrong != faceSizes.end())
    {
        FailAt(FindFace(static_cast<std::size_t>(wrong - faceSizes.begin())), "a face without corners");
    }
}

void IOObjCheck::CheckNumbers(const std::string& what, const IndexList& numbers, const IndexList& faceSizes,
                              std::size_t count) const
{
    const auto wrong = std::find_if(numbers.begin(), numbers.end(),
                                    [count](std::int32_t number)
                                    { return number < 1 || static_cast<std::size_t>(number) > count; });
    if (wrong != numbers.end())
    {
        FailAt(FindFace(FindFaceOfCorner(faceSizes, wrong - numbers.begin())), Refuse(what, *wrong, count));
    }
}

std::size_t IOObjCheck::GetLineOfPosition(std::size_t index) const
{
    return IOTextLines(m_strText).GetNumberOf(FindPosition(index));
}

std::string IOObjCheck::DescribeByteOrderMark() const
{
    return m_strText.starts_with("\xEF\xBB\xBF")
               ? "a byte-order mark hides the first line; save the file without it"
               : "";
}

void IOObjCheck::FailAtUnevenFace(std::size_t face) const
{
    FailAt(FindFace(face),
           "some corners of the file have a texture number and some have none, from this face "
           "on; give one to all of them, or to none");
}

void IOObjCheck::FailAt(const IOLineCursor& line, const std::string& reason) const
{
    const std::string mark = DescribeByteOrderMark(); // with the first line it may have hidden a vertex
    throw Failure(m_strFileName + ", line " + std::to_string(IOTextLines(m_strText).GetNumberOf(line)) +
                  ": " + reason + (mark.empty() ? "" : "; " + mark));
}

IOLineCursor IOObjCheck::FindPosition(std::size_t index) const
{
    IOTextLines lines(m_strText);
    return FindLine(lines, index, IsPosition);
}

IOLineCursor IOObjCheck::FindFace(std::size_t index) const
{
    IOTextLines lines(m_strText);
    return FindLine(lines, index, IsFace);
}
}
