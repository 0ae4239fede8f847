// A small model, also one that no solid in the world has, a cloud, and operations on them in any order. After each of
// them the half-edge structure holds; after one that fails, but for an event of the mouse, everything is as it was.
#include "BatchRun.h"
#include "CommandLine.h"
#include "Dump.h"
#include "DumpCheck.h"
#include "EigenTable.h"
#include "ErrorLine.h"
#include "Operations.h"
#include "Resources.h"
#include "ScratchFolder.h"
#include "SilhouetteFiles.h"
#include "resource.h"
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace
{
using namespace tessarine;

/// The input's bytes one after the other, and zeros behind them.
class ByteReader
{
public:
    ByteReader(const std::uint8_t* data, std::size_t size) : m_pNext(data), m_pEnd(data + size) {}

    bool IsAtEnd() const { return m_pNext == m_pEnd; }
    unsigned Read() { return IsAtEnd() ? 0U : *m_pNext++; }
    unsigned ReadBelow(unsigned bound) { return Read() % bound; }
    /// A coordinate: mostly on a grid, so that points coincide and faces have no area.
    double ReadCoordinate()
    {
        const unsigned byte = Read();
        return byte < 192 ? static_cast<double>(byte % 9) * 0.25 - 1.0
                          : (static_cast<double>(byte) - 224.0) / 17.0;
    }

private:
    const std::uint8_t* m_pNext;
    const std::uint8_t* m_pEnd;
};

void Write(const std::string& name, const std::string& content)
{
    std::ofstream(name, std::ios::binary) << content;
}

std::string FormatPoints(ByteReader& bytes, unsigned count, const char* lead)
{
    std::ostringstream text;
    for (unsigned i = 0; i < count; ++i)
    {
        text << lead << bytes.ReadCoordinate() << ' ' << bytes.ReadCoordinate() << ' '
             << bytes.ReadCoordinate() << '\n';
    }
    return text.str();
}

/// A ring of quadrilaterals' halves closed in itself both ways: every vertex has six neighbours.
std::string FormatTorus(ByteReader& bytes)
{
    const unsigned rows = 3 + bytes.ReadBelow(3);
    const unsigned columns = 3 + bytes.ReadBelow(4);
    std::ostringstream text;
    text << FormatPoints(bytes, rows * columns, "v ");
    const auto at = [&](unsigned row, unsigned column)
    { return row % rows * columns + column % columns + 1; };
    for (unsigned row = 0; row < rows; ++row)
    {
        for (unsigned column = 0; column < columns; ++column)
        {
            text << "f " << at(row, column) << ' ' << at(row, column + 1) << ' ' << at(row + 1, column)
                 << "\nf " << at(row, column + 1) << ' ' << at(row + 1, column + 1) << ' '
                 << at(row + 1, column) << '\n';
        }
    }
    return text.str();
}

std::string FormatOctahedron(ByteReader& bytes)
{
    std::ostringstream text;
    text << "v 1 0 0\nv -1 0 0\nv 0 1 0\nv 0 -1 0\nv 0 0 1\nv 0 0 " << bytes.ReadCoordinate() << '\n'
         << "f 1 3 5\nf 3 2 5\nf 2 4 5\nf 4 1 5\nf 3 1 6\nf 2 3 6\nf 4 2 6\nf 1 4 6\n";
    return text.str();
}

/// Any corners in any faces.
std::string FormatAnyFaces(ByteReader& bytes)
{
    const unsigned vertices = 3 + bytes.ReadBelow(10);
    const unsigned faces = 1 + bytes.ReadBelow(20);
    std::ostringstream text;
    text << FormatPoints(bytes, vertices, "v ");
    for (unsigned face = 0; face < faces; ++face)
    {
        const unsigned kind = bytes.ReadBelow(8);
        const unsigned corners = kind < 6 ? 3 : kind - 2;
        text << 'f';
        for (unsigned corner = 0; corner < corners; ++corner)
        {
            text << ' ' << bytes.ReadBelow(vertices) + 1;
        }
        text << '\n';
    }
    return text.str();
}

std::string FormatModel(ByteReader& bytes)
{
    switch (bytes.ReadBelow(3))
    {
    case 0: return FormatAnyFaces(bytes);
    case 1: return FormatTorus(bytes);
    default: return FormatOctahedron(bytes);
    }
}

void WriteClouds(ByteReader& bytes)
{
    const unsigned count = bytes.ReadBelow(64);
    const std::string cloud = std::to_string(count) + '\n' + FormatPoints(bytes, count, "");
    for (const char* name : {"bunny", "box", "dragon", "horse"})
    {
        Write(std::string("data/") + name + ".txta", cloud);
    }
}

/// Cells that the picks of a view of 100 by 100 pixels meet.
std::string ReadPixel(ByteReader& bytes)
{
    return std::to_string(bytes.ReadBelow(100));
}

std::string Choose(ByteReader& bytes, const std::vector<const char*>& choices)
{
    return choices[bytes.ReadBelow(static_cast<unsigned>(choices.size()))];
}

/// The numbers of the menus that need no GL and take no second.
std::vector<int> ListMenus()
{
    std::vector<int> menus;
    for (const MenuEntry& entry : GetMenuEntries())
    {
        const bool drawsFrame = entry.id == ResourceID::ShowTexture || entry.id == ResourceID::ProjectSamples;
        if (entry.handler != MenuHandler::None && !drawsFrame && entry.id != ResourceID::BuildInitialMesh)
        {
            menus.push_back(entry.id);
        }
    }
    return menus;
}

/// The field of the silhouettes takes a tenth of a second.
std::vector<std::string> ReadFieldOperation(ByteReader& bytes)
{
    switch (bytes.ReadBelow(8))
    {
    case 0: return {"build-initial-mesh"};
    case 1: return {"generate-mesh", Choose(bytes, {"-4", "0", "0.5", "1000"})};
    case 2: return {"show-field"};
    default: return {"generate-splats"};
    }
}

/// An operation's words.
std::vector<std::string> ReadOperation(ByteReader& bytes)
{
    static const std::vector<const char*> kPlain = {"subdivide-loop",      "refine-energy",
                                                    "refine-two-step",     "two-step-first",
                                                    "two-step-second",     "two-step-third",
                                                    "refine-hierarchical", "fit-vertices",
                                                    "refine-incremental",  "save-environment",
                                                    "build-octree",        "triangle-quality",
                                                    "set-material",        "new"};
    switch (bytes.ReadBelow(12))
    {
    case 0: return {"simplify", Choose(bytes, {"0", "0.2", "0.5", "0.8", "1"})};
    case 1: return {"optimize", Choose(bytes, {"1", "2", "3"})};
    case 2: return {"subdivide-adaptive", Choose(bytes, {"0", "0.01", "0.1", "1"})};
    case 3: return {"connect-next", Choose(bytes, {"1", "3", "all"})};
    case 4: return {"mouse-move", ReadPixel(bytes), ReadPixel(bytes)};
    case 5:
        return {Choose(bytes, {"left-down", "left-up", "right-down"}), ReadPixel(bytes), ReadPixel(bytes)};
    case 6: // selecting by type, moving what is selected, camera and other tools, switches
        return {"menu", std::to_string((bytes.ReadBelow(4) == 0 ? 32770U : 32786U) + bytes.ReadBelow(33))};
    case 7:
        if (bytes.ReadBelow(8) == 0) // it takes a thousand samples a face
        {
            return {"fit-limit-surface"};
        }
        return {"limit-point", std::to_string(bytes.ReadBelow(8)), "0.25", "0.5"};
    case 8: return {"export", "out.obj"};
    case 9: return {"import", Choose(bytes, {"model.obj", "out.obj"})};
    case 11:
    {
        static const std::vector<int> kMenus = ListMenus();
        if (bytes.ReadBelow(4) == 0)
        {
            return ReadFieldOperation(bytes);
        }
        return {"menu", std::to_string(kMenus[bytes.ReadBelow(static_cast<unsigned>(kMenus.size()))])};
    }
    default: return {Choose(bytes, kPlain)};
    }
}

std::string MakeDump(const BatchRun& run)
{
    std::string text;
    WriteDump(run.GetDocument(), [&text](std::string_view piece) { text += piece; });
    return text;
}

[[noreturn]] void Fail(const std::string& operation, const std::string& why)
{
    std::fprintf(stderr, "%s: %s\n", operation.c_str(), why.c_str());
    std::abort();
}

void DemandSound(const std::string& operation, const std::string& dump)
{
    std::istringstream text(dump);
    const DumpFindings findings = CheckDump(text);
    if (!findings.breach.empty())
    {
        Fail(operation, findings.breach);
    }
}

/// What mouse and tools did before they failed stays.
bool IsTakenBack(const std::string& operation)
{
    return operation.find("-down") == std::string::npos && operation.find("-up") == std::string::npos &&
           operation != "mouse-move";
}

/// Models grow fourfold with each subdivision.
bool IsTooLarge(const BatchRun& run)
{
    constexpr std::size_t kMostFaces = 200;
    return run.GetDocument().elements.GetFaceArray().size() > kMostFaces;
}

void RunOperations(ByteReader& bytes)
{
    constexpr int kMostOperations = 12;
    BatchOptions options;
    options.quiet = true;
    options.viewWidth = 100;
    options.viewHeight = 100;
    BatchRun run(options);
    run.RunAll(ParseOperations({"import", "model.obj"}));
    std::string before = MakeDump(run);
    for (int i = 0; i < kMostOperations && !bytes.IsAtEnd() && !IsTooLarge(run); ++i)
    {
        const std::vector<std::string> words = ReadOperation(bytes);
        const bool isDone = run.RunAll(ParseOperations(words));
        std::string after = MakeDump(run);
        if (after == before)
        {
            continue;
        }
        if (!isDone && IsTakenBack(words.front()))
        {
            Fail(words.front(), "failed, and left something else than there was");
        }
        DemandSound(words.front(), after);
        before = std::move(after);
    }
}

/// The eigen table takes long to make.
void MakeFolders()
{
    std::filesystem::create_directory("data1");
    WriteSilhouetteFiles(".");
    WriteEigenTable("data/lpdata50NT.dat", 12);
}
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const ScratchFolder folder;
    static const bool isPrepared = (MakeFolders(), true);
    static_cast<void>(isPrepared);
    ByteReader bytes(data, size);
    Write("model.obj", FormatModel(bytes));
    WriteClouds(bytes);
    RunOperations(bytes);
    return 0;
}
