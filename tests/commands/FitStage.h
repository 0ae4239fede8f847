#pragma once
#include "Capture.h"
#include "MANSceneManager.h"
#include "Open3DView.h"
#include "RandomMeshes.h"
#include "RecordDump.h"
#include "Refusal.h"
#include "TemporaryFolder.h"
#include <array>
#include <charconv>
#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace tessarine
{
/// A model, a view and a folder with the cloud of a fitting command.
class FitStage
{
public:
    DSSolid& Load(const IndexedMesh& mesh)
    {
        DSSolid* pSolid = LoadQuietly(m_Elements, mesh);
        m_Scene.AppendLeaf(pSolid);
        return *pSolid;
    }

    /// @return the cloud as a command reads it, in single precision
    std::vector<smVec3d> WriteCloud(const std::string& name, const std::vector<smVec3d>& points)
    {
        std::string text = std::to_string(points.size()) + "\n";
        std::vector<smVec3d> read;
        for (const smVec3d& p : points)
        {
            const smVec3f single(static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z));
            for (const float value : {single.x, single.y, single.z})
            {
                std::array<char, 32> digits{};
                text.append(digits.data(),
                            std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
                text += ' ';
            }
            text += '\n';
            read.emplace_back(single);
        }
        m_Folder.Write(name, text);
        return read;
    }

    template <class TCommand>
    void Equip(TCommand& command)
    {
        command.SetElementManager(&m_Elements);
        command.SetSceneManager(&m_Scene);
        command.SetView(&m_View);
    }

    MANBrepElementManager& GetElements() { return m_Elements; }
    MANSceneManager& GetScene() { return m_Scene; }
    Open3DView& GetView() { return m_View; }
    TemporaryCurrentFolder& GetFolder() { return m_Folder; }

private:
    TemporaryCurrentFolder m_Folder;
    MANBrepElementManager m_Elements;
    MANSceneManager m_Scene;
    Open3DView m_View;
};

/// A fitting command on its stage.
template <class TCommand>
class FitCommandTest : public testing::Test
{
protected:
    FitCommandTest() { m_Stage.Equip(m_Command); }

    std::string RefuseToRun()
    {
        return GetRefusal([this] { m_Command.Execute(); });
    }

    FitStage m_Stage;
    ConsoleCapture m_Console;
    TCommand m_Command;
};

/// A model that a command does not take, and what it says.
using RefusedModel = std::pair<IndexedMesh, const char*>;

/// Those that are refused where the model must be a closed one of triangles.
inline std::vector<RefusedModel> AllButClosedTriangles()
{
    return {{QuadCube(), "triangles only"},
            {Grid(2), "a closed model only"},
            {ThreeTrianglesOnOneEdge(), "a closed model only"}};
}

/// Runs a command on each; the cloud is good. A refusal leaves every record as it was.
template <class TCommand>
void ExpectRefusals(const char* cloudName, const std::vector<RefusedModel>& models)
{
    for (const auto& [mesh, reason] : models)
    {
        FitStage stage;
        stage.Load(mesh);
        stage.WriteCloud(cloudName, SphereCloud(100, 1));
        TCommand command;
        stage.Equip(command);
        const std::string before = DumpRecords(stage.GetElements());
        EXPECT_THAT(GetRefusal([&command] { command.Execute(); }), testing::HasSubstr(reason));
        EXPECT_EQ(DumpRecords(stage.GetElements()), before);
    }
}
}
