// Frames of a million triangles against the same frames in immediate mode, vertex by vertex; the frame of an
// empty scene. Off-screen, in software.
#include "Console.h"
#include "HeadlessPlatform.h"
#include "IOLoadObj.h"
#include "LiteralFrame.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Memory.h"
#include "Models.h"
#include "Open3DView.h"
#include "SolidDrawer.h"
#include "Timing.h"
#include <GL/gl.h>
#include <limits>
#include <memory>

using namespace tessarine;
using namespace tessarine::bench;

namespace
{
constexpr int kWidth = 800;
constexpr int kHeight = 600;

/// A scene, the view of it, and a surface for the literal form of its frames.
class Stage
{
public:
    Stage() : m_pLiteralSurface(GetPlatform().CreateGLSurface())
    {
        m_View.SetController(nullptr, &m_Scene, &m_Elements);
        if (m_View.Create() != 0)
        {
            throw std::runtime_error(m_View.GetCreateError());
        }
        m_View.InitState();
        m_View.Resize(0, 0, kWidth, kHeight);
        m_pLiteralSurface->MakeCurrent();
        InitStateLiterally();
        glViewport(0, 0, kWidth, kHeight);
        m_pLiteralSurface->Release();
    }
    ~Stage() { m_View.Destroy(); }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    DSSolid* Load(const std::filesystem::path& path)
    {
        IOLoadObj reader(&m_Scene, &m_Elements);
        reader.Load(path.string());
        return m_Elements.GetSolid(ElementKind::Solid);
    }

    Open3DView& GetView() { return m_View; }
    MANMaterialManager& GetMaterials() { return m_Elements.GetMaterialManager(); }

    /// A frame up to its last pixel, so that nothing of it is counted for the next.
    void DrawByView()
    {
        m_View.Redraw();
        m_View.BeginContext();
        glFinish();
        m_View.EndContext();
    }

    void DrawLiterally()
    {
        m_pLiteralSurface->MakeCurrent();
        DrawFrameLiterally(m_View, m_Scene, m_Elements);
        glFinish();
        m_pLiteralSurface->Release();
    }

private:
    MANSceneManager m_Scene;
    MANBrepElementManager m_Elements;
    Open3DView m_View;
    std::unique_ptr<GLSurface> m_pLiteralSurface;
};

/// The view's frame against the literal one, by the time of the thread that submits them: the driver fills
/// pixels on threads of its own, which take the same for both.
double RaceFrames(Stage& stage, std::uint32_t flags, const char* what)
{
    stage.GetView().SetDisplayFlags(flags);
    const auto seconds = Race({{"view", nullptr, [&] { stage.DrawByView(); }},
                               {"immediate mode", nullptr, [&] { stage.DrawLiterally(); }}},
                              9, ThreadSeconds);
    std::printf("  %-36s %4.0f ms, in immediate mode %4.0f ms: %.2f\n", what, seconds[0] * 1e3,
                seconds[1] * 1e3, seconds[0] / seconds[1]);
    return seconds[0] / seconds[1];
}

/// Milliseconds to fill the arrays of a solid, the quickest of several times: the bound is one of time, and
/// neighbours on the machine only add to it. With no context current, GL's own calls do nothing.
double TimeFilling(const DSSolid& solid, const DSMaterial& material,
                   void (SolidDrawer::*draw)(const DSSolid&) const)
{
    const SolidDrawer drawer(DisplayFlag::FlatShading, material);
    double quickest = std::numeric_limits<double>::infinity();
    for (int round = 0; round < 15; ++round)
    {
        const double begin = ThreadSeconds();
        (drawer.*draw)(solid);
        quickest = std::min(quickest, ThreadSeconds() - begin);
    }
    return 1e3 * quickest;
}

/// Two materials in turns, each for a run of faces.
void Paint(Stage& stage, const DSSolid& solid, std::size_t run)
{
    const auto& materials = stage.GetMaterials().GetMaterialList();
    std::size_t number = 0;
    for (DSFace* face : solid.GetFaceList())
    {
        face->GetMaterial() = materials[number++ / run % 2].get();
    }
}

bool JudgeModel(const std::filesystem::path& path)
{
    Stage stage;
    const DSSolid* solid = stage.Load(path);
    stage.GetMaterials().NewMaterial()->m_Diffuse = smVec3f(0.8F, 0.3F, 0.2F);
    stage.GetMaterials().NewMaterial()->m_Diffuse = smVec3f(0.2F, 0.3F, 0.8F);
    std::printf("Frames of %zu triangles and %zu edges, submitted (median of 9, taking turns)\n",
                solid->GetFaceList().size(), solid->GetEdgeList().size());

    Paint(stage, *solid, solid->GetFaceList().size() / 2);
    const double flat = RaceFrames(stage, DisplayFlag::FlatShading, "flat, two materials");
    RaceFrames(stage, DisplayFlag::SmoothShading, "smooth, two materials");
    const double wire = RaceFrames(stage, DisplayFlag::Wire, "wire frame");
    Paint(stage, *solid, 1);
    RaceFrames(stage, DisplayFlag::FlatShading, "flat, another material on each face");
    stage.GetView().GetCamera()->SetLookAt(smVec3d(2.2, 1.6, 2.8), smVec3d(0, 0, 0), smVec3d(0, 1, 0));
    RaceFrames(stage, DisplayFlag::Wire, "wire frame, filling the picture");
    const DSMaterial& material = stage.GetMaterials().GetDefaultMaterial();
    std::printf("  filling the arrays of the wire frame: %.1f ms\n",
                TimeFilling(*solid, material, &SolidDrawer::DrawWire));

    Paint(stage, *solid, solid->GetFaceList().size());
    bool good = Judge("frame of 1M flat triangles, two materials: against immediate mode", flat, 0.45);
    good &= Judge("wire frame of 1.5M edges: against immediate mode", wire, 0.6);
    good &= Judge("filling the arrays of 1M triangles, milliseconds",
                  TimeFilling(*solid, material, &SolidDrawer::DrawSurface), 40.0);
    return good;
}

/// Milliseconds of an empty frame, the driver's part included.
double TimeEmptyFrame()
{
    constexpr int kFrames = 100;
    Stage stage;
    const auto seconds = Race({{"view", nullptr,
                                [&]
                                {
                                    for (int i = 0; i < kFrames; ++i)
                                    {
                                        stage.DrawByView();
                                    }
                                }}},
                              5);
    return seconds[0] * 1e3 / kFrames;
}

/// The time of a later frame against the first one with a large image, which brings it to its sizes.
double CompareTexturedFrames()
{
    constexpr int kImageSize = 2000;
    Stage stage;
    DSTexture* pTexture = stage.GetMaterials().NewTexture();
    pTexture->SetImage(kImageSize, kImageSize, 3,
                       std::vector<std::uint8_t>(std::size_t{3} * kImageSize * kImageSize, 128));
    stage.GetMaterials().NewImage()->m_pTexture = pTexture;
    stage.GetView().SetDisplayFlags(DisplayFlag::Texture);
    const auto time = [&stage]
    {
        const double begin = ThreadSeconds();
        stage.DrawByView();
        return ThreadSeconds() - begin;
    };
    const double first = time();
    double later = std::numeric_limits<double>::infinity();
    for (int round = 0; round < 5; ++round)
    {
        later = std::min(later, time());
    }
    std::printf("Textured frame, an image of %d x %d: the first %.0f ms, later ones %.0f ms\n", kImageSize,
                kImageSize, first * 1e3, later * 1e3);
    return later / first;
}
}

int main()
{
    KeepFreedMemory(); // as the programs do
    HeadlessPlatform platform;
    SetPlatform(&platform);
    DebugConsole().SetSink([](std::string_view) {});
    bool good = Judge("frame of an empty scene, milliseconds", TimeEmptyFrame(), 2.0);
    good &= Judge("textured frame: a later one against the first", CompareTexturedFrames(), 0.5);
    TemporaryFolder folder;
    good &= JudgeModel(WriteClosedModel(folder.GetPath(), 1000000));
    return good ? 0 : 1;
}
