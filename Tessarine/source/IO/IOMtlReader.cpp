#include "IOMtlReader.h"
#include "Console.h"
#include "IOTextLines.h"
#include <algorithm>
#include <array>

namespace tessarine
{
namespace
{
bool IsOnlyNamed(std::string_view token)
{
    static constexpr std::array<std::string_view, 7> kTokens{"map_Ks", "map_Ka", "map_Bump", "illum",
                                                             "d",      "Ns",     "Ni"};
    return std::find(kTokens.begin(), kTokens.end(), token) != kTokens.end();
}

smVec3f ReadColour(IOLineCursor& line)
{
    const float red = line.ReadFloat();
    const float green = line.ReadFloat();
    const float blue = line.ReadFloat();
    return {red, green, blue};
}
}

void IOMtlReader::ParseText(const std::string& text)
{
    m_pMaterial = nullptr;
    m_nLine = 0;
    for (IOTextLines lines(text); !lines.IsAtEnd();)
    {
        IOLineCursor line = lines.Next();
        ++m_nLine;
        ParseLine(line);
    }
}

void IOMtlReader::ParseLine(IOLineCursor& line)
{
    const std::string_view token = line.ReadToken();
    if (line.IsAtZero() || !ParseToken(token, line))
    {
        ReportUnknownToken(line);
    }
}

bool IOMtlReader::ParseToken(std::string_view token, IOLineCursor& line)
{
    if (token == "newmtl")
    {
        OpenMaterial(line);
        return true;
    }
    if (IsOnlyNamed(token))
    {
        DebugConsole() << "Line: " << m_nLine << "----Token: " << token << '\n';
        return true;
    }
    return token == "#" || ParseMaterialLine(token, line);
}

void IOMtlReader::OpenMaterial(IOLineCursor& line)
{
    m_pMaterial = m_MaterialManager.NewMaterial();
    m_pMaterial->m_Name = line.ReadToken();
}

bool IOMtlReader::ParseMaterialLine(std::string_view token, IOLineCursor& line)
{
    if (m_pMaterial == nullptr)
    {
        return false;
    }
    if (token == "Ka")
    {
        m_pMaterial->m_Ambient = ReadColour(line);
    }
    else if (token == "Kd")
    {
        m_pMaterial->m_Diffuse = ReadColour(line);
    }
    else if (token == "Ks")
    {
        m_pMaterial->m_Specular = ReadColour(line);
    }
    else if (token == "map_Kd")
    {
        BindTexture(line);
    }
    else
    {
        return false;
    }
    return true;
}

void IOMtlReader::BindTexture(IOLineCursor& line)
{
    const std::string fileName(line.ReadToken());
    m_TextureMaps[m_pMaterial->m_Name] = fileName;
    if (!IsTextureLoaded(fileName))
    {
        m_MaterialManager.NewTexture()->LoadImage(fileName, m_TextureBudget);
    }
    m_bHasTexture = true;
}

bool IOMtlReader::IsTextureLoaded(const std::string& fileName)
{
    const auto& textures = m_MaterialManager.GetTextureList();
    for (; m_nKnownTextures < textures.size(); ++m_nKnownTextures)
    {
        m_TextureNames.insert(textures[m_nKnownTextures]->GetFileName());
    }
    return m_TextureNames.contains(fileName);
}

void IOMtlReader::ReportUnknownToken(const IOLineCursor& line) const
{
    DebugConsole() << "Unknow token! Line: " << m_nLine << ",Index: " << line.GetIndex() << '\n';
}
}
