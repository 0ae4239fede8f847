// Simplification of a closed model of a million faces against quadric decimation by others: time, the distance of the
// result from the input, how the cost grows, and the memory beside the stores. The model has the noise of a scan. Of one
// that is smooth the times are told as well: there most of a cost is the rounding of single precision, which picks
// a few vertices that swallow thousands of others.
#include "Assert.h"
#include "Console.h"
#include "HeadlessPlatform.h"
#include "IASimplifyCommand.h"
#include "IOLoadObj.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Memory.h"
#include "Models.h"
#include "SimplifyPeers.h"
#include "Timing.h"
#include <algorithm>
#include <cmath>
#include <fstream>
#include <malloc.h>
#include <memory>

using namespace tessarine;
using namespace tessarine::bench;

namespace
{
struct Stores
{
    explicit Stores(const std::filesystem::path& path)
    {
        IOLoadObj reader(&scene, &elements);
        reader.Load(path.string());
    }

    const DSSolid& GetLastSolid() const
    {
        return *static_cast<MANSceneLeaf*>(scene.GetRootGroup()->GetChildren().back())->GetSolid();
    }

    MANSceneManager scene;
    MANBrepElementManager elements;
};

void Simplify(Stores& stores, double ratio)
{
    IASimplifyCommand command;
    command.SetElementManager(&stores.elements);
    command.SetSceneManager(&stores.scene);
    command.SetRatio(static_cast<float>(ratio));
    command.Execute();
}

TriangleLists ListsOf(const DSSolid& solid)
{
    TriangleLists mesh;
    const std::uint32_t firstID = solid.GetVertexList().empty() ? 0 : solid.GetVertexList()[0]->GetID();
    for (const DSVertex* vertex : solid.GetVertexList())
    {
        const smVec3d& p = vertex->GetPosition();
        mesh.positions.push_back({p.x, p.y, p.z});
    }
    for (const DSFace* face : solid.GetFaceList())
    {
        const DSHalfEdge* h = face->GetLoopList()[0]->GetHalfEdge();
        const auto number = [firstID](const DSHalfEdge* at)
        { return static_cast<int>(at->GetVertex()->GetID() - firstID); };
        mesh.faces.push_back({number(h), number(h->GetNext()), number(h->GetPrev())});
    }
    return mesh;
}

/// Median seconds of a simplification; every round starts from the model as it was read. The result of the last
/// round goes to a file where one is named.
double TimeOwn(const std::filesystem::path& model, double ratio, int rounds,
               const std::filesystem::path& result = {})
{
    KeepFreedMemory(); // as the programs do
    std::unique_ptr<Stores> stores;
    const auto reload = [&]
    {
        stores.reset();
        stores = std::make_unique<Stores>(model);
    };
    const double seconds = Race({{"Tessarine", reload, [&] { Simplify(*stores, ratio); }}}, rounds)[0];
    if (!result.empty())
    {
        StoreTriangles(ListsOf(stores->GetLastSolid()), result);
    }
    return seconds;
}

double TimePeer(SimplifyPeer& peer, double ratio, const std::filesystem::path& result)
{
    const double seconds = Race({{"peer", [&] { peer.Reset(); }, [&] { peer.Simplify(ratio); }}}, 1)[0];
    StoreTriangles(peer.GetResult(), result);
    return seconds;
}

/// All libraries start from the same positions, those of the model as Tessarine shows it.
class SimplifyRace
{
public:
    SimplifyRace(std::filesystem::path model, std::filesystem::path folder)
        : m_Model(std::move(model)), m_Input(folder / "input"), m_Result(folder / "result")
    {
        InAProcessOfItsOwn(
            [this]
            {
                StoreTriangles(ListsOf(Stores(m_Model).GetLastSolid()), m_Input);
                return 0.0;
            });
    }

    bool Run(double ratio)
    {
        Tell(ratio);
        const double own = ShowOwn(ratio, 3);
        const double vtk = ShowPeer("VTK", MakeVtkSimplify, ratio);
        ShowPeer("OpenMesh", MakeOpenMeshSimplify, ratio);
        ShowPeer("CGAL", MakeCgalSimplify, ratio);
        char what[80];
        std::snprintf(what, sizeof what, "simplify %g: time against VTK's", ratio);
        return Judge(what, own / vtk, 0.4);
    }

    void RunUnjudged(double ratio)
    {
        Tell(ratio);
        ShowOwn(ratio, 1);
        ShowPeer("VTK", MakeVtkSimplify, ratio);
    }

private:
    static double CountFaces(const std::filesystem::path& path)
    {
        return InAProcessOfItsOwn([&] { return static_cast<double>(LoadTriangles(path).faces.size()); });
    }

    void Tell(double ratio) const
    {
        std::printf("Simplification of %.0f faces (%s) by %g: seconds, faces left, distance from the input\n",
                    CountFaces(m_Input), m_Model.stem().c_str(), ratio);
        std::fflush(stdout);
    }

    double ShowOwn(double ratio, int rounds)
    {
        return Show("Tessarine", [&, this] { return TimeOwn(m_Model, ratio, rounds, m_Result); });
    }

    double ShowPeer(const char* name, std::unique_ptr<SimplifyPeer> (*make)(const TriangleLists&),
                    double ratio)
    {
        return Show(name, [&, this] { return TimePeer(*make(LoadTriangles(m_Input)), ratio, m_Result); });
    }

    double Show(const char* name, const std::function<double()>& measure)
    {
        const double seconds = InAProcessOfItsOwn(measure);
        InAProcessOfItsOwn(
            [&, this]
            {
                const TriangleLists result = LoadTriangles(m_Result);
                const Deviation deviation = MeasureDeviation(LoadTriangles(m_Input), result);
                std::printf("  %-9s %6.2f s, %7zu faces, RMS %.3g, largest %.3g\n", name, seconds,
                            result.faces.size(), deviation.rms, deviation.largest);
                std::fflush(stdout);
                return 0.0;
            });
        return seconds;
    }

    std::filesystem::path m_Model;
    std::filesystem::path m_Input;
    std::filesystem::path m_Result;
};

bool JudgeGrowth(const std::filesystem::path& folder)
{
    std::vector<double> perStep;
    for (const int faces : {10000, 100000, 1000000})
    {
        const auto path = WriteScannedModel(folder, faces);
        const double seconds = InAProcessOfItsOwn([&] { return TimeOwn(path, 0.5, faces > 500000 ? 3 : 9); });
        perStep.push_back(seconds / (faces * std::log2(faces)) * 1e9);
        std::printf("  simplify 0.5 of %7d faces: %.2f us a face, %.0f ns a face and doubling\n", faces,
                    seconds / faces * 1e6, perStep.back());
    }
    return Judge("simplify 0.5: time over n log n, 1M faces against 10k", perStep.back() / perStep.front(),
                 2.0);
}

/// A line of /proc/self/status, in bytes.
double StatusBytes(const std::string& name)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
    {
        if (line.starts_with(name + ":"))
        {
            return 1024.0 * std::stod(line.substr(name.size() + 1));
        }
    }
    return 0.0;
}

/// How far the process's memory grows beyond the stores, which are those of before, as long as there is no new solid,
/// and then those of afterwards. A run that leaves next to nothing tells the former, one that leaves much the latter.
double PeakBytes(const std::filesystem::path& model)
{
    const auto measure = [&model](double ratio, bool isAfter)
    {
        return InAProcessOfItsOwn(
            [&]
            {
                Stores stores(model);
                malloc_trim(0);
                const double before = StatusBytes("VmRSS");
                std::ofstream("/proc/self/clear_refs") << 5; // the high-water mark starts anew
                Simplify(stores, ratio);
                const double peak = StatusBytes("VmHWM");
                malloc_trim(0);
                return peak - (isAfter ? StatusBytes("VmRSS") : before);
            });
    };
    return std::max({measure(0.999, false), measure(0.5, true), measure(0.2, true)});
}
}

int main(int argc, char** argv)
{
    HeadlessPlatform platform;
    SetPlatform(&platform);
    DebugConsole().SetSink([](std::string_view) {});
    SetAssertionHandler([](const AssertionSite&) {}); // of vertices between folded faces
    TemporaryFolder folder;
    const bool isGiven = argc > 1;
    constexpr int kFaces = 1000000;
    const std::filesystem::path model = isGiven ? argv[1] : WriteScannedModel(folder.GetPath(), kFaces);
    SimplifyRace race(model, folder.GetPath());
    bool good = race.Run(0.5);
    good &= race.Run(0.8);
    if (isGiven)
    {
        return good ? 0 : 1;
    }
    SimplifyRace(WriteClosedModel(folder.GetPath(), kFaces), folder.GetPath()).RunUnjudged(0.5);
    good &= JudgeGrowth(folder.GetPath());
    good &= Judge("simplify: most bytes a face beside the stores", PeakBytes(model) / kFaces, 400);
    return good ? 0 : 1;
}
