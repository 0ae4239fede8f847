#include "LiteralObjReader.h"
#include <limits>
#include <sstream>

namespace tessarine
{
namespace
{
bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::string NextLine(std::istream& stream)
{
    std::string line;
    stream >> std::ws;
    std::getline(stream, line);
    return line;
}

std::string ReadName(const std::string& line, std::size_t index)
{
    LiteralScanner::SkipBlanks(line, index);
    std::string name;
    for (char c = LiteralScanner::At(line, index); c != ' ' && c != '\t' && c != '\0';
         c = LiteralScanner::At(line, ++index))
    {
        name += c;
    }
    return name;
}

void BlankOutCarriageReturns(std::string& line)
{
    for (std::size_t i = line.size();
         i > 0 && (line[i - 1] == '\r' || line[i - 1] == ' ' || line[i - 1] == '\t'); --i)
    {
        line[i - 1] = ' ';
    }
}
}

void LiteralScanner::SkipBlanks(const std::string& line, std::size_t& index)
{
    while (At(line, index) == ' ' || At(line, index) == '\t')
    {
        ++index;
    }
}

char LiteralScanner::ReadChar(const std::string& line, std::size_t& index)
{
    return At(line, index++);
}

std::int32_t LiteralScanner::ReadInt(const std::string& line, std::size_t& index)
{
    SkipBlanks(line, index);
    const bool minus = At(line, index) == '-';
    index += minus ? 1 : 0;
    double value = 0.0; // exact far beyond 32 bits, and never wraps
    for (; IsDigit(At(line, index)); ++index)
    {
        value = value * 10.0 + (At(line, index) - '0');
    }
    value = minus ? -value : value;
    if (value > std::numeric_limits<std::int32_t>::max())
    {
        return std::numeric_limits<std::int32_t>::max();
    }
    if (value < std::numeric_limits<std::int32_t>::min())
    {
        return std::numeric_limits<std::int32_t>::min();
    }
    return static_cast<std::int32_t>(value);
}

float LiteralScanner::ReadFloat(const std::string& line, std::size_t& index)
{
    SkipBlanks(line, index);
    const bool minus = At(line, index) == '-';
    index += minus ? 1 : 0;
    volatile float a = 0.0F; // each step is stored, and so rounded
    volatile float b = 0.0F;
    for (; IsDigit(At(line, index)); ++index)
    {
        a = a * 10.0F;
        a = a + static_cast<float>(At(line, index) - '0');
    }
    if (At(line, index) == '.')
    {
        ++index;
        int count = 0;
        for (; IsDigit(At(line, index)); ++index, ++count)
        {
            b = b * 10.0F;
            b = b + static_cast<float>(At(line, index) - '0');
        }
        for (; count > 0; --count)
        {
            b = b / 10.0F;
        }
    }
    volatile float r = a + b;
    if (At(line, index) == 'e' || At(line, index) == 'E')
    {
        ++index;
        // 400 steps reach zero or infinity from any number.
        const std::int32_t exponent = ReadInt(line, index);
        for (int i = 0; i < 400 && i < exponent; ++i)
        {
            r = r * 10.0F;
        }
        for (int i = 0; i > -400 && i > exponent; --i)
        {
            r = r / 10.0F;
        }
    }
    return minus ? r * -1.0F : r;
}

std::vector<std::string> LiteralObjReader::ReadLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    while (!stream.eof())
    {
        lines.push_back(NextLine(stream));
    }
    return lines;
}

void LiteralObjReader::Parse(const std::string& text)
{
    std::istringstream stream(text);
    while (!stream.eof())
    {
        const std::string line = NextLine(stream);
        ++m_nLine;
        switch (LiteralScanner::At(line, 0))
        {
        case '#':
        case 'g':
        case '\xFF': break;
        case 'v':
        case 'V': ParseVertex(line); break;
        case 'f':
        case 'F': ParseFace(stream, line); break;
        case 'u':
        case 'U': m_GroupNames[++m_nGroup] = ReadName(line, 6); break;
        case 'm': m_Libraries.push_back(ReadName(line, 6)); break;
        default: m_UnknownLines.push_back(m_nLine); break;
        }
    }
}

void LiteralObjReader::ParseVertex(const std::string& line)
{
    std::size_t index = 2;
    const auto append = [&](auto& list, int count)
    {
        for (int i = 0; i < count; ++i)
        {
            list.push_back(LiteralScanner::ReadFloat(line, index));
        }
    };
    switch (LiteralScanner::At(line, 1))
    {
    case 'n':
    case 'N': append(m_Normals, 3); break;
    case ' ': append(m_Positions, 3); break;
    case 't':
    case 'T': append(m_TexCoords, 2); break;
    default: m_UnknownLines.push_back(m_nLine); break;
    }
}

void LiteralObjReader::ParseFace(std::istream& stream, std::string line)
{
    bool hasNormal = false;
    std::int32_t normal = 0;
    std::int32_t corners = 0;
    std::size_t index = 1;
    LiteralScanner::SkipBlanks(line, index);
    if (LiteralScanner::At(line, index) == '\\')
    {
        line = NextLine(stream);
        index = 0;
    }
    BlankOutCarriageReturns(line);
    if (index == 0 || index < line.size())
    {
        LiteralScanner::SkipBlanks(line, index);
    }
    while (LiteralScanner::At(line, index) != '\0')
    {
        const std::int32_t vertex = LiteralScanner::ReadInt(line, index);
        if (LiteralScanner::At(line, index) == '/' && LiteralScanner::At(line, index + 1) == '/')
        {
            index += 2;
            normal = LiteralScanner::ReadInt(line, index);
            hasNormal = true;
        }
        else if (LiteralScanner::ReadChar(line, index) == '/')
        {
            m_TexIndices.push_back(LiteralScanner::ReadInt(line, index));
            if (LiteralScanner::ReadChar(line, index) == '/')
            {
                normal = LiteralScanner::ReadInt(line, index);
                hasNormal = true;
            }
        }
        m_VertexIndices.push_back(vertex);
        if (hasNormal)
        {
            m_NormalIndices.push_back(normal);
        }
        ++corners;
        LiteralScanner::SkipBlanks(line, index);
    }
    m_FaceSizes.push_back(corners);
    m_FaceGroups.push_back(m_nGroup);
}
}
