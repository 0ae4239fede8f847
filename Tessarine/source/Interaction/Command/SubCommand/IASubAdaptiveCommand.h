#pragma once
#include "IASubCommand.h"
#include <functional>
#include <utility>

namespace tessarine
{
/// Splits the large triangles of the current solid, and puts what comes of it in the place of the whole model.
///
/// Asks    For the threshold (Platform::AskAreaThreshold). Nothing happens when the user cancels.
/// Needs   SetClearModels, and each edge of the solid has its first half-edge (asserted).
/// Leaves  A model of one solid with new ids, its normals computed. Each edge of a face whose area measure is above
///         the threshold is split; a face goes to pieces by the pattern of its split edges. Only the vertices on
///         split edges move. Snapshots, materials and texture coordinates are gone.
/// Says    What BuildSolid and CheckTopology say.
/// Fails   Failure without a current solid, with a threshold that is no number, with an edge that has not just two
///         faces, a face that has not just three corners, or a position that would not be finite. The old model is
///         as it was, unless it was cleared.
/// Units   The measure of a face is twice its area, in square model units.
/// Cost    Linear.
/// Source  The masks are those of IASubLOOPCommand.
/// Kept    Corners opposite to an edge are those of the old mesh: nothing is split before all positions are known.
class IASubAdaptiveCommand : public IASubCommand
{
public:
    /// How the scene and the elements are emptied once all lists of the new model are there.
    void SetClearModels(std::function<void()> clearModels) { m_ClearModels = std::move(clearModels); }

    void Execute() override;

private:
    std::function<void()> m_ClearModels;
};
}
