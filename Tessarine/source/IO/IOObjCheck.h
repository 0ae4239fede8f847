#pragma once
#include "IOLineCursor.h"
#include "MANBrepElementManager.h"
#include <cstddef>
#include <string>

namespace tessarine
{
/// Refuses what a builder could not use, in words that lead a user to the place.
///
/// The arrays know nothing of lines: only when something is wrong is the text walked again to find the line.
///
/// Fails   By Failure: "FILE, line N: what is wrong", lines counted as an editor does.
class IOObjCheck
{
public:
    /// Both are kept by reference.
    IOObjCheck(const std::string& fileName, const std::string& text)
        : m_strFileName(fileName), m_strText(text)
    {
    }

    /// Each position is three finite numbers.
    void CheckPositions(const PositionList& positions) const;

    /// Each face has a corner.
    void CheckFaceSizes(const IndexList& faceSizes) const;

    /// Each number is from 1 to `count`. `what` names what is numbered: "vertex".
    void CheckNumbers(const std::string& what, const IndexList& numbers, const IndexList& faceSizes,
                      std::size_t count) const;

    std::size_t GetLineOfPosition(std::size_t index) const;

    /// What to do about a byte-order mark; empty where there is none.
    std::string DescribeByteOrderMark() const;

    /// Fails: this face has corners without a texture number, or gives the first one after such corners.
    [[noreturn]] void FailAtUnevenFace(std::size_t face) const;

private:
    [[noreturn]] void FailAt(const IOLineCursor& line, const std::string& reason) const;
    IOLineCursor FindPosition(std::size_t index) const;
    IOLineCursor FindFace(std::size_t index) const;

    const std::string& m_strFileName;
    const std::string& m_strText;
};
}
