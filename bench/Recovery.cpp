// The copy of the model that a window keeps for the case that its process is ended: how long the one thread writes it, with
// all waits for the disk, and how that grows. One copy a minute may take a twentieth of the time.
#include "Console.h"
#include "HeadlessPlatform.h"
#include "IOLoadObj.h"
#include "IORecoveryFolder.h"
#include "IOSaveRecovery.h"
#include "MANSceneManager.h"
#include "Memory.h"
#include "Models.h"
#include "Timing.h"

using namespace tessarine;
using namespace tessarine::bench;

namespace
{
double WallSeconds()
{
    return ReadClock(CLOCK_MONOTONIC);
}

/// The median seconds of five copies, each in place of the one before, as in a window.
double SecondsOfCopy(const std::filesystem::path& folder, int faces)
{
    MANSceneManager scene;
    MANBrepElementManager elements;
    IOLoadObj(&scene, &elements).Load(WriteClosedModel(folder, faces).string());
    IORecoveryFolder copies = IORecoveryFolder::Create(folder / "recovery");
    const auto save = [&](const std::filesystem::path& path)
    { IOSaveRecovery(&scene, &elements).Save(path.string()); };
    const double seconds = Race({{"copy", nullptr, [&] { copies.Replace(save); }}}, 5, WallSeconds).front();
    copies.Remove();
    std::printf("copy of %d faces: %.3f s\n", faces, seconds);
    return seconds;
}
}

int main()
{
    KeepFreedMemory(); // as the programs do
    HeadlessPlatform platform;
    SetPlatform(&platform);
    DebugConsole().SetSink([](std::string_view) {});
    const bench::TemporaryFolder folder;
    const double small = SecondsOfCopy(folder.GetPath(), 100'000);
    const double large = SecondsOfCopy(folder.GetPath(), 1'000'000);
    bool good = Judge("a million faces: share of a minute", large / 60.0, 0.05);
    good &= Judge("growth a face from 100k to 1M", large / small / 10.0, 1.3);
    return good ? 0 : 1;
}
