#pragma once
#include "MANSceneManager.h"
#include "Meshes.h"
#include <functional>
#include <string>
#include <vector>

namespace tessarine
{
/// What a command leaves.
struct TrialOutcome
{
    std::string failure;
    std::string console;
    std::vector<std::string> assertions;
    std::string records;
    std::string scene;
};

/// Stores with one model, to try a command on.
class TrialModel
{
public:
    using Step = std::function<void(MANBrepElementManager&, MANSceneManager&)>;

    /// @param isSecond whether the model is the second solid of its manager
    TrialModel(const IndexedMesh& mesh, bool isSecond);

    /// Afterwards ids and places are no longer side by side.
    void Subdivide();
    TrialOutcome Run(const Step& step);
    DSSolid& GetSolid() { return *m_pSolid; }

private:
    MANBrepElementManager m_Elements;
    MANSceneManager m_Scene;
    DSSolid* m_pSolid = nullptr;
};

/// Expects that both steps leave the same in the two models, which are alike.
/// @return whether the steps came to their ends
bool ExpectSameOutcome(TrialModel& first, const TrialModel::Step& literal, TrialModel& second,
                       const TrialModel::Step& command, const std::string& name);
}
