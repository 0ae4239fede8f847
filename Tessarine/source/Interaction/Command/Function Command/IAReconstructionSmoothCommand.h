#pragma once
#include "IAFittingCommand.h"
#include <cstdint>
#include <memory>
#include <vector>

namespace tessarine
{
class IncrementalConnection;

/// Starts a new mesh over the feet of the cloud "Data\box.txta" on the current solid: its run makes the first triangle,
/// and the finished command goes on from it (see IncrementalConnection).
///
/// Needs   A closed mesh of triangles. Both are brought into the cube from -1 to 1, each by its own box.
/// Leaves  The solid with its feet listed on its faces (m_TagList). The new solid is in no scene; the view shows it as
///         the new mesh, and the cloud and its feet in the overlays. A point without a foot keeps what the overlay
///         held for it.
/// Says    What the search says, and how each triangle was found.
/// Fails   As IAFittingCommand. Without a first triangle an assertion is reported, and Failure says what to do.
class IAReconstructionSmoothCommand : public IAFittingCommand
{
public:
    void Execute() override;

    // What the finished command can do beyond its run. Each fails, saying what to do, where the solid is not the one
    // of the run any more, or not where it was, or its feet are others; what fails leaves the command as it was.

    /// Takes edges from the front until so many are gone, or none is left.
    void ConnectNext(std::uint64_t steps = 1);
    /// Until none is left.
    void ConnectAll();
    /// Fails   FileError.
    void SaveEnvironment() const;

    using State = std::shared_ptr<const IncrementalConnection>;
    const State& Save() const { return m_pConnection; }
    void Restore(State state) noexcept { m_pConnection = std::move(state); }

private:
    const IncrementalConnection& GetLiveConnection() const;

    std::vector<bool> m_PointDone; ///< for each point of the cloud, whether it takes no part any more
    State m_pConnection;           ///< each operation goes on in a copy
};
}
