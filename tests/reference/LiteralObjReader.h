#pragma once
#include "MANBrepElementManager.h"
#include <cstdint>
#include <istream>
#include <string>
#include <vector>

namespace tessarine
{
/// The line scanners in their plainest form: a buffer of zeros with a line in it, and a running index.
/// The judge of IOLineCursor.
class LiteralScanner
{
public:
    static std::int32_t ReadInt(const std::string& line, std::size_t& index);
    static float ReadFloat(const std::string& line, std::size_t& index);
    static char ReadChar(const std::string& line, std::size_t& index);
    static char At(const std::string& line, std::size_t index)
    {
        return index < line.size() ? line[index] : '\0';
    }
    static void SkipBlanks(const std::string& line, std::size_t& index);
};

/// The reading loop of an OBJ file over a stream. The judge of IOTextLines and IOLoadObj's parsing.
/// Names are cut at the zero, and carriage returns at the end of a face's line are blanks.
class LiteralObjReader
{
public:
    void Parse(const std::string& text);

    /// The lines of a text as the loop meets them.
    static std::vector<std::string> ReadLines(const std::string& text);

    std::vector<double> m_Positions;
    std::vector<double> m_Normals;
    std::vector<float> m_TexCoords;
    IndexList m_VertexIndices;
    IndexList m_FaceSizes;
    IndexList m_TexIndices;
    IndexList m_NormalIndices;
    IndexList m_FaceGroups;
    GroupNameMap m_GroupNames;
    std::vector<std::string> m_Libraries;
    std::vector<int> m_UnknownLines;

private:
    void ParseVertex(const std::string& line);
    void ParseFace(std::istream& stream, std::string line);

    int m_nLine = 0;
    std::int32_t m_nGroup = 0;
};
}
