#pragma once
#include "FitStage.h"
#include "IAReconstructionSmoothTwoStepCommand.h"
#include "Refusal.h"
#include "SolidNormalization.h"
#include <gtest/gtest.h>

namespace tessarine
{
inline constexpr char kBunnyCloud[] = "data/bunny.txta";

/// A command of the two-step correspondence with a model and a cloud.
class TwoStepStage : public testing::Test
{
protected:
    TwoStepStage() { m_Stage.Equip(m_Command); }

    DSSolid& Show(const IndexedMesh& mesh) { return m_Solid = &m_Stage.Load(mesh), *m_Solid; }

    /// Runs on a cloud of the model's own corners, in the cube, and of some points more; each corner pairs with itself.
    void RunOnOwnCorners(const IndexedMesh& mesh, const std::vector<smVec3d>& morePoints = {})
    {
        Show(mesh);
        NormalizeSolid(*m_Solid);
        std::vector<smVec3d> points;
        for (const DSVertex* vertex : m_Solid->GetVertexList())
        {
            if (vertex->GetHalfEdge() != nullptr)
            {
                points.push_back(vertex->GetPosition());
            }
        }
        points.insert(points.end(), morePoints.begin(), morePoints.end());
        m_Cloud = m_Stage.WriteCloud(kBunnyCloud, points);
        m_Command.Execute();
    }

    std::int32_t OwnerOf(std::size_t point) const { return m_Command.GetPairs().m_PointOwner[point]; }
    std::size_t CountFree() const
    {
        const auto& owners = m_Command.GetPairs().m_PointOwner;
        return static_cast<std::size_t>(std::count(owners.begin(), owners.end(), -1));
    }
    std::string RefusalOfRun()
    {
        return GetRefusal([this] { m_Command.Execute(); });
    }

    FitStage m_Stage;
    DSSolid* m_Solid = nullptr;
    std::vector<smVec3d> m_Cloud;
    IAReconstructionSmoothTwoStepCommand m_Command;
    ConsoleCapture m_Console;
};
}
