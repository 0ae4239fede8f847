#include "IOLoadObj.h"
#include "Console.h"
#include "ErrorLine.h"
#include "Failure.h"
#include "File.h"
#include "IOMtlReader.h"
#include "IOObjCheck.h"
#include "IOTextLines.h"
#include "MANSceneManager.h"
#include "Path.h"

namespace tessarine
{
namespace
{
constexpr const char* kCannotOpen = "Cannot open file!!\n";
constexpr std::size_t kValueIndex = 2;   ///< behind "v ", "vn", "vt"
constexpr std::size_t kKeywordIndex = 6; ///< behind "usemtl", "mtllib", whatever the word is

smVec3d ReadVector(IOLineCursor& line)
{
    line.SetIndex(kValueIndex);
    const float x = line.ReadFloat();
    const float y = line.ReadFloat();
    const float z = line.ReadFloat();
    return {x, y, z};
}
}

IOLoadObj::IOLoadObj(MANSceneManager* sceneManager, MANBrepElementManager* elementManager)
    : IOLoad(sceneManager, elementManager)
{
}

IOLoadObj::~IOLoadObj() = default;

void IOLoadObj::Load(const std::string& fileName)
{
    ParseFile(fileName);
    EnterScene();
}

void IOLoadObj::LoadText(const std::string& fileName, const std::string& text)
{
    ParseText(fileName, text);
    EnterScene();
}

void IOLoadObj::ParseFile(const std::string& fileName)
{
    std::string text;
    try
    {
        text = ReadFile(fileName);
    }
    catch (const FileError& error)
    {
        DebugConsole() << kCannotOpen;
        throw Failure(error.what());
    }
    ParseText(fileName, text);
    TellOddities(fileName, text);
}

/// What a user would wonder about, where the grammar sees nothing wrong.
void IOLoadObj::TellOddities(const std::string& fileName, const std::string& text) const
{
    const IOObjCheck check(fileName, text);
    if (const std::string mark = check.DescribeByteOrderMark(); !mark.empty())
    {
        PrintErrorLine(fileName + ": " + mark);
    }
    if (m_nFirstOddPosition >= 0)
    {
        const std::size_t line = check.GetLineOfPosition(static_cast<std::size_t>(m_nFirstOddPosition));
        PrintErrorLine(
            fileName + ", line " + std::to_string(line) +
            ": a coordinate is no plain decimal number, and is read as far as it is one; is it meant?");
    }
    if (m_Positions.empty())
    {
        PrintErrorLine(fileName + ": no line gives a vertex, so the model is empty; is it a plain OBJ text?");
    }
}

void IOLoadObj::ParseText(const std::string& fileName, const std::string& text)
{
    m_nLine = 0;
    m_nGroup = 0;
    m_bUseMaterial = false;
    for (IOTextLines lines(text); !lines.IsAtEnd();)
    {
        IOLineCursor line = lines.Next();
        ++m_nLine;
        ParseLine(lines, line);
    }
    CheckNumbers(fileName, text);
}

void IOLoadObj::ParseLine(IOTextLines& lines, IOLineCursor& line)
{
    switch (line.Peek())
    {
    case '#':
    case 'g':
    case '\xFF': return;
    case 'v':
    case 'V': return ParseVertexLine(line);
    case 'f':
    case 'F': return ParseFaceLine(lines, line);
    case 'u':
    case 'U': return OpenMaterialGroup(line);
    case 'm': return ReadMaterialLibrary(line);
    default: return ReportUnknownToken();
    }
}

void IOLoadObj::ParseVertexLine(IOLineCursor& line)
{
    switch (line.Peek(1))
    {
    case ' ': return AddPosition(line);
    case 'n':
    case 'N':
        m_Normals.push_back(ReadVector(line));
        m_bHasNormal = true;
        return;
    case 't':
    case 'T':
    {
        line.SetIndex(kValueIndex);
        const float u = line.ReadFloat();
        const float v = line.ReadFloat();
        m_TexCoords.emplace_back(u, v);
        return;
    }
    default: return ReportUnknownToken();
    }
}

void IOLoadObj::AddPosition(IOLineCursor& line)
{
    line.SetIndex(kValueIndex);
    const float x = line.ReadFloat();
    bool isPlain = line.IsAtWordEnd();
    const float y = line.ReadFloat();
    isPlain = line.IsAtWordEnd() && isPlain;
    const float z = line.ReadFloat();
    isPlain = line.IsAtWordEnd() && isPlain;
    m_Positions.emplace_back(x, y, z);
    if (!isPlain && m_nFirstOddPosition < 0)
    {
        m_nFirstOddPosition = static_cast<std::ptrdiff_t>(m_Positions.size()) - 1;
    }
}

void IOLoadObj::ParseFaceLine(IOTextLines& lines, const IOLineCursor& line)
{
    IOLineCursor corners = lines.OpenFace(line);
    m_FaceSizes.push_back(ParseCorners(corners));
    m_FaceGroups.push_back(m_nGroup);
    if (m_nFirstUnevenFace < 0 && m_TexIndices.size() != m_VertexIndices.size())
    {
        m_nFirstUnevenFace = static_cast<std::ptrdiff_t>(m_FaceSizes.size()) - 1;
    }
}

std::int32_t IOLoadObj::ParseCorners(IOLineCursor& corners)
{
    m_bHasNormal = false;
    m_bHasTexCoord = false;
    std::int32_t normal = 0;
    std::int32_t count = 0;
    for (; !corners.IsAtZero(); ++count)
    {
        const std::int32_t vertex = corners.ReadInt();
        if (corners.Peek() == '/' && corners.Peek(1) == '/')
        {
            corners.ReadChar();
            corners.ReadChar();
            normal = corners.ReadInt();
            m_bHasNormal = true;
        }
        else if (corners.ReadChar() == '/')
        {
            m_TexIndices.push_back(corners.ReadInt());
            m_bHasTexCoord = true;
            if (corners.ReadChar() == '/')
            {
                normal = corners.ReadInt();
                m_bHasNormal = true;
            }
        }
        m_VertexIndices.push_back(vertex);
        if (m_bHasNormal)
        {
            m_NormalIndices.push_back(normal);
        }
        corners.SkipBlanks();
    }
    return count;
}

void IOLoadObj::OpenMaterialGroup(IOLineCursor& line)
{
    line.SetIndex(kKeywordIndex);
    m_GroupNames.emplace_hint(m_GroupNames.end(), ++m_nGroup, line.ReadToken());
    m_bUseMaterial = true;
}

void IOLoadObj::ReadMaterialLibrary(IOLineCursor& line)
{
    line.SetIndex(kKeywordIndex);
    ParseMaterialFile(std::string(line.ReadToken()));
}

void IOLoadObj::ParseMaterialFile(const std::string& fileName)
{
    std::string text;
    try
    {
        text = ReadFile(ResolveForReading(fileName), m_LibraryBudget);
    }
    catch (const FileError& error)
    {
        DebugConsole() << kCannotOpen;
        const bool isDosName = fileName.ends_with('\r');
        PrintErrorLine(
            std::string(error.what()) +
            (isDosName ? "; a carriage return belongs to the name: save the file with plain line ends" : "") +
            "; the import goes on without this library");
        return;
    }
    ParseMaterialText(text);
}

void IOLoadObj::ParseMaterialText(const std::string& text)
{
    if (m_pMaterialReader == nullptr)
    {
        m_pMaterialReader =
            std::make_unique<IOMtlReader>(m_pElementManager->GetMaterialManager(), m_TextureMaps);
    }
    m_pMaterialReader->ParseText(text);
    m_bHasTexture = m_pMaterialReader->HasTexture();
}

void IOLoadObj::ReportUnknownToken() const
{
    DebugConsole() << "Unknow token! Line: " << m_nLine << ",Index: " << 0 << '\n';
}

void IOLoadObj::CheckNumbers(const std::string& fileName, const std::string& text) const
{
    const IOObjCheck check(fileName, text);
    check.CheckPositions(m_Positions);
    check.CheckFaceSizes(m_FaceSizes);
    check.CheckNumbers("vertex", m_VertexIndices, m_FaceSizes, m_Positions.size());
    if (!m_bUseMaterial || m_TexIndices.empty())
    {
        return;
    }
    if (m_TexIndices.size() != m_VertexIndices.size())
    {
        check.FailAtUnevenFace(static_cast<std::size_t>(m_nFirstUnevenFace));
    }
    check.CheckNumbers("texture coordinate", m_TexIndices, m_FaceSizes, m_TexCoords.size());
}

void IOLoadObj::EnterScene()
{
    DSSolid* solid = BuildSolid();
    DropArrays();
    ReportTopology(*solid);
    solid->CalcNormals();
    Unitize(*solid);
    m_pSceneManager->AppendLeaf(solid);
}

DSSolid* IOLoadObj::BuildSolid()
{
    m_Normals = PositionList();
    m_NormalIndices = IndexList();
    if (!m_bUseMaterial)
    {
        return m_pElementManager->LoadSolid(m_Positions, m_VertexIndices, m_FaceSizes, false);
    }
    if (!m_bHasTexture)
    {
        return m_pElementManager->LoadMaterialSolid(m_Positions, m_VertexIndices, m_FaceSizes, m_TexCoords,
                                                    m_TexIndices, m_FaceGroups, m_GroupNames, false);
    }
    return m_pElementManager->LoadTexturedSolid(m_Positions, m_VertexIndices, m_FaceSizes, m_TexCoords,
                                                m_TexIndices, m_FaceGroups, m_GroupNames, m_TextureMaps,
                                                false);
}

void IOLoadObj::DropArrays()
{
    m_Positions = PositionList();
    m_TexCoords = TexCoordList();
    m_VertexIndices = IndexList();
    m_FaceSizes = IndexList();
    m_TexIndices = IndexList();
    m_FaceGroups = IndexList();
}

void IOLoadObj::ReportTopology(DSSolid& solid)
{
    const bool fits = solid.CheckTopology();
    DebugConsole() << "Solid fits Euler formular: " << (fits ? "true" : "false") << '\n';
}

void IOLoadObj::Unitize(DSSolid& solid)
{
    float cx = 0.0F;
    float cy = 0.0F;
    float cz = 0.0F;
    m_pElementManager->UnitizeSolid(&solid, cx, cy, cz);
}
}
