#pragma once
#include "IOLineCursor.h"
#include <cstddef>
#include <string>

namespace tessarine
{
/// Walks a text line by line, as a stream does that skips white space and then reads up to the newline.
///
/// Blank lines are skipped, and white space in front of a line. The end is known only when a read has met it:
/// a text that ends in white space behind a newline has one more, empty, line, and so has an empty text.
/// Lines may be of any length. The text must outlive the walk.
class IOTextLines
{
public:
    explicit IOTextLines(const std::string& text)
        : m_pBegin(text.data()), m_pEnd(text.data() + text.size()), m_pAt(m_pBegin)
    {
    }

    bool IsAtEnd() const { return m_bAtEnd; }

    /// The next line; an empty one at the end.
    IOLineCursor Next();

    /// The corners of an OBJ file's face line: what stands behind its first character, or the next line if a
    /// backslash stands there. A carriage return at its end counts as a blank.
    IOLineCursor OpenFace(IOLineCursor line);

    /// The number of a line as an editor counts, from 1. Costs a look at the whole text before it.
    std::size_t GetNumberOf(const IOLineCursor& line) const;

private:
    const char* m_pBegin;
    const char* m_pEnd;
    const char* m_pAt;
    bool m_bAtEnd = false;
};
}
