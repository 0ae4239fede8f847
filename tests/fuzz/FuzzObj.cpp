// A whole import of the bytes as an OBJ file, and what comes in goes out and comes in again.
#include "Console.h"
#include "Failure.h"
#include "HeadlessPlatform.h"
#include "IOLoadObj.h"
#include "IOSaveObj.h"
#include "IOTextOutput.h"
#include "MANSceneManager.h"
#include <cstdint>
#include <cstdlib>
#include <string>

namespace
{
using namespace tessarine;

void Demand(bool condition)
{
    if (!condition)
    {
        std::abort();
    }
}

struct Document
{
    MANBrepElementManager elements;
    MANSceneManager scene;

    void Import(const std::string& text) { IOLoadObj(&scene, &elements).LoadText("fuzz.obj", text); }
    const DSSolid& GetSolid() const { return *elements.GetSolidArray()[0]; }
    std::string Export()
    {
        std::string text;
        IOTextOutput output([&text](std::string_view piece) { text += piece; });
        IOSaveObj writer(&scene, &elements);
        writer.WriteVertices(GetSolid(), output);
        writer.WriteFaces(GetSolid(), output);
        output.Flush();
        return text;
    }
};

void SilenceEverything()
{
    static HeadlessPlatform platform;
    SetPlatform(&platform);
    DebugConsole().SetSink([](std::string_view) {});
    SetAssertionHandler([](const AssertionSite&) {});
}
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    SilenceEverything();
    Document document;
    try
    {
        document.Import(std::string(data, data + size));
    }
    catch (const Failure& failure)
    {
        Demand(!failure.GetMessage().empty());
        return 0;
    }
    Demand(document.scene.GetRootGroup()->GetChildren().size() == 1);
    Document copy;
    copy.Import(document.Export());
    Demand(copy.GetSolid().GetVertexList().size() == document.GetSolid().GetVertexList().size());
    Demand(copy.GetSolid().GetFaceList().size() == document.GetSolid().GetFaceList().size());
    Demand(copy.GetSolid().GetEdgeList().size() == document.GetSolid().GetEdgeList().size());
    return 0;
}
