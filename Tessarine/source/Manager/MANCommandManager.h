#pragma once
#include "IACommand.h"
#include <cstddef>
#include <memory>
#include <vector>

namespace tessarine
{
/// The ids of the commands. The upper byte is the family: camera, subdivision, assist, function, edit,
/// property. 0x6000005 and 0x7000003 are unused gaps.
namespace CommandID
{
inline constexpr unsigned CameraMove = 0x1000001;
inline constexpr unsigned CameraZoom = 0x1000002;
inline constexpr unsigned CameraOrbit = 0x1000003;
inline constexpr unsigned CameraAround = 0x1000004;
inline constexpr unsigned SubLOOP = 0x4000001;
inline constexpr unsigned SubAdaptive = 0x4000002;
inline constexpr unsigned Select = 0x5000001;
inline constexpr unsigned DrawSplat = 0x5000002;
inline constexpr unsigned GenerateSplat = 0x5000003;
inline constexpr unsigned Projection = 0x6000001;
inline constexpr unsigned Reconstruction = 0x6000002;
inline constexpr unsigned Smooth = 0x6000003;
inline constexpr unsigned ReconstructionSmooth = 0x6000004;
inline constexpr unsigned ReconstructionSmoothTwoStep = 0x6000006;
inline constexpr unsigned ReconstructionSmoothEnergyFunction = 0x6000007;
inline constexpr unsigned Simplify = 0x6000008;
inline constexpr unsigned RefineMesh = 0x6000009;
inline constexpr unsigned MoveVertex = 0x7000001;
inline constexpr unsigned MoveFace = 0x7000002;
inline constexpr unsigned MoveSolid = 0x7000004;
inline constexpr unsigned SetMaterial = 0x8000001;
}

/// Makes the commands by id, and keeps those that were run. One for a view, and so for all documents of a
/// run. Nothing undoes a finished command: the history is written and never read.
class MANCommandManager
{
public:
    MANCommandManager() = default;
    MANCommandManager(const MANCommandManager&) = delete;
    MANCommandManager& operator=(const MANCommandManager&) = delete;
    ~MANCommandManager();

    /// A new command of the class that `id` names.
    ///
    /// Fails   An unknown id gives a message box and null. Failure for a class that this version does not
    ///         have.
    static std::unique_ptr<IACommand> CreateCommand(unsigned id);

    /// Puts a command that has run at the end of the history. A command that cannot be undone is not taken
    /// and stays with the caller. The command must not be null (asserted).
    void StoreCommand(std::unique_ptr<IACommand>&& command);

    /// Deletes a command that was never meant to stay; null is allowed.
    static void ReleaseCommand(std::unique_ptr<IACommand> command) { command.reset(); }

    std::size_t GetHistorySize() const { return m_History.size(); }

    /// The number of commands ever stored.
    int GetCurrent() const { return m_nCurrent; }

    /// How far the history reaches, to go back to when a command fails.
    struct Checkpoint
    {
        std::size_t size = 0;
        int current = 0;
    };
    Checkpoint Save() const { return {m_History.size(), m_nCurrent}; }
    /// Deletes what was stored since.
    void Restore(const Checkpoint& checkpoint) noexcept;

private:
    std::vector<std::unique_ptr<IACommand>> m_History;
    int m_nCurrent = 0;
};
}
