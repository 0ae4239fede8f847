// A mesh that grows over the feet of a cloud, fifty of them a face of the model: the time of a foot that is reached with
// ten thousand feet and with a hundred thousand, console lines included; and the literal form on few.
#include "Console.h"
#include "HeadlessPlatform.h"
#include "IAWorkbench.h"
#include "IncrementalConnection.h"
#include "LiteralConnection.h"
#include "Memory.h"
#include "Models.h"
#include "Timing.h"
#include <random>

using namespace tessarine;
using namespace tessarine::bench;

namespace
{
constexpr int kFeetAFace = 50; // with few the front soon loses touch with the candidates

/// Points of the faces, in random order.
std::vector<smVec3d> ScatterPoints(const DSSolid& solid, int count)
{
    std::mt19937 random(1);
    const auto draw = [&random] { return static_cast<double>(random()) / 4294967296.0; };
    const std::size_t faces = solid.GetFaceList().size();
    std::vector<smVec3d> cloud;
    for (int i = 0; i < count; ++i)
    {
        const DSHalfEdge* h = solid.GetFaceList()[random() % faces]->GetLoopList()[0]->GetHalfEdge();
        const smVec3d& a = h->GetVertex()->GetPosition();
        const double u = draw();
        const double v = draw() * (1.0 - u);
        cloud.push_back(a + (h->GetNext()->GetVertex()->GetPosition() - a) * u +
                        (h->GetPrev()->GetVertex()->GetPosition() - a) * v);
    }
    return cloud;
}

/// A model with the feet of a cloud on it.
class Stage
{
public:
    Stage(const std::filesystem::path& folder, HeadlessPlatform& platform, int feet)
        : m_Path(WriteClosedModel(folder, feet / kFeetAFace)), m_Platform(platform), m_nFeet(feet)
    {
    }

    void SetUp()
    {
        m_Platform.AnswerFile(m_Path.string());
        m_Bench.Perform("import", Effect::ReplacesModel, [this] { m_Bench.ImportObj(); });
        FootSearch search(GetSolid(), kIncrementalFeet);
        m_Feet = CalculateFootPoints(
            GetSolid(), ScatterPoints(GetSolid(), m_nFeet), [](std::size_t) { return true; }, search,
            nullptr);
    }

    void Grow()
    {
        IncrementalConnection connection;
        connection.Begin(&GetElements(), &GetSolid(), m_Feet);
        connection.MakeSeed();
        while (!connection.IsFrontEmpty())
        {
            connection.ConnectNext();
        }
        connection.CalcNormals();
        m_nVertices = connection.GetNewSolid()->GetVertexList().size();
    }

    void GrowLiterally()
    {
        LiteralConnection connection(GetElements(), GetSolid(), m_Feet);
        connection.MakeSeed();
        while (!connection.GetFrontEdges().empty())
        {
            connection.ConnectNext();
        }
    }

    /// How many feet the last growth has reached.
    double CountReached() const { return static_cast<double>(m_nVertices); }

private:
    MANBrepElementManager& GetElements() { return m_Bench.GetController().GetElementManager(); }
    DSSolid& GetSolid() { return *m_Bench.GetController().GetSceneManager().GetCurrentSolid(); }

    std::filesystem::path m_Path;
    HeadlessPlatform& m_Platform;
    int m_nFeet;
    IAWorkbench m_Bench;
    FootList m_Feet;
    std::size_t m_nVertices = 0;
};

bool JudgeGrowth(Stage& small, Stage& large)
{
    const auto seconds = Race({{"10k", [&] { small.SetUp(); }, [&] { small.Grow(); }},
                               {"100k", [&] { large.SetUp(); }, [&] { large.Grow(); }}},
                              5);
    const double ofSmall = seconds[0] / small.CountReached();
    const double ofLarge = seconds[1] / large.CountReached();
    std::printf("10k feet: %.0f reached in %.0f ms; 100k feet: %.0f reached in %.0f ms\n",
                small.CountReached(), 1e3 * seconds[0], large.CountReached(), 1e3 * seconds[1]);
    return Judge("a foot of 100k: times one of 10k", ofLarge / ofSmall, 1.5);
}

void RaceLiteralForm(Stage& few)
{
    const auto seconds = Race({{"connection", [&] { few.SetUp(); }, [&] { few.Grow(); }},
                               {"literal form", [&] { few.SetUp(); }, [&] { few.GrowLiterally(); }}},
                              3);
    std::printf("2k feet: %.1f ms, in the literal form %.0f ms\n", 1e3 * seconds[0], 1e3 * seconds[1]);
}
}

int main()
{
    KeepFreedMemory(); // as the programs do
    HeadlessPlatform platform;
    SetPlatform(&platform);
    DebugConsole().SetSink([](std::string_view) {});  // the lines are made, and go nowhere
    SetAssertionHandler([](const AssertionSite&) {}); // a seed's corners have no normals
    const TemporaryFolder folder;
    Stage few(folder.GetPath(), platform, 2'000);
    RaceLiteralForm(few);
    Stage small(folder.GetPath(), platform, 10'000);
    Stage large(folder.GetPath(), platform, 100'000);
    return JudgeGrowth(small, large) ? 0 : 1;
}
